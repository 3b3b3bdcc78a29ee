// The methods and signals of the receiver's interfaces, as it describes them itself.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "Host/Control/Words.h"
#include "Host/Inc/GHandles.h"

namespace Control {

struct Member {
    std::string path;
    std::string interface;  // in full, which is the name on the bus as well
    std::string name;
    std::vector<std::pair<std::string, std::string>> arguments;  // name and type

    // "IDAEBrowserAPI.GetKeyMask"
    [[nodiscard]] std::string shortName() const;
    // "IDAEBrowserAPI.SetKeyMask KEY_MASK(i)"
    [[nodiscard]] std::string synopsis() const;
};

struct Introspection {
    std::vector<Member> methods;
    std::vector<Member> signals;

    // Adds what the text of an introspection describes.
    void add(const std::string& path, const char* xml);
};

// By short name, or by bare name where one interface only has it (else Misuse); null for none.
[[nodiscard]] const Member* findMember(const std::vector<Member>& members, const std::string& name);

// One tuple; a single word in parentheses is the whole of it. Misuse when the words do not fit the member.
[[nodiscard]] Host::GVariantHandle tupleOf(const Words& words, const Member* member);

}  // namespace Control
