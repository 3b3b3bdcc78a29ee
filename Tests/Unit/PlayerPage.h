// A page with an object that has a player, and a fake of the service whose player it is.
#pragma once

#include <cstdint>
#include <functional>

#include "API/Src/IPluginController.h"
#include "IPC/DBUS/Src/DAEBrowserAPIWK_DBus.h"
#include "Tests/Bus/FakeService.h"
#include "Tests/Unit/FakeBrowser.h"

struct PlayerService {
    explicit PlayerService(const std::string& interface) : player(interface) {}
    FakeService player;
};

class PlayerPage : public testing::Test, protected PlayerService, protected TestedPage {
 protected:
    // The page makes such objects with make(), and has one in this variable. The test begins when the object
    // and the others reach their services.
    PlayerPage(
        const std::string& interface, const std::string& method, const std::string& variable,
        const std::function<bool()>& othersAnswer = [] { return true; })
        : PlayerService(interface) {
        Eval("var log = [], make = () => PrivateObjectFactory." + method + "(), " + variable + " = make();");
        // The clients outlive the services of the test before; they learn in the main loop who has the names
        // now.
        std::string call;
        EXPECT_TRUE(WaitFor([&] {
            const bool answer = othersAnswer();
            Eval(variable + ".stop()");
            const auto calls = player.TakeCalls();
            call = calls.empty() ? "" : calls.front();
            return answer && !call.empty();
        }));
        id = static_cast<uint32_t>(std::stoul(call.substr(call.find('(') + 1)));
        LogCapture::Clear();
    }

    // A call as the service sees it, of the object or of the one that was made so many after it.
    [[nodiscard]] std::string Mine(const std::string& method, const std::string& rest = "") const {
        return method + " (" + std::to_string(id) + "," + (rest.empty() ? "" : " " + rest) + ")";
    }
    [[nodiscard]] std::string Theirs(uint32_t after, const std::string& method) const {
        return method + " (" + std::to_string(id + after) + ",)";
    }
    static void Send(event_t event) { CDAEBrowserAPIWK::GetInstance()->SendEventToPlugins(event); }
    static void Fire(int32_t code, uint32_t plugin, int32_t first = 0, int32_t second = 0) {
        Send(event_t::WithData(code, plugin, first, second));
    }

    uint32_t id = 0;
};
