#include "CSP/Inc/PCSemaphore.h"

#include "CSP/Inc/PCDebug.h"
#include "CSP/Inc/PCError.h"

namespace HbbTVPlatform {

PCSemaphore::~PCSemaphore() {
    Destroy();
}

bool PCSemaphore::Create(unsigned initialCount) {
    PC_ASSERT(FlagCreate() == false);
    m_created = sem_init(&m_semaphore, 0, initialCount) == 0;
    return m_created;
}

void PCSemaphore::Destroy() {
    if (m_created.exchange(false))
        sem_destroy(&m_semaphore);
}

void PCSemaphore::Wait() {
    PC_ASSERT(FlagCreate() == true);
    while (sem_wait(&m_semaphore) != 0)
        PC_ASSERT(PCError::Num() == EINTR);
}

void PCSemaphore::Post() {
    PC_ASSERT(FlagCreate() == true);
    PC_ASSERT(sem_post(&m_semaphore) == 0);
}

}  // namespace HbbTVPlatform
