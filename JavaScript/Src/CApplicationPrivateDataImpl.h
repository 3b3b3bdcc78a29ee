// What an application may know and change about itself.
#pragma once

#include <cstdint>
#include <memory>

#include "InjectedBundle/gen/js/CApplicationPrivateDataBase.h"

namespace OipfJavaScript {

class jiChannel;
class jiKeyset;

class CApplicationPrivateDataImpl : public CApplicationPrivateDataBase {
 public:
    // A new object each.
    [[nodiscard]] std::unique_ptr<jiKeyset> GetKeyset() const;
    // Null for an application that is not broadcast-related or bound to no channel.
    [[nodiscard]] std::unique_ptr<jiChannel> GetCurrentChannel();
    // Kilobytes; 0 when the system does not tell.
    [[nodiscard]] int32_t GetFreeMem() const;
};

}  // namespace OipfJavaScript
