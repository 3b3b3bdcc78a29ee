// The wire of the running receiver against tables that were written down apart from the interface
// descriptions.
#include <map>
#include <string>
#include <vector>

#include <gio/gio.h>
#include <gtest/gtest.h>

#include "Host/Inc/GHandles.h"
#include "Host/Receiver/Names.h"
#include "Tests/Bus/ReceiverFixture.h"

namespace {

using Host::GNodeInfo;
using Host::GVariantHandle;

struct WireTable {
    std::string interface;
    std::vector<std::string> methods;
    std::vector<std::string> signals;
};

// clang-format off
const std::vector<WireTable> wireTables = {
    {"IDAEBrowserAPI",
     {
         "SetProfileSupport(profile q, major y, minor y, micro y) -> ()",
         "IsProfileSupported(profile q, major y, minor y, micro y) -> (result b)",
         "GetXmlCapabilities() -> (result s)",
         "HasCapability(capability s) -> (result b)",
         "CurrentChannel() -> (id u, result b)",
         "GetChannelList() -> (channelIds au)",
         "GetPreferredAudioLang() -> (langs s)",
         "GetPreferredSubtitleLang() -> (langs s)",
         "GetPreferredUILang() -> (langs s)",
         "CreateApplication(URL s, viewId i) -> (result b)",
         "DestroyApplication(viewId i) -> ()",
         "Show(view_id i) -> ()",
         "Hide(view_id i) -> ()",
         "IsBroadcastRelated() -> (result b)",
         "IsTrusted() -> (result b)",
         "IsURLInAppBoundary(url s) -> (result b)",
         "SetKeyMask(value i) -> ()",
         "GetKeyMask() -> (result u)",
         "GetMaxKeyMask() -> (result u)",
         "GetProgramDescriptors(id u, eid q, tag i, tag_ext i, priv i) -> (result aay)",
         "GetProgCollection(id u) -> (IProgrammeCollection a(ssuuyis))",
         "GetParentalLockStatus() -> (result i)",
         "GetDvbsiParentalLockMaxVal() -> (result i)",
         "GetDvbsiParentalLockMinVal() -> (result i)",
         "GetCIPlusDrmType() -> (ciplus_drmtypes s)",
         "IsSASSessionOpen() -> (result b)",
         "GetCountryID() -> (country s)",
         "GetTime() -> (utc u, offset i, result b)",
         "SendDRMMessage(msgType s, msg s, DRMSystemID s) -> (transactionID i)",
         "StreamEventSubscribe(evURL s, evName s) -> (TDSMCCJobId u)",
         "StreamEventUnsubscribe(id u) -> (result b)",
         "GetChannelsAndEventFromUrl(url s) -> (channel_ids au, event_id q, result b)",
     },
     {
         "PluginEvent(event i, plugin_id u)",
         "PluginEventUnsigned(event i, plugin_id u, unsigned u)",
         "PluginEventFloat(event i, plugin_id u, float d)",
         "PluginEventSigned(event i, plugin_id u, int i)",
         "PluginEventData(event i, plugin_id u, data0 i, data1 i)",
         "PluginEventDrmError(event i, plugin_id u, error_state u, content_id s, rights_issuer_url s)",
         "SASMessage(sasdata ay)",
         "StreamEvent(status u, eventId n, eventName s, eventData ay, jobid u)",
         "PlayReadyResponse(transaction_id u, result_code i, result_msg s)",
     }},
    {"IBroadcastPlayer",
     {
         "BindToCurrentChannel(pluginId u) -> (result b)",
         "SetChannel(pluginId u, type u, dsd s, onid i, tsid i, sid i, id u) -> (id u, result b)",
         "NextOrPrevChannel(pluginId u, next b) -> (exception s, result b)",
         "SetNullChannel(pluginId u, setBroadcastIndependentApp b) -> ()",
         "Release(pluginId u) -> ()",
         "Stop(pluginId u) -> ()",
         "IsPresenting(pluginId u) -> (result b)",
         "GetPlayState(pluginId u) -> (playstate i)",
         "GetChannel(pluginId u) -> (id u, result b)",
         "SetVolume(pluginId u, val i) -> ()",
         "GetVolume(pluginId u) -> (val i)",
         "GetAudioComponents(pluginId u, active b) -> (components a(isbnqysbi))",
         "GetVideoComponents(pluginId u, active b) -> (components a(isbnqysbi))",
         "GetSbtComponents(pluginId u, active b) -> (components a(isbnqysbi))",
         "SelectComponent(pluginId u, type i, index i) -> ()",
         "UnselectComponent(pluginId u, type i, index i) -> ()",
         "UpdateLayout(pluginId u, m_x u, m_y u, m_width u, m_height u, fullscreen b) -> ()",
     },
     {}},
    {"IAVEventHandler",
     {
         "SetLocation(pluginId u, doc_location s) -> ()",
         "FlagPlayerActive(pluginId u) -> (result b)",
         "FlagPlayerPlaying(pluginId u) -> (result b)",
         "IsAVPlayerAlive(pluginId u) -> (result b)",
         "GetPlayer(pluginId u) -> (result b)",
         "Play(pluginId u, speed d) -> (result b)",
         "Stop(pluginId u) -> (result b)",
         "Queue(pluginId u, url s) -> (result b)",
         "Seek(pluginId u, position u) -> (result b)",
         "SetData(pluginId u, url s) -> ()",
         "GetData(pluginId u) -> (url s)",
         "SetAttribute(pluginId u, name s, value s) -> ()",
         "CheckMimeType(mimetype s) -> (result b)",
         "SetMimeType(pluginId u, mimetype s) -> (result b)",
         "ChangeMimeType(pluginId u, mimetype s) -> (result b)",
         "GetMimeType(pluginId u) -> (mimetype s)",
         "GetPlayPosition(pluginId u) -> (position u)",
         "GetPlayState(pluginId u) -> (playstate i)",
         "GetPlayTime(pluginId u) -> (time u)",
         "GetSpeed(pluginId u) -> (speed d)",
         "SetVolume(pluginId u, volume i) -> (result b)",
         "GetVolume(pluginId u) -> (volume i, result b)",
         "GetNrTracks(pluginId u) -> (num i)",
         "GetCurrentTrack(pluginId u) -> (track i)",
         "GetError(pluginId u) -> (error i)",
         "GetVideoComponents(pluginId u, active b) -> (components a(isbnqysbi))",
         "GetAudioComponents(pluginId u, active b) -> (components a(isbnqysbi))",
         "GetSbtComponents(pluginId u, active b) -> (components a(isbnqysbi))",
         "SelectComponent(pluginId u, type i, index i) -> ()",
         "UnselectComponent(pluginId u, type i, index i) -> ()",
         "ReleasePlayer(pluginId u) -> ()",
         "UpdateLayout(pluginId u, x u, y u, width u, height u, fullscreen b) -> ()",
     },
     {}},
    {"IJSChannelCache",
     {
         "Retain(id u) -> (result b)",
         "Release(id u) -> ()",
         "GetChannelInfo(id u) -> (name s, long_name s, desc s, id_type u, nid u, onid u, tsid u, "
         "sid u, ch_type b, ccid s, authorised b, hidden b, locked b, manual_block b, max_bit_rate u, "
         "ipBroadcastId s, major_channel u, result b)",
     },
     {}},
    {"IMetaDataSearch",
     {
         "StartSearch(mds_id u) -> ()",
         "AbortSearch(mds_id u) -> ()",
         "CancelSearch(mds_id u) -> ()",
         "QcRetain(id u) -> (retval b)",
         "QcRelease(id u) -> ()",
         "QcAddOp(op u) -> (retval u)",
         "QcAddDataMode(data u, mode u, value u) -> (retval u)",
         "QcAddDataModeStr(data u, mode u, value s) -> (retval u)",
         "QcAddConstraints(constraints a(uusu)) -> (retval u)",
         "QcAnd(id_1 u, id_2 u) -> (result u, retval b)",
         "QcOr(id_1 u, id_2 u) -> (result u, retval b)",
         "QcNot(id u) -> (result u, retval b)",
         "SrRetain(id u) -> (retval b)",
         "SrRelease(id u) -> ()",
         "SrAdd(mds_id u) -> (retval u)",
         "SrParent(id u) -> (result u, retval b)",
         "SrQueryResults(id u) -> (complete b, offset u, count u, size u, retval b)",
         "SrItemAtIndex(id u, index u) -> (result b, prog u, retval b)",
         "SrSetQueryWindow(id u, start i, count i) -> (result b, retval b)",
         "MdsRetain(id u) -> (retval b)",
         "MdsRelease(id u) -> ()",
         "MdsAdd(target i) -> (retval u)",
         "MdsSetQuery(id u, query_id u) -> (retval b)",
         "MdsGetQuery(id u) -> (query_id u, retval b)",
         "MdsGetResults(id u) -> (result u, retval b)",
         "MdsGetTarget(id u) -> (target i, retval b)",
         "MdsSetOrderBy(id u, orderBy a(ub)) -> (retval b)",
         "MdsGetOrderBy(id u) -> (orderBy a(ub), retval b)",
         "MdsExpandOrderBy(id u, type u, bool b) -> (retval b)",
         "MdsAddConstraints(id u, constraint_id u) -> (result b, retval b)",
         "MdsRemoveConstraints(id u, type u) -> (retval b)",
         "MdsClearConstraints(id u) -> (retval b)",
         "MdsSetQueryWindow(id u, start i, count i) -> (result b, retval b)",
         "PcRetain(id u) -> (retval b)",
         "PcRelease(id u) -> ()",
         "PcGet(id u) -> (channel_id u, event_id u, name s, desc s, crid s, start u, duration u, "
         "rating u, retval b)",
     },
     {}},
    {"DSMCC",
     {
         "FileRequest(handle u, url s) -> (result b)",
     },
     {
         "FileResponse(handle u, url s, data ay, data_length u, status b)",
     }},
};
// clang-format on

std::string describe(GDBusArgInfo** arguments) {
    std::string text;
    for (; arguments != nullptr && *arguments != nullptr; ++arguments)
        text += (text.empty() ? "" : ", ") + std::string((*arguments)->name) + " " + (*arguments)->signature;
    return "(" + text + ")";
}

std::string tupleOf(GDBusArgInfo** arguments) {
    std::string tuple = "(";
    for (; arguments != nullptr && *arguments != nullptr; ++arguments)
        tuple += (*arguments)->signature;
    return tuple + ")";
}

// Zero, empty or false of any type.
GVariant* emptyValue(const std::string& type) {
    if (type[0] == 'a')
        return g_variant_new_array(G_VARIANT_TYPE(type.c_str() + 1), nullptr, 0);
    return g_variant_parse(G_VARIANT_TYPE(type.c_str()),
                           type == "s"   ? "''"
                           : type == "b" ? "false"
                                         : "0",
                           nullptr, nullptr, nullptr);
}

GVariantHandle emptyArguments(GDBusArgInfo** arguments) {
    GVariantBuilder builder;
    g_variant_builder_init(&builder, G_VARIANT_TYPE_TUPLE);
    for (; arguments != nullptr && *arguments != nullptr; ++arguments) {
        const GVariantHandle value(g_variant_ref_sink(emptyValue((*arguments)->signature)));
        g_variant_builder_add_value(&builder, value.get());
    }
    return GVariantHandle(g_variant_ref_sink(g_variant_builder_end(&builder)));
}

class AReceiverOnTheWire : public ReceiverTest::RunningReceiver {
 protected:
    // What the object at the path says of itself.
    GNodeInfo introspected(const char* destination, const char* path) {
        const GVariantHandle reply(g_dbus_connection_call_sync(
            connection(), destination, path, "org.freedesktop.DBus.Introspectable", "Introspect", nullptr,
            G_VARIANT_TYPE("(s)"), G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr));
        if (!reply)
            return nullptr;
        const char* xml = nullptr;
        g_variant_get(reply.get(), "(&s)", &xml);
        return GNodeInfo(g_dbus_node_info_new_for_xml(xml, nullptr));
    }
};

TEST_F(AReceiverOnTheWire, HasExactlyTheSixInterfacesWithTheirMethodsAndSignals) {
    std::size_t methods = 0;
    std::size_t signals = 0;
    for (const auto& table : wireTables) {
        // Every interface is reached under the bus name that is its own name.
        const auto name = Receiver::Names::Prefix + table.interface;
        const auto node = introspected(name.c_str(), Receiver::Names::ObjectPath);
        ASSERT_TRUE(node) << name;
        const auto* interface = g_dbus_node_info_lookup_interface(node.get(), name.c_str());
        ASSERT_NE(interface, nullptr) << name;
        std::vector<std::string> seenMethods;
        for (auto** method = interface->methods; method != nullptr && *method != nullptr; ++method)
            seenMethods.push_back((*method)->name + describe((*method)->in_args) + " -> " +
                                  describe((*method)->out_args));
        std::vector<std::string> seenSignals;
        for (auto** signal = interface->signals; signal != nullptr && *signal != nullptr; ++signal)
            seenSignals.push_back((*signal)->name + describe((*signal)->args));
        EXPECT_EQ(seenMethods, table.methods) << table.interface;
        EXPECT_EQ(seenSignals, table.signals) << table.interface;
        EXPECT_TRUE(interface->properties == nullptr || interface->properties[0] == nullptr)
            << table.interface;
        methods += seenMethods.size();
        signals += seenSignals.size();
    }
    EXPECT_EQ(methods, 121u);
    EXPECT_EQ(signals, 10u);
}

TEST_F(AReceiverOnTheWire, AnswersEveryMethodWithTheRightTupleEvenToEmptyArguments) {
    const auto node = introspected("org.vantrel.hbbtv.IDAEBrowserAPI", Receiver::Names::ObjectPath);
    ASSERT_TRUE(node);
    std::size_t answered = 0;
    for (auto** interface = node->interfaces; *interface != nullptr; ++interface) {
        if (!std::string((*interface)->name).starts_with(Receiver::Names::Prefix))
            continue;
        for (auto** method = (*interface)->methods; *method != nullptr; ++method) {
            Host::GErrorSlot error;
            const GVariantHandle reply(g_dbus_connection_call_sync(
                connection(), (*interface)->name, Receiver::Names::ObjectPath, (*interface)->name,
                (*method)->name, emptyArguments((*method)->in_args).get(), nullptr, G_DBUS_CALL_FLAGS_NONE,
                -1, nullptr, error.out()));
            ASSERT_TRUE(reply) << (*interface)->name << "." << (*method)->name << ": " << error.message();
            EXPECT_EQ(g_variant_get_type_string(reply.get()), tupleOf((*method)->out_args))
                << (*method)->name;
            ++answered;
        }
    }
    EXPECT_EQ(answered, 121u);

    // One door: each of these calls, and nothing else, is in the log.
    const auto calls = control("GetCalls");
    ASSERT_TRUE(calls.value);
    const GVariantHandle list(g_variant_get_child_value(calls.value.get(), 0));
    EXPECT_EQ(g_variant_n_children(list.get()), 121u);
}

TEST_F(AReceiverOnTheWire, KeepsTheControlInterfaceApartFromTheProduct) {
    const auto product = introspected("org.vantrel.hbbtv.IDAEBrowserAPI", Receiver::Names::ObjectPath);
    ASSERT_TRUE(product);
    EXPECT_EQ(g_dbus_node_info_lookup_interface(product.get(), Receiver::Names::Control), nullptr);
    const auto control = introspected(Receiver::Names::Control, Receiver::Names::ControlPath);
    ASSERT_TRUE(control);
    EXPECT_NE(g_dbus_node_info_lookup_interface(control.get(), Receiver::Names::Control), nullptr);
}

}  // namespace
