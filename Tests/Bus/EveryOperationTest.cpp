// Every operation of every client, by the interface descriptions.

#include <cmath>

#include <gmock/gmock.h>

#include "IPC/DBUS/Src/AVEventHandlerWK_DBus.h"
#include "IPC/DBUS/Src/CBroadcastPlayerWK_DBus.h"
#include "IPC/DBUS/Src/ChannelCacheWK_DBus.h"
#include "IPC/DBUS/Src/DAEBrowserAPIWK_DBus.h"
#include "IPC/DBUS/Src/MetadataSearchWK_DBus.h"
#include "Tests/Bus/OperationWalk.h"

namespace {

using testing::IsEmpty;

// The same on the wire as what is waited for.
#define SENT(name) Op(#name, &Client::Send##name)
#define OP(name, ...) Op(#name, &Client::name __VA_OPT__(, ) __VA_ARGS__)

// Log readers of the platform know some failures under another class's name.
TEST(EveryOperation, OfTheBrowserIsAsTheWireSays) {
    OperationWalk walk("IDAEBrowserAPI", "CDAEBrowserAPIWK", "CDAEBrowserAPIWK");
    using Client = CDAEBrowserAPIWK;
    Client client;
    walk(client, OP(SetProfileSupport), OP(IsProfileSupported), OP(GetXmlCapabilities), OP(HasCapability),
         OP(CurrentChannel), OP(GetChannelList), OP(GetPreferredAudioLang), OP(GetPreferredSubtitleLang),
         OP(GetPreferredUILang), OP(CreateApplication), OP(DestroyApplication), OP(Show), OP(Hide),
         OP(IsBroadcastRelated), OP(IsTrusted), OP(IsURLInAppBoundary), OP(SetKeyMask), OP(GetKeyMask),
         OP(GetMaxKeyMask), OP(GetProgramDescriptors), OP(GetProgCollection, "", "", "CAVEventHandlerWK"),
         OP(GetChannelsAndEventFromUrl), OP(GetParentalLockStatus), OP(GetDvbsiParentalLockMaxVal),
         OP(GetDvbsiParentalLockMinVal), OP(GetCIPlusDrmType), OP(IsSASSessionOpen), OP(SendDRMMessage),
         OP(GetCountryID), OP(GetTime), OP(StreamEventSubscribe), OP(StreamEventUnsubscribe),
         SENT(StreamEventUnsubscribe));
    EXPECT_THAT(walk.Missed(), IsEmpty());
}

TEST(EveryOperation, OfTheMediaPlayerIsAsTheWireSays) {
    OperationWalk walk("IAVEventHandler", "CAVEventHandlerWK", "CAVEventHandlerWK");
    using Client = CAVEventHandlerWK;
    Client client;
    walk(client, OP(FlagPlayerActive), OP(FlagPlayerPlaying), OP(IsAVPlayerAlive), OP(GetPlayer),
         OP(Play, " speed=%2"), OP(Stop), SENT(Stop), OP(Seek, " position=@2"), OP(Queue, " url=%2"),
         OP(ReleasePlayer), SENT(ReleasePlayer), OP(CheckMimeType, " (%1)"), OP(SetMimeType, " (%2)"),
         OP(ChangeMimeType, " new_mimetype=%2"), OP(SetAttribute, " name=%2 value=%3"), OP(GetMimeType),
         OP(SetData, " url=%2"), OP(GetData),
         OP(UpdateLayout, " - Update the position of the player window (#2,#3,#4,#5)"),
         OP(SetLocation, " url=%2"), OP(GetPlayState), OP(GetPlayPosition), OP(GetPlayTime), OP(GetSpeed),
         OP(SetVolume, " volume=#2"), OP(GetVolume, " volume=7"), OP(GetNrTracks), OP(GetCurrentTrack),
         OP(GetError), OP(GetVideoComponents, " ?2"), OP(GetAudioComponents, " ?2"),
         OP(GetSbtComponents, " ?2"), OP(SelectComponent, " type=#2 index=#3"),
         OP(UnselectComponent, " type=#2 index=#3"));
    EXPECT_THAT(walk.Missed(), IsEmpty());
    walk.Service().Reply("GetSpeed", "(1e300,)");
    float speed = 0;
    client.GetSpeed(1, speed);
    EXPECT_TRUE(std::isinf(speed));
    walk.Service().Emit("Unexpected", "(true,)");
    EXPECT_TRUE(WaitFor(
        [] { return LogCapture::Count("AVEventHandlerWK received Signal: Unexpected: (true,)") == 1; }));
}

TEST(EveryOperation, OfTheBroadcastPlayerIsAsTheWireSays) {
    OperationWalk walk("IBroadcastPlayer", "CBroadcastPlayerWK", "CAVEventHandlerWK");
    using Client = CBroadcastPlayerWK;
    Client client;
    walk(client, OP(BindToCurrentChannel), OP(SetChannel), OP(NextOrPrevChannel), OP(SetNullChannel),
         OP(Release), SENT(Release), OP(Stop), SENT(Stop), OP(IsPresenting), OP(GetPlayState), OP(GetChannel),
         OP(SetVolume), OP(GetVolume), OP(GetVideoComponents), OP(GetAudioComponents), OP(GetSbtComponents),
         OP(SelectComponent, " type=#2 index=#3", "", "CBroadcastPlayerWK"),
         OP(UnselectComponent, " type=#2 index=#3", "", "CBroadcastPlayerWK"), OP(UpdateLayout));
    EXPECT_THAT(walk.Missed(), IsEmpty());
    walk.Service().Emit("Unexpected", "(true,)");
    EXPECT_TRUE(WaitFor(
        [] { return LogCapture::Count("CBroadcastPlayerWK received Signal: Unexpected: (true,)") == 1; }));
}

TEST(EveryOperation, OfTheChannelCacheIsAsTheWireSays) {
    OperationWalk walk("IJSChannelCache", "CJSChannelCacheWK", "CJSChannelCacheWK");
    using Client = CJSChannelCacheWK;
    Client client;
    walk(client, OP(Retain), OP(Release), OP(GetChannelInfo));
    EXPECT_THAT(walk.Missed(), IsEmpty());
}

#undef OP
// Five classes share this service, and their lines name an operation with its class and signature.
#define OP(name, method) Op(#name, &Client::name, "", method)
#define ADD(method, ...) Op("Add", static_cast<uint32_t (Client::*)(__VA_ARGS__)>(&Client::Add), "", method)

TEST(EveryOperation, OfTheMetadataSearchIsAsTheWireSays) {
    OperationWalk walk("IMetaDataSearch", "", "");
    {
        using Client = CMetadataSearchManagerWK;
        Client client;
        walk(client, OP(StartSearch, "StartSearch"), OP(AbortSearch, "AbortSearch"),
             OP(CancelSearch, "CancelSearch"), OP(SendCancelSearch, "CancelSearch"));
    }
    {
        using Client = CMetadataSearchCacheWK;
        Client client;
        walk(client, OP(Retain, "MdsRetain"), OP(Release, "MdsRelease"), OP(Add, "MdsAdd"),
             OP(SetQuery, "MdsSetQuery"), OP(GetQuery, "MdsGetQuery"), OP(GetResults, "MdsGetResults"),
             OP(GetTarget, "MdsGetTarget"), OP(SetOrderBy, "MdsSetOrderBy"), OP(GetOrderBy, "MdsGetOrderBy"),
             OP(ExpandOrderBy, "MdsExpandOrderBy"), OP(AddConstraints, "MdsAddConstraints"),
             OP(RemoveConstraints, "MdsRemoveConstraints"), OP(ClearConstraints, "MdsClearConstraints"),
             OP(SetQueryWindow, "MdsSetQueryWindow"));
    }
    {
        using Client = CQueryCacheWK;
        Client client;
        walk(client, OP(Retain, "QcRetain"), OP(Release, "QcRelease"), ADD("QcAddOp", EQueryType),
             ADD("QcAddDataMode", EQueryType, EQueryMode, uint32_t),
             ADD("QcAddDataModeStr", EQueryType, EQueryMode, const std::string&),
             ADD("QcAddConstraints", const TConstraints&), OP(And, "QcAnd"), OP(Or, "QcOr"),
             OP(Not, "QcNot"));
    }
    {
        using Client = CSearchResultsCacheWK;
        Client client;
        walk(client, OP(Retain, "SrRetain"), OP(Release, "SrRelease"), OP(Add, "SrAdd"),
             OP(Parent, "SrParent"), OP(QueryResults, "SrQueryResults"), OP(ItemAtIndex, "SrItemAtIndex"),
             OP(SetQueryWindow, "SrSetQueryWindow"));
    }
    {
        using Client = CProgrammeCacheWK;
        Client client;
        walk(client, OP(Retain, "PcRetain"), OP(Release, "PcRelease"), OP(Get, "PcGet"));
    }
    EXPECT_THAT(walk.Missed(), IsEmpty());
}

}  // namespace
