// A private folder that goes with the shell, contents and all, whatever ends the shell: a WebDriver kills it.
#pragma once

#include <string>

#include "Host/Inc/GCallbacks.h"

namespace Shell {

class TemporaryFolder : Host::Pinned {
 public:
    // Without a folder (the reason is logged) the path is empty.
    TemporaryFolder();
    ~TemporaryFolder();

    [[nodiscard]] const std::string& path() const { return m_path; }

 private:
    std::string m_path;
    GPid m_remover = 0;
    int m_lifeline = -1;  // Closed with the shell, which tells the remover.
};

}  // namespace Shell
