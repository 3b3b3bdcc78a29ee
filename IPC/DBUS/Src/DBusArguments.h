// How the arguments of a client's operation become those of the generated call, and its outputs become ours.
//
// Values go in as they are. Out() receives an output, OutWith() hands it to a function, kResult makes it the
// operation's result, ResultWith() makes the result of it.
#pragma once

#include <cstring>
#include <string>
#include <type_traits>
#include <utility>

#include "IPC/DBUS/Src/DBusLink.h"
#include "IPC/DBUS/Src/GLibHandles.h"
#include "IPC/DBUS/Src/WireString.h"

// An output and the variable that it is for. A null pointer: not wanted.
template <typename T>
struct Out {
    explicit Out(T& variable) : target(&variable) {}
    explicit Out(T* variable) : target(variable) {}
    T* target;
};

template <typename Function>
struct OutWith {
    explicit OutWith(Function called) : function(std::move(called)) {}
    Function function;
};

struct Result {};
inline constexpr Result kResult;

template <typename Function>
struct ResultWith {
    explicit ResultWith(Function called) : function(std::move(called)) {}
    Function function;
};

namespace dbus_call {

// From the wire's types to ours.
template <typename T, typename Wire>
void Assign(T& target, const Wire& wire) {
    if constexpr (std::is_same_v<T, bool>)
        target = wire != FALSE;
    else if constexpr (std::is_arithmetic_v<T>)
        target = static_cast<T>(wire);
    else
        target = wire;
}

// For a recording, which cuts long ones. Never empty.
template <typename Wire>
std::string TextOf(const Wire& value) {
    if constexpr (std::is_arithmetic_v<Wire>)
        return std::to_string(value);
    else if constexpr (std::is_same_v<Wire, GVariant*>)
        return value != nullptr ? ::TextOf(value, false) : "null";
    else
        return value != nullptr ? '"' + std::string(value) + '"' : "null";
}

// Where the generated function writes one output; frees what is to be freed.
template <typename Wire>
class Storage {
 public:
    Storage() = default;
    Storage(const Storage&) = delete;
    Storage& operator=(const Storage&) = delete;
    ~Storage() {
        if constexpr (std::is_same_v<Wire, gchar*>)
            GCharPtr(value).reset();
        else if constexpr (std::is_same_v<Wire, GVariant*>)
            GVariantPtr(value).reset();
    }

    Wire value{};
};

class InputSlot {
 public:
    [[nodiscard]] bool IsCut() const { return false; }
    [[nodiscard]] std::string Output() const { return {}; }
    template <typename R>
    void Commit(R& /*result*/) {}
};

template <typename Wire>
class OutputSlot {
 public:
    [[nodiscard]] size_t Size() const { return 0; }
    [[nodiscard]] bool IsCut() const { return false; }
    Wire* Pass() { return &m_wire.value; }
    [[nodiscard]] std::string Input() const { return {}; }
    [[nodiscard]] std::string Output() const { return TextOf(m_wire.value); }

 protected:
    Storage<Wire> m_wire;
};

// One argument of ours at one parameter of the generated function: Pass() is what is passed, Size() its
// bytes, IsCut() whether a NUL has ended its text early, Commit() takes over what was returned, Input() and
// Output() are the texts of either, empty for the other. Commit() is called after success only, and Output()
// before it.
template <typename Parameter, typename Argument>
class Slot : public InputSlot {
    static_assert(std::is_arithmetic_v<Parameter>, "an output needs Out, OutWith, kResult or ResultWith");

 public:
    explicit Slot(const Argument& argument) : m_value(static_cast<Parameter>(argument)) {}
    [[nodiscard]] size_t Size() const { return sizeof m_value; }
    Parameter Pass() { return m_value; }
    [[nodiscard]] std::string Input() const { return TextOf(m_value); }

 private:
    Parameter m_value;
};

template <typename Argument>
class Slot<const gchar*, Argument> : public InputSlot {
 public:
    explicit Slot(const Argument& argument) : m_text(argument) {
        if constexpr (std::is_same_v<Argument, std::string>)
            m_isCut = argument.find('\0') != std::string::npos;
    }
    [[nodiscard]] size_t Size() const { return std::strlen(m_text.c_str()); }
    [[nodiscard]] bool IsCut() const { return m_isCut; }
    const gchar* Pass() { return m_text.c_str(); }
    [[nodiscard]] std::string Input() const { return TextOf(m_text.c_str()); }

 private:
    WireString m_text;
    bool m_isCut = false;
};

// What a recording needs of a slot.
struct SlotText {
    template <typename AnySlot>
    explicit SlotText(const AnySlot& any)
        : slot(&any), textOf([](const void* it, bool isInput) {
              const auto& same = *static_cast<const AnySlot*>(it);
              return isInput ? same.Input() : same.Output();
          }) {}

    const void* slot;
    std::string (*textOf)(const void* slot, bool isInput);
};

// A variant made for the call; the caller keeps it.
template <>
class Slot<GVariant*, GVariantPtr> : public InputSlot {
 public:
    explicit Slot(const GVariantPtr& argument) : m_variant(argument.get()) {}
    [[nodiscard]] size_t Size() const { return g_variant_get_size(m_variant); }
    GVariant* Pass() { return m_variant; }
    [[nodiscard]] std::string Input() const { return TextOf(m_variant); }

 private:
    GVariant* m_variant;
};

template <typename Wire, typename T>
class Slot<Wire*, Out<T>> : public OutputSlot<Wire> {
 public:
    explicit Slot(const Out<T>& out) : m_target(out.target) {}
    template <typename R>
    void Commit(R& /*result*/) {
        if (m_target != nullptr)
            Assign(*m_target, this->m_wire.value);
    }

 private:
    T* m_target;
};

template <typename Wire, typename Function>
class Slot<Wire*, OutWith<Function>> : public OutputSlot<Wire> {
 public:
    explicit Slot(const OutWith<Function>& out) : m_function(out.function) {}
    template <typename R>
    void Commit(R& /*result*/) {
        m_function(this->m_wire.value);
    }

 private:
    const Function& m_function;
};

template <typename Wire>
class Slot<Wire*, Result> : public OutputSlot<Wire> {
 public:
    explicit Slot(const Result& /*argument*/) {}
    template <typename R>
    void Commit(R& result) {
        Assign(result, this->m_wire.value);
    }
};

template <typename Wire, typename Function>
class Slot<Wire*, ResultWith<Function>> : public OutputSlot<Wire> {
 public:
    explicit Slot(const ResultWith<Function>& out) : m_function(out.function) {}
    template <typename R>
    void Commit(R& result) {
        result = m_function(this->m_wire.value);
    }

 private:
    const Function& m_function;
};

}  // namespace dbus_call
