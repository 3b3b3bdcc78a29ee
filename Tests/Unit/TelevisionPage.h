// A page with a broadcast object, and fakes of the three services that live television asks.
#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "API/Src/CDSMCCStreamEventData.h"
#include "API/Src/IPluginController.h"
#include "IPC/DBUS/Src/ChannelCacheWK_DBus.h"
#include "IPC/DBUS/Src/DAEBrowserAPIWK_DBus.h"
#include "Tests/Bus/BusFixture.h"
#include "Tests/Bus/FakeService.h"
#include "Tests/Bus/LogCapture.h"
#include "Tests/Unit/FakeBrowser.h"

class TelevisionPage : public testing::Test {
 protected:
    TelevisionPage() {
        api.Reply("IsBroadcastRelated", "(true,)");
        Eval("var log = []; var tv = PrivateObjectFactory.createVideoBroadcastObject();");
        // The clients outlive the services of the test before; they learn in the main loop who has the names
        // now.
        std::string call;
        EXPECT_TRUE(WaitFor([&] {
            const bool answers = CDAEBrowserAPIWK::GetInstance()->IsBroadcastRelated();
            IJSChannelCacheWK::GetInstance()->Retain(0);
            Eval("tv.stop()");
            const auto calls = player.TakeCalls();
            call = calls.empty() ? "" : calls.front();
            return answers && !cache.TakeCalls().empty() && !call.empty();
        }));
        id = static_cast<uint32_t>(std::stoul(call.substr(call.find('(') + 1)));
        (void)api.TakeCalls();
        LogCapture::Clear();
    }

    std::string Eval(const std::string& script) { return page.main.Eval(script); }
    std::string Value(const std::string& expression) { return page.main.Value(expression); }
    // What the page has logged since the last time.
    std::string Log() { return Eval("log.splice(0).join()"); }
    // "(<id>, ...)" as the services see the object's calls.
    std::string Mine(const std::string& method, const std::string& rest) {
        return method + " (" + std::to_string(id) + ", " + rest + ")";
    }
    [[nodiscard]] static size_t Count(const std::vector<std::string>& calls, const std::string& call) {
        return static_cast<size_t>(std::ranges::count(calls, call));
    }

    static void Fire(int32_t code, uint32_t plugin, int32_t first = 0, int32_t second = 0) {
        CDAEBrowserAPIWK::GetInstance()->SendEventToPlugins(event_t::WithData(code, plugin, first, second));
    }
    static void Trigger(const CDSMCCStreamEventData* record) {
        CDAEBrowserAPIWK::GetInstance()->SendEventToPlugins(
            event_t::WithRecord(E_VBO_STREAM_EVENT, 0, record));
    }

    FakeService api{"IDAEBrowserAPI"};
    FakeService player{"IBroadcastPlayer"};
    FakeService cache{"IJSChannelCache"};
    FakePage page;
    uint32_t id = 0;
};
