// Base of every binding class: the C++ side of one JavaScript object.
#pragma once

#include <cstddef>

namespace OipfJavaScript {

class BindingClass;

class BindingObject {
 public:
    BindingObject(const BindingObject&) : BindingObject() {}
    BindingObject& operator=(const BindingObject&) = default;
    virtual ~BindingObject() { --s_alive; }

    // The JavaScript class that objects of this type are made with.
    [[nodiscard]] virtual const BindingClass& OwnClass() const = 0;

    // How many exist, wrapped in a JavaScript object or not: a page that leaves must take its share with it.
    [[nodiscard]] static size_t AliveCount() { return s_alive; }

 protected:
    BindingObject() { ++s_alive; }

 private:
    static inline size_t s_alive = 0;
};

}  // namespace OipfJavaScript
