#include "Host/Shell/FolderWatch.h"

#include <utility>

namespace Shell {

using namespace Host;

namespace {

// Editors and build tools write several files, and some more than once.
constexpr unsigned kSettledMs = 200;

bool isLeftOut(const std::string& name) {
    return name[0] == '.' || name == "node_modules";
}

}  // namespace

FolderWatch::FolderWatch(const std::string& folder, std::function<void()> changed)
    : m_changed(std::move(changed)) {
    const GObjectHandle<GFile> file(g_file_new_for_commandline_arg(folder.c_str()));
    watch(file.get());
}

FolderWatch::~FolderWatch() {
    for (const auto& [path, monitor] : m_monitors)
        g_signal_handlers_disconnect_by_data(monitor.get(), this);
}

void FolderWatch::watch(GFile* folder) {
    const GChars path(g_file_get_path(folder));
    GErrorSlot error;
    GObjectHandle<GFileMonitor> monitor(
        g_file_monitor_directory(folder, G_FILE_MONITOR_WATCH_MOVES, nullptr, error.out()));
    const GObjectHandle<GFileEnumerator> children(
        g_file_enumerate_children(folder, G_FILE_ATTRIBUTE_STANDARD_NAME "," G_FILE_ATTRIBUTE_STANDARD_TYPE,
                                  G_FILE_QUERY_INFO_NOFOLLOW_SYMLINKS, nullptr, error.out()));
    if (!monitor || !children) {
        g_warning("%s is not watched: %s", path.get(), error.message());
        return;
    }
    g_signal_connect(monitor.get(), "changed", G_CALLBACK(callback<&FolderWatch::onChanged>), this);
    m_monitors[path.get()] = std::move(monitor);
    GFileInfo* info = nullptr;
    GFile* child = nullptr;
    while (g_file_enumerator_iterate(children.get(), &info, &child, nullptr, nullptr) && info) {
        if (g_file_info_get_file_type(info) == G_FILE_TYPE_DIRECTORY &&
            !isLeftOut(g_file_info_get_name(info)))
            watch(child);
    }
}

void FolderWatch::onChanged(GFileMonitor*, GFile* file, GFile* other, GFileMonitorEvent event) {
    if (event == G_FILE_MONITOR_EVENT_ATTRIBUTE_CHANGED)
        return;
    GFile* appeared = event == G_FILE_MONITOR_EVENT_RENAMED ? other : file;
    const GChars name(g_file_get_basename(appeared));
    if (isLeftOut(name.get()))
        return;
    if (event != G_FILE_MONITOR_EVENT_DELETED && event != G_FILE_MONITOR_EVENT_MOVED_OUT &&
        g_file_query_file_type(appeared, G_FILE_QUERY_INFO_NOFOLLOW_SYMLINKS, nullptr) ==
            G_FILE_TYPE_DIRECTORY)
        watch(appeared);
    m_settled.reset(g_timeout_add(kSettledMs, callback<&FolderWatch::onSettled>, this));
}

gboolean FolderWatch::onSettled() {
    m_settled.forget();
    m_changed();
    return G_SOURCE_REMOVE;
}

}  // namespace Shell
