// Where running shells tell the address of the bus that their receiver is on: a file for each in one folder,
// locked for as long as the shell lives, so that one that was left behind tells nothing.
#pragma once

#include <string>

#include "Host/Inc/GHandles.h"

namespace Host {

// Files whose name begins with a dot are not finished.
inline std::string shellAddressFolder() {
    return std::string(g_get_user_runtime_dir()) + "/hbbtv-shell";
}

}  // namespace Host
