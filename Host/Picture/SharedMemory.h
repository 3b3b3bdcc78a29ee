// Memory that two processes see, and the descriptor by which the one gives it to the other.
#pragma once

#include <cstddef>
#include <memory>
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
struct Unmap {
    std::size_t size = 0;
    void operator()(void* address) const;
};
using Mapping = std::unique_ptr<void, Unmap>;

// Empty when the file cannot be mapped so; the protection is that of mmap.
[[nodiscard]] Mapping mapFile(const Descriptor& file, std::size_t size, int protection);

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
