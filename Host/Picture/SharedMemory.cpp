#include "Host/Picture/SharedMemory.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Host {

Descriptor::~Descriptor() {
    if (m_number >= 0)
        (void)close(m_number);
}

Descriptor Descriptor::duplicate() const {
    return Descriptor(fcntl(m_number, F_DUPFD_CLOEXEC, 0));
}

void Unmap::operator()(void* address) const {
    (void)munmap(address, size);
}

Mapping mapFile(const Descriptor& file, std::size_t size, int protection) {
    void* address = mmap(nullptr, size, protection, MAP_SHARED, file.get(), 0);
    return Mapping(address == MAP_FAILED ? nullptr : address, Unmap{size});
}

std::optional<SharedMemory> makeSharedMemory(const char* name, std::size_t size) {
    SharedMemory memory;
    memory.file = Descriptor(memfd_create(name, MFD_CLOEXEC | MFD_ALLOW_SEALING));
    if (!memory.file || ftruncate(memory.file.get(), static_cast<off_t>(size)) != 0)
        return std::nullopt;
    memory.bytes = mapFile(memory.file, size, PROT_READ | PROT_WRITE);
    // Our own mapping stays writable, it is older than the last of these seals.
    constexpr int seals = F_SEAL_SHRINK | F_SEAL_GROW | F_SEAL_FUTURE_WRITE | F_SEAL_SEAL;
    if (!memory.bytes || fcntl(memory.file.get(), F_ADD_SEALS, seals) != 0)
        return std::nullopt;
    return memory;
}

Mapping mapForReading(const Descriptor& file, std::size_t size) {
    struct stat status = {};
    const int seals = fcntl(file.get(), F_GET_SEALS);
    const bool keepsSize = seals >= 0 && (seals & F_SEAL_SHRINK) != 0;
    if (!keepsSize || fstat(file.get(), &status) != 0 || status.st_size != static_cast<off_t>(size))
        return {};
    return mapFile(file, size, PROT_READ);
}

}  // namespace Host
