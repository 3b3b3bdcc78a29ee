// The wire of the running receiver against tables that were written down apart from the interface
// descriptions.
#include <map>
#include <string>
#include <vector>

#include <gio/gio.h>
#include <gtest/gtest.h>

#include "Host/Inc/GHandles.h"
#include "Host/Inc/ReceiverNames.h"
#include "Tests/Bus/ReceiverFixture.h"

namespace {

using Host::GNodeInfo;
using Host::GVariantHandle;

struct WireTable {
    const char* interface;
    const char* methods;  // name, tuple of the arguments, results
    const char* signals;
};

// clang-format off
const std::vector<WireTable> wireTables = {
    {"IDAEBrowserAPI",
     "SetProfileSupport(qyyy) IsProfileSupported(qyyy)b GetXmlCapabilities()s HasCapability(s)b CurrentChannel()ub "
     "GetChannelList()au GetPreferredAudioLang()s GetPreferredSubtitleLang()s GetPreferredUILang()s "
     "CreateApplication(si)b DestroyApplication(i) Show(i) Hide(i) IsBroadcastRelated()b IsTrusted()b "
     "IsURLInAppBoundary(s)b SetKeyMask(i) GetKeyMask()u GetMaxKeyMask()u GetProgramDescriptors(uqiii)aay "
     "GetProgCollection(u)a(ssuuyis) GetParentalLockStatus()i GetDvbsiParentalLockMaxVal()i "
     "GetDvbsiParentalLockMinVal()i GetCIPlusDrmType()s IsSASSessionOpen()b GetCountryID()s GetTime()uib "
     "SendDRMMessage(sss)i StreamEventSubscribe(ss)u StreamEventUnsubscribe(u)b GetChannelsAndEventFromUrl(s)auqb",
     "PluginEvent(iu) PluginEventUnsigned(iuu) PluginEventFloat(iud) PluginEventSigned(iui) PluginEventData(iuii) "
     "PluginEventDrmError(iuuss) SASMessage(ay) StreamEvent(unsayu) PlayReadyResponse(uis)"},
    {"IBroadcastPlayer",
     "BindToCurrentChannel(u)b SetChannel(uusiiiu)ub NextOrPrevChannel(ub)sb SetNullChannel(ub) Release(u) Stop(u) "
     "IsPresenting(u)b GetPlayState(u)i GetChannel(u)ub SetVolume(ui) GetVolume(u)i "
     "GetAudioComponents(ub)a(isbnqysbi) GetVideoComponents(ub)a(isbnqysbi) GetSbtComponents(ub)a(isbnqysbi) "
     "SelectComponent(uii) UnselectComponent(uii) UpdateLayout(uuuuub)",
     ""},
    {"IAVEventHandler",
     "SetLocation(us) FlagPlayerActive(u)b FlagPlayerPlaying(u)b IsAVPlayerAlive(u)b GetPlayer(u)b Play(ud)b "
     "Stop(u)b Queue(us)b Seek(uu)b SetData(us) GetData(u)s SetAttribute(uss) CheckMimeType(s)b SetMimeType(us)b "
     "ChangeMimeType(us)b GetMimeType(u)s GetPlayPosition(u)u GetPlayState(u)i GetPlayTime(u)u GetSpeed(u)d "
     "SetVolume(ui)b GetVolume(u)ib GetNrTracks(u)i GetCurrentTrack(u)i GetError(u)i "
     "GetVideoComponents(ub)a(isbnqysbi) GetAudioComponents(ub)a(isbnqysbi) GetSbtComponents(ub)a(isbnqysbi) "
     "SelectComponent(uii) UnselectComponent(uii) ReleasePlayer(u) UpdateLayout(uuuuub)",
     ""},
    {"IJSChannelCache",
     "Retain(u)b Release(u) GetChannelInfo(u)sssuuuuubsbbbbusub",
     ""},
    {"IMetaDataSearch",
     "StartSearch(u) AbortSearch(u) CancelSearch(u) QcRetain(u)b QcRelease(u) QcAddOp(u)u QcAddDataMode(uuu)u "
     "QcAddDataModeStr(uus)u QcAddConstraints(a(uusu))u QcAnd(uu)ub QcOr(uu)ub QcNot(u)ub SrRetain(u)b SrRelease(u) "
     "SrAdd(u)u SrParent(u)ub SrQueryResults(u)buuub SrItemAtIndex(uu)bub SrSetQueryWindow(uii)bb MdsRetain(u)b "
     "MdsRelease(u) MdsAdd(i)u MdsSetQuery(uu)b MdsGetQuery(u)ub MdsGetResults(u)ub MdsGetTarget(u)ib "
     "MdsSetOrderBy(ua(ub))b MdsGetOrderBy(u)a(ub)b MdsExpandOrderBy(uub)b MdsAddConstraints(uu)bb "
     "MdsRemoveConstraints(uu)b MdsClearConstraints(u)b MdsSetQueryWindow(uii)bb PcRetain(u)b PcRelease(u) "
     "PcGet(u)uusssuuub",
     ""},
    {"DSMCC",
     "FileRequest(us)b",
     "FileResponse(usayub)"},
};
// clang-format on

// The SHA-256 of the names of all arguments, in the same order: they are in nobody's way, and nobody changes
// them.
constexpr const char argumentNames[] = "e12c7817f5026cfa800e3eadec8347368981e4380783ddc7229542a7fe847e07";

void addWord(std::string& text, const std::string& word) {
    text += (text.empty() ? "" : " ") + word;
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
    std::string names;
    const auto addNames = [&names](GDBusArgInfo** arguments) {
        for (; arguments != nullptr && *arguments != nullptr; ++arguments)
            addWord(names, (*arguments)->name);
    };
    for (const auto& table : wireTables) {
        // Every interface is reached under the bus name that is its own name.
        const auto name = std::string(Receiver::Names::Prefix) + table.interface;
        const auto node = introspected(name.c_str(), Receiver::Names::ObjectPath);
        ASSERT_TRUE(node) << name;
        const auto* interface = g_dbus_node_info_lookup_interface(node.get(), name.c_str());
        ASSERT_NE(interface, nullptr) << name;
        std::string methods;
        for (auto** method = interface->methods; method != nullptr && *method != nullptr; ++method) {
            const auto results = tupleOf((*method)->out_args);
            addWord(methods,
                    (*method)->name + tupleOf((*method)->in_args) + results.substr(1, results.size() - 2));
            addNames((*method)->in_args);
            addNames((*method)->out_args);
        }
        std::string signals;
        for (auto** signal = interface->signals; signal != nullptr && *signal != nullptr; ++signal) {
            addWord(signals, (*signal)->name + tupleOf((*signal)->args));
            addNames((*signal)->args);
        }
        EXPECT_EQ(methods, table.methods) << table.interface;
        EXPECT_EQ(signals, table.signals) << table.interface;
        EXPECT_TRUE(interface->properties == nullptr || interface->properties[0] == nullptr)
            << table.interface;
    }
    const Host::GChars digest(g_compute_checksum_for_string(G_CHECKSUM_SHA256, names.c_str(), -1));
    EXPECT_STREQ(digest.get(), argumentNames) << names;
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
    EXPECT_EQ(calls().size(), 121u);
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
