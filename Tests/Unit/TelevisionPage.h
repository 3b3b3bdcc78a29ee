// A page with a broadcast object, and fakes of the three services that live television asks.
#pragma once

#include <algorithm>

#include "API/Src/CDSMCCStreamEventData.h"
#include "IPC/DBUS/Src/ChannelCacheWK_DBus.h"
#include "Tests/Unit/PlayerPage.h"

struct TelevisionServices {
    TelevisionServices() { api.Reply("IsBroadcastRelated", "(true,)"); }

    FakeService api{"IDAEBrowserAPI"};
    FakeService cache{"IJSChannelCache"};
};

class TelevisionPage : protected TelevisionServices, public PlayerPage {
 protected:
    TelevisionPage()
        : PlayerPage("IBroadcastPlayer", "createVideoBroadcastObject", "tv", [this] {
              const bool answers = CDAEBrowserAPIWK::GetInstance()->IsBroadcastRelated();
              IJSChannelCacheWK::GetInstance()->Retain(0);
              return answers && !cache.TakeCalls().empty();
          }) {
        (void)api.TakeCalls();
    }

    [[nodiscard]] static size_t Count(const std::vector<std::string>& calls, const std::string& call) {
        return static_cast<size_t>(std::ranges::count(calls, call));
    }
    static void Trigger(const CDSMCCStreamEventData* record) {
        Send(event_t::WithRecord(E_VBO_STREAM_EVENT, 0, record));
    }
};
