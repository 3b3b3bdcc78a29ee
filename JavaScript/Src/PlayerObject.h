// What the two objects that show video have in common: their place on the screen, full-screen mode, the
// components of what is played, the receiver's events, which they hear as long as they live, and the player
// that they hold until their page is left.
#pragma once

#include <JavaScriptCore/JavaScript.h>

#include <cstdint>
#include <type_traits>

#include "API/Src/IBroadcastPlayerCommon.h"
#include "API/Src/IPluginController.h"
#include "CSP/Inc/PCLog.h"
#include "IPC/DBUS/Src/DAEBrowserAPIWK_DBus.h"
#include "InjectedBundle/Src/BindingCall.h"
#include "InjectedBundle/Src/PageBound.h"
#include "InjectedBundle/gen/js/jiAVComponent.h"
#include "JavaScript/Src/AttributeMap.h"
#include "JavaScript/Src/CAVComponentCollectionImpl.h"
#include "JavaScript/Src/CAVComponentImpl.h"
#include "JavaScript/Src/PlayerHold.h"

namespace OipfJavaScript {

// `Binding` and `Base` are the generated classes of the object, `Player` the interface of its player.
//
// Lifetime: a handler may drop the object, and the collector may run in it. The object stands at least until
// its DispatchEvent returns; afterwards it may be garbage, which goes when the engine is next called. So what
// follows a dispatch in an OnEvent touches no JavaScript unless ContextFor() says that a handler is left,
// which keeps the object.
template <class Binding, class Base, class Player>
class PlayerObject : public Base, public IPluginController, private PageBound {
 public:
    [[nodiscard]] uint32_t GetWidth() const { return m_window.width; }
    [[nodiscard]] uint32_t GetHeight() const { return m_window.height; }
    [[nodiscard]] bool GetFullScreen() const { return m_fullScreen; }

    [[nodiscard]] JSValueRef customGetComponents(const CallArguments& call) {
        return commonGetComponents(call, false);
    }
    [[nodiscard]] JSValueRef customGetCurrentActiveComponents(const CallArguments& call) {
        return commonGetComponents(call, true);
    }

    void SelectComponent(jiAVComponent* component) {
        const CAVComponentImpl& chosen = component->Implementation();
        if (m_player != nullptr)
            m_player->SelectComponent(m_playerId, chosen.GetType(), PidOf(chosen));
    }
    void SelectComponent(int32_t componentType) {
        if (m_player != nullptr)
            m_player->SelectComponent(m_playerId, componentType, kAnyPid);
    }
    void UnselectComponent(jiAVComponent* component) {
        const CAVComponentImpl& chosen = component->Implementation();
        if (m_player != nullptr)
            m_player->UnselectComponent(m_playerId, chosen.GetType(), PidOf(chosen));
    }
    void UnselectComponent(int32_t componentType) {
        if (m_player != nullptr)
            m_player->UnselectComponent(m_playerId, componentType, kAnyPid);
    }

    [[nodiscard]] JSValueRef customSetAttributes(const CallArguments& call) {
        if (call.count != 1 || !JSValueIsObject(call.context, call.values[0]))
            return Call::RefuseArguments(Binding::ID, "t_SetAttributes", call);
        AttributeMap attributes;
        JSObjectRef object = JSValueToObject(call.context, call.values[0], nullptr);
        if (!ReadAttributeMap(call.context, object, attributes, call.exception))
            return JSValueMakeNull(call.context);
        SetAttributes(attributes);
        return JSValueMakeUndefined(call.context);
    }

    void SetWindow(uint32_t x, uint32_t y, uint32_t width, uint32_t height) {
        HBBTV_LOG_OBJECT(INFO, "(x:%i, y:%i, w:%i, h:%i)", static_cast<int>(x), static_cast<int>(y),
                         static_cast<int>(width), static_cast<int>(height));
        const Window window{.width = width, .height = height, .x = x, .y = y};
        if (window == m_window && window == m_shownWindow)
            return;
        m_window = window;
        UpdateLayout();
    }

 protected:
    struct Window {
        uint32_t width = 0;
        uint32_t height = 0;
        uint32_t x = 0;
        uint32_t y = 0;
        bool operator==(const Window&) const = default;
    };

    // A null player is never asked for anything.
    PlayerObject(JSContextRef context, Player* player, uint32_t playerId)
        : Base(Binding::ID), PageBound(context), m_player(player), m_playerId(playerId) {
        CDAEBrowserAPIWK::GetInstance()->SubscribeEvents(this);
    }
    ~PlayerObject() override { CDAEBrowserAPIWK::GetInstance()->UnsubscribeEvents(this); }

    virtual void SetAttributes(const AttributeMap& attributes) = 0;
    virtual void ReleaseHeldPlayer() = 0;

    // A navigation has all players released when it begins, but the page runs on until the next one is there,
    // and may begin anew; of a frame that is taken out of its page nothing was released.
    void OnPageLeft() override {
        if (m_hold)
            ReleaseHeldPlayer();
        m_hold.End();
    }

    void UpdateLayout() {
        if (m_player == nullptr)
            return;
        m_player->UpdateLayout(m_playerId, m_window.x, m_window.y, m_window.width, m_window.height,
                               m_fullScreen);
        m_shownWindow = m_window;
    }

    void ChangeFullScreen(bool fullscreen) {
        HBBTV_LOG_OBJECT(INFO, "%s (now %s)", Text(fullscreen), Text(m_fullScreen));
        if (fullscreen == m_fullScreen)
            return;
        m_fullScreen = fullscreen;
        if (m_player == nullptr)
            return;
        UpdateLayout();
        this->DispatchEvent("FullScreenChange", nullptr);
        // What handlers called on this object has left its own errors in the block.
        this->ResetStatus();
    }

    [[nodiscard]] bool IsMine(const event_t& event) const {
        return event.plugin_id == 0 || event.plugin_id == m_playerId;
    }

    void OnComponentSelect(const event_t& event) {
        // Pages know the event by either name.
        for (const char* name : {"SelectedComponentChanged", "SelectedComponentChange"}) {
            if (JSContextRef context = this->ContextFor(name))
                this->DispatchEvent(name, "componentType", JSValueMakeNumber(context, event.Signed(0)),
                                    nullptr);
        }
    }

    Window m_window;
    bool m_fullScreen = false;
    Player* const m_player;
    const uint32_t m_playerId;
    PlayerHold m_hold;

 private:
    // Any component of a type.
    static constexpr uint32_t kAnyPid = 0xFFFFFFFF;

    static const char* Text(bool value) { return value ? "true" : "false"; }
    static uint32_t PidOf(const CAVComponentImpl& component) {
        return static_cast<uint32_t>(component.GetPid());
    }

    [[nodiscard]] JSValueRef commonGetComponents(const CallArguments& call, bool activeOnly) {
        constexpr bool kBroadcast = std::is_same_v<Player, IBroadcastPlayerCommon>;
        return CAVComponentCollectionImpl::commonGetComponents(call, m_playerId, activeOnly, kBroadcast);
    }

    // What the player knows: a width or height that the page writes need not have reached it.
    Window m_shownWindow;
};

}  // namespace OipfJavaScript
