// The log service of a test program: keeps the records instead of showing them.
#pragma once

#include <string>
#include <string_view>
#include <vector>

class LogCapture {
 public:
    LogCapture() = delete;

    struct Record {
        int priority;
        std::string text;  // without the file, function and line, and without colours
        std::string tag;
        std::string whole;
    };

    static void Clear();
    [[nodiscard]] static std::vector<Record> Records();
    // How many records have this very text.
    [[nodiscard]] static int Count(std::string_view text);
    // How many were made at priority error.
    [[nodiscard]] static int Errors();
};
