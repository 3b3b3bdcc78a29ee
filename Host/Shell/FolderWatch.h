// Tells when something in a folder, or in one beneath it, has changed.
#pragma once

#include <functional>
#include <map>
#include <string>

#include "Host/Inc/GCallbacks.h"

namespace Shell {

class FolderWatch : Host::Pinned {
 public:
    // `changed` is called once for changes that come together. Hidden folders are left out, and so is what
    // packages are kept in.
    FolderWatch(const std::string& folder, std::function<void()> changed);
    ~FolderWatch();

 private:
    void onChanged(GFileMonitor*, GFile* file, GFile* other, GFileMonitorEvent event);
    gboolean onSettled();

    void watch(GFile* folder);

    std::function<void()> m_changed;
    std::map<std::string, Host::GObjectHandle<GFileMonitor>> m_monitors;  // By the folder's path.
    Host::GSourceHandle m_settled;
};

}  // namespace Shell
