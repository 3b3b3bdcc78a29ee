// A plain script object with the values that the channel cache sends for a channel: what a page without the
// bundle would have.
#pragma once

#include <JavaScriptCore/JavaScript.h>

#include <cstdint>
#include <iterator>
#include <string>

#include "Benchmarks/Middleware.h"
#include "Benchmarks/Script.h"
#include "InjectedBundle/Src/JSHandles.h"

namespace Benchmarks {

class PlainChannels {
 public:
    explicit PlainChannels(Script& script)
        : m_context(script.Context()),
          m_make(script.Function("function (name, longName, description, idType, nid, onid, tsid, sid, "
                                 "channelType, ccid, authorised,"
                                 " hidden, locked, manualBlock, channelMaxBitRate, ipBroadcastID, "
                                 "majorChannel) { return { name, longName,"
                                 " description, idType, nid, onid, tsid, sid, channelType, ccid, authorised, "
                                 "hidden, locked, manualBlock,"
                                 " channelMaxBitRate, ipBroadcastID, majorChannel }; }")) {}

    [[nodiscard]] JSObjectRef Make(uint32_t id) const {
        const ChannelValues channel(id);
        const JSValueRef values[] = {
            Text(channel.name),          Text(channel.longName),      Text(channel.description),
            Number(channel.idType),      Number(channel.nid),         Number(channel.onid),
            Number(channel.tsid),        Number(channel.sid),         Number(channel.radio ? 1 : 0),
            Text(channel.ccid),          Truth(channel.authorised),   Truth(channel.hidden),
            Truth(channel.locked),       Truth(channel.manualBlock),  Number(channel.maxBitRate),
            Text(channel.ipBroadcastId), Number(channel.majorChannel)};
        const JSValueRef object =
            JSObjectCallAsFunction(m_context, m_make, nullptr, std::size(values), values, nullptr);
        return JSValueToObject(m_context, object, nullptr);
    }

 private:
    [[nodiscard]] JSValueRef Text(const std::string& text) const {
        return JSValueMakeString(m_context, OipfJavaScript::JSStringHandle(text.c_str()).Get());
    }
    [[nodiscard]] JSValueRef Number(double number) const { return JSValueMakeNumber(m_context, number); }
    [[nodiscard]] JSValueRef Truth(bool truth) const { return JSValueMakeBoolean(m_context, truth); }

    JSContextRef m_context;
    JSObjectRef m_make;
};

}  // namespace Benchmarks
