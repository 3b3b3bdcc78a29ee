// A private folder that goes with the shell, contents and all, whatever ends the shell: a WebDriver kills it.
#pragma once

#include <string>

#include "Host/Inc/GHandles.h"

namespace Shell {

class TemporaryFolder {
 public:
    // Without a folder (the reason is logged) the path is empty.
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    [[nodiscard]] const std::string& path() const { return m_path; }

 private:
    std::string m_path;
    GPid m_remover = 0;
    int m_lifeline = -1;  // Closed with the shell, which tells the remover.
};

}  // namespace Shell
