// A plain script object with the values that the channel cache sends for a channel: what a page without the
// bundle would have.
#pragma once

#include <JavaScriptCore/JavaScript.h>

#include <array>

#include "Benchmarks/Middleware.h"
#include "Benchmarks/Script.h"
#include "IPC/DBUS/Src/GLibHandles.h"
#include "InjectedBundle/Src/JSHandles.h"

namespace Benchmarks {

class PlainChannels {
 public:
    explicit PlainChannels(Script& script)
        : m_context(script.Context()), m_make(script.Function(R"(
            function (name, longName, description, idType, nid, onid, tsid, sid, isRadio, ccid, authorised, hidden,
                      locked, manualBlock, channelMaxBitRate, ipBroadcastID, majorChannel) {
                return { name, longName, description, idType, nid, onid, tsid, sid, channelType: Number(isRadio), ccid,
                         authorised, hidden, locked, manualBlock, channelMaxBitRate, ipBroadcastID, majorChannel };
            })")) {}

    [[nodiscard]] JSObjectRef Make(uint32_t id) const {
        const GVariantPtr channel(g_variant_ref_sink(ChannelInfo(id)));
        std::array<JSValueRef, 17> values{};
        for (gsize i = 0; i < values.size(); ++i)
            values[i] = Value(GVariantPtr(g_variant_get_child_value(channel.get(), i)).get());
        const JSValueRef object =
            JSObjectCallAsFunction(m_context, m_make, nullptr, values.size(), values.data(), nullptr);
        return JSValueToObject(m_context, object, nullptr);
    }

 private:
    [[nodiscard]] JSValueRef Value(GVariant* value) const {
        if (g_variant_is_of_type(value, G_VARIANT_TYPE_STRING)) {
            const OipfJavaScript::JSStringHandle text(g_variant_get_string(value, nullptr));
            return JSValueMakeString(m_context, text.Get());
        }
        if (g_variant_is_of_type(value, G_VARIANT_TYPE_BOOLEAN))
            return JSValueMakeBoolean(m_context, g_variant_get_boolean(value));
        return JSValueMakeNumber(m_context, g_variant_get_uint32(value));
    }

    JSContextRef m_context;
    JSObjectRef m_make;
};

}  // namespace Benchmarks
