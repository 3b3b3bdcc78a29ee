// Tells other programs the bus of this shell for as long as it lives, see Host/Inc/ShellAddress.h.
#pragma once

#include <string>

namespace Shell {

class PublishedAddress {
 public:
    // What goes wrong is logged, and nothing is told.
    explicit PublishedAddress(const std::string& address);
    ~PublishedAddress();
    PublishedAddress(const PublishedAddress&) = delete;
    PublishedAddress& operator=(const PublishedAddress&) = delete;

 private:
    std::string m_path;
    int m_file = -1;
};

}  // namespace Shell
