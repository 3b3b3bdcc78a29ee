// What came of the checks, for a terminal, for machines and for people.
#pragma once

#include <map>
#include <string>
#include <vector>

namespace Check {

enum class Verdict { Pass, Fail, Skip };

struct Finding {
    std::string group;
    std::string name;
    Verdict verdict;
    std::string reason;  // One line; of what has passed, what was seen.
    double milliseconds;
};

// How long each call of a method took, by "Interface.Method".
using Timings = std::map<std::string, std::vector<double>>;

struct Report {
    std::vector<Finding> findings;
    Timings timings;

    void add(Finding finding);
    [[nodiscard]] size_t count(Verdict verdict) const;
    // "57 passed, 0 failed, 3 skipped"
    [[nodiscard]] std::string summary() const;
    [[nodiscard]] std::string junit() const;
    [[nodiscard]] std::string html(int limitSeconds) const;
};

// "PASS", "FAIL" or "SKIP"
[[nodiscard]] const char* wordOf(Verdict verdict);

// A line of the table on the terminal.
[[nodiscard]] std::string lineOf(const Finding& finding, bool coloured);

}  // namespace Check
