// The shells of this user that run now, and how to reach their buses.
#pragma once

#include <map>
#include <string>
#include <vector>

namespace Control {

// Addresses of buses, each with the process ids of its shells. What dead shells left behind is removed.
[[nodiscard]] std::map<std::string, std::vector<std::string>> runningShells();

}  // namespace Control
