// Serves a folder to this machine, with the content types that HbbTV uses: files of a page may then read each
// other.
#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include <libsoup/soup.h>

#include "Host/Inc/GCallbacks.h"
#include "Host/Shell/Options.h"

namespace Shell {

class FolderServer : Host::Pinned {
 public:
    // Nothing, with the reason, for what is no folder or cannot be served.
    [[nodiscard]] static std::unique_ptr<FolderServer> start(const std::string& folder, std::string& problem);

    // Of a path in the folder; empty is the folder itself. What is an address already stays.
    [[nodiscard]] std::string addressOf(const std::string& path) const;

 private:
    explicit FolderServer(std::filesystem::path folder);
    // The path is decoded.
    void onRequest(SoupServer*, SoupServerMessage* message, const char* decoded, GHashTable*);

    std::filesystem::path m_folder;
    Host::GObjectHandle<SoupServer> m_server;
    std::string m_address;
};

// The server of the folder or the example that the options name; their URL becomes a whole one. Nothing where
// they name none, or with the reason why it cannot be shown.
[[nodiscard]] std::unique_ptr<FolderServer> serveFor(Options& options, std::string& problem);

}  // namespace Shell
