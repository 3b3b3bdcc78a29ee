// What an object needs whose members GLib calls back.
#pragma once

#include "Host/Inc/GHandles.h"

namespace Host {

// The base of objects that are known by their address, or that own what cannot be had twice.
class Pinned {
 public:
    Pinned(const Pinned&) = delete;
    Pinned& operator=(const Pinned&) = delete;

 protected:
    Pinned() = default;
    ~Pinned() = default;
};

template <auto member>
struct Callback;

template <typename T, typename Result, typename... Arguments, Result (T::*member)(Arguments...)>
struct Callback<member> {
    static Result call(Arguments... arguments, gpointer self) {
        return (static_cast<T*>(self)->*member)(arguments...);
    }
};

// A member function as a callback whose last argument, the user data, is the object itself.
template <auto member>
inline constexpr auto callback = &Callback<member>::call;

}  // namespace Host
