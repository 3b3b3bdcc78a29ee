// What a file of the object carousel is: the carousel itself does not tell.
#pragma once

#include <string>
#include <string_view>

namespace Shell {

// Judged by the name in the address, or by how the file begins where the name says nothing.
[[nodiscard]] std::string mediaTypeOf(const std::string& url, std::string_view bytes);

}  // namespace Shell
