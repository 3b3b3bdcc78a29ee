// Memory that two processes see, and the descriptor by which the one gives it to the other.
#pragma once

#include <cstddef>
#include <optional>
#include <utility>

namespace Host {

// An open file descriptor, closed with its owner.
class Descriptor {
 public:
    Descriptor() = default;
    explicit Descriptor(int number) : m_number(number) {}
    Descriptor(Descriptor&& other) noexcept : m_number(std::exchange(other.m_number, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        std::swap(m_number, other.m_number);
        return *this;
    }
    ~Descriptor();

    [[nodiscard]] explicit operator bool() const { return m_number >= 0; }
    [[nodiscard]] int get() const { return m_number; }
    // Whoever takes it closes it.
    [[nodiscard]] int release() { return std::exchange(m_number, -1); }
    // Another one for the same file; none when the process has no more to give.
    [[nodiscard]] Descriptor duplicate() const;

 private:
    int m_number = -1;
};

// A file's bytes in the address space, until the owner dies.
class Mapping {
 public:
    Mapping() = default;
    Mapping(Mapping&& other) noexcept
        : m_address(std::exchange(other.m_address, nullptr)), m_size(other.m_size) {}
    Mapping& operator=(Mapping&& other) noexcept {
        std::swap(m_address, other.m_address);
        std::swap(m_size, other.m_size);
        return *this;
    }
    ~Mapping();

    [[nodiscard]] explicit operator bool() const { return m_address != nullptr; }
    [[nodiscard]] void* address() const { return m_address; }

    [[nodiscard]] static Mapping ofWritable(const Descriptor& file, std::size_t size);
    [[nodiscard]] static Mapping ofReadOnly(const Descriptor& file, std::size_t size);

 private:
    Mapping(void* address, std::size_t size) : m_address(address), m_size(size) {}
    [[nodiscard]] static Mapping of(const Descriptor& file, std::size_t size, int protection);

    void* m_address = nullptr;
    std::size_t m_size = 0;
};

struct SharedMemory {
    Descriptor file;
    Mapping bytes;
};

// Zeroed memory whose size is sealed, and that nobody else can map for writing. Nothing when the system has
// none.
[[nodiscard]] std::optional<SharedMemory> makeSharedMemory(const char* name, std::size_t size);

// What another process has given, for reading. Nothing unless it has exactly this size and can never lose
// it: reading bytes that were cut off would end this process.
[[nodiscard]] Mapping mapForReading(const Descriptor& file, std::size_t size);

}  // namespace Host
