// A private folder that goes with its object, contents and all.
#pragma once

#include <filesystem>
#include <string>
#include <system_error>

#include "Host/Inc/GHandles.h"

namespace Shell {

class TemporaryFolder {
 public:
    // Without a folder (the reason is logged) the path is empty.
    TemporaryFolder() {
        Host::GErrorSlot error;
        const Host::GChars path(g_dir_make_tmp("hbbtv-shell-XXXXXX", error.out()));
        if (path)
            m_path = path.get();
        else
            g_warning("no temporary folder: %s", error.message());
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder() {
        std::error_code ignored;  // A leftover file in the system's temporary folder does no harm.
        if (!m_path.empty())
            std::filesystem::remove_all(m_path, ignored);
    }

    [[nodiscard]] const std::string& path() const { return m_path; }

 private:
    std::string m_path;
};

}  // namespace Shell
