#include "Host/Shell/Processes/PublishedAddress.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

#include "Host/Inc/ShellAddress.h"

namespace Shell {

using namespace Host;

PublishedAddress::PublishedAddress(const std::string& address) {
    const std::string folder = shellAddressFolder();
    const std::string name = std::to_string(getpid());
    const std::string unfinished = folder + "/." + name;
    m_path = folder + "/" + name;
    // Not inherited: a child would hold the lock for longer.
    constexpr int kFlags = O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC;
    if (g_mkdir_with_parents(folder.c_str(), 0700) == 0)
        m_file = open(unfinished.c_str(), kFlags, 0600);
    const auto length = static_cast<ssize_t>(address.size());
    if (m_file < 0 || flock(m_file, LOCK_EX | LOCK_NB) != 0 ||
        write(m_file, address.c_str(), address.size()) != length ||
        rename(unfinished.c_str(), m_path.c_str()) != 0)
        g_warning("hbbtv-control will not find this shell by itself: %s: %s", m_path.c_str(),
                  g_strerror(errno));
}

PublishedAddress::~PublishedAddress() {
    if (m_file < 0)
        return;
    unlink(m_path.c_str());
    close(m_file);
}

}  // namespace Shell
