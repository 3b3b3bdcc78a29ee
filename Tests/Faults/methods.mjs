// What makes the bundle call each method, by service: names of methods, what a page does, what it sees when one
// of them fails, and what when all work: a value, or a fact that comes true; where nothing is told, the same. The
// last value is for a service that vanishes during the call, where the page's later calls fail too. The functions
// run in the page, with what page.js defines there; an exception is seen as its name.

// What tells the page nothing.
const unseen = "undefined";

const hears = name => Function(`return heard.includes("${name}")`);
const isPlaying = () => window.medium.playState === 1;

// A search that is not the one that the page asked for fails.
const [found, failed] = [0, 4];

const rows = {
  DSMCC: [["FileRequest", () => ask(`dvb://3070.3e9.65/small.js?${Math.random()}`), "error", "loaded"]],

  IDAEBrowserAPI: [
    ["IsProfileSupported", () => typeof factory.createDrmAgentObject(), "TypeError", "object"],
    ["GetXmlCapabilities", () => capabilities().xmlCapabilities.querySelector("video_profile") !== null, false, true],
    ["HasCapability", () => capabilities().hasCapability("OITF_HD_UIPROF"), false, true],
    ["CurrentChannel", () => application().privateData.currentChannel !== null, false, true],
    ["GetChannelList", () => channels().length, 0, 3],
    ["GetPreferredAudioLang", () => settings().preferredAudioLanguage, "", "deu,eng"],
    ["GetPreferredSubtitleLang", () => settings().preferredSubtitleLanguage, "", "deu,fra"],
    ["GetPreferredUILang", () => settings().preferredUILanguage, "", "deu,eng"],
    ["GetCountryID", () => settings().countryId, "", "DEU"],
    ["CreateApplication", () => withChild(child => child !== null), false, true],
    ["DestroyApplication", () => withChild(() => undefined), unseen],
    ["Show", () => application().show(), unseen],
    ["Hide", () => application().hide(), unseen],
    ["IsBroadcastRelated", () => typeof video.getChannelConfig(), "SecurityError", "object"],
    ["IsTrusted", () => gateway().isCSPGCIPlusSupported, "SecurityError", true],
    ["IsSASSessionOpen", () => gateway().isCSPGCIPlusDiscovered, false, true, "SecurityError"],
    ["GetCIPlusDrmType", () => gateway().CSPGCIPlusDRMType.length, 0, 2],
    ["SetKeyMask", () => {
      const wanted = keys().value === 6 ? 2 : 6;
      return keys().setValue(wanted) === wanted;
    }, false, true],
    ["GetKeyMask", () => keys().setValue(4), 0, 4],
    ["GetMaxKeyMask", () => keys().maximumValue, 0, 2047],
    ["GetProgramDescriptors", () => video.programmes.item(0).getSIDescriptors(0x4d) !== null, false, true],
    ["GetProgCollection", () => video.programmes !== null, false, true],
    ["GetParentalLockStatus",
      () => factory.createParentalControlManagerObject().parentalRatingSchemes.item(0).threshold.value, 0, 16],
    // Without the television's time the search takes the system's.
    ["GetTime", () => fromStream(), found, found, failed],
    ["SendDRMMessage", () => factory.createDrmAgentObject().sendDRMMessage("text/plain", "hello", "long") !== null,
      false, true],
    ["StreamEventSubscribe", () => video.addStreamEventListener("dvb://1.2.3/e", "quick", triggered), unseen,
      hears("trigger")],
    ["StreamEventUnsubscribe", () => {
      video.addStreamEventListener("dvb://1.2.3/e", "quick", triggered);
      return video.removeStreamEventListener("dvb://1.2.3/e", "quick", triggered);
    }, unseen]
  ],

  IBroadcastPlayer: [
    ["BindToCurrentChannel", () => stopped().then(() => video.bindToCurrentChannel()), unseen,
      () => video.playState === 2],
    ["SetChannel", () => video.setChannel(channels()[1]), null,
      () => heard.includes("ChannelChangeSucceeded") && video.currentChannel.sid === 102],
    ["NextOrPrevChannel", () => video.nextChannel(), unseen, hears("ChannelChangeSucceeded")],
    // It makes the page independent of the broadcast, until it chooses a channel.
    ["SetNullChannel", () => {
      const first = channels()[0];
      return [video.setChannel(null), video.setChannel(first)];
    }, [null, null]],
    ["Release", () => video.release(), unseen, () => video.playState === 0],
    ["Stop", () => video.stop(), unseen, () => video.playState === 3],
    ["GetChannel", () => video.currentChannel !== null, false, true],
    ["GetVideoComponents GetAudioComponents GetSbtComponents", () => hasAllComponents(video), false, true],
    ["SelectComponent", () => (video.unselectComponent(1), video.selectComponent(1)), unseen,
      hears("SelectedComponentChange")],
    ["UnselectComponent", () => (video.selectComponent(1), video.unselectComponent(1)), unseen,
      hears("SelectedComponentChange")],
    ["UpdateLayout", () => video.setFullScreen(!video.fullScreen), unseen, hears("FullScreenChange")]
  ],

  IAVEventHandler: [
    ["SetLocation FlagPlayerActive Play SetData SetAttribute CheckMimeType SetMimeType", () => film().play(1), true,
      isPlaying],
    ["GetPlayer", () => [film().play(1), heard.join()], [true, "0 3"], isPlaying],
    ["Stop", () => playing().then(it => it.stop()), false, true],
    ["Queue", () => playing().then(it => it.queue(address)), true],
    ["Seek", () => playing().then(it => it.seek(1000)), false, true],
    ["ChangeMimeType", () => { film().type = "audio/mpeg"; }, unseen],
    ["GetMimeType", () => playing().then(it => it.type), "video/mp4"],
    ["GetPlayPosition", () => playing().then(it => typeof it.playPosition), "number"],
    ["GetPlayTime", () => playing().then(it => it.playTime), 0, 600000],
    // The last one that was told, which is a moment after the state.
    ["GetSpeed", () => playing().then(it => until(() => it.speed === 1).then(() => it.speed)), 1],
    ["SetVolume", () => playing().then(it => it.setVolume(50)), false, true],
    ["GetNrTracks", () => playing().then(it => it.nrTracks), 0, 1],
    ["GetCurrentTrack", () => playing().then(it => it.currentTrackIndex), 0],
    ["GetVideoComponents GetAudioComponents GetSbtComponents", () => playing().then(hasAllComponents), false, true],
    ["SelectComponent", () => playing().then(it => (it.unselectComponent(1), it.selectComponent(1))), unseen,
      hears("SelectedComponentChange")],
    ["UnselectComponent", () => playing().then(it => (it.selectComponent(1), it.unselectComponent(1))), unseen,
      hears("SelectedComponentChange")],
    ["ReleasePlayer", () => playing().then(it => it.release()), true],
    ["UpdateLayout", () => film().setFullScreen(true), unseen, hears("FullScreenChange")]
  ],

  IJSChannelCache: [
    ["Retain", () => channels()[0].name, "Nordlicht 1", "Nordlicht 1", ""],
    ["Release", () => collect(channels().length), unseen],
    ["GetChannelInfo", () => channels()[0].ccid, "ccid://0.0", "ccid://1.1"]
  ],

  IMetaDataSearch: [
    ["StartSearch SrRetain SrQueryResults SrSetQueryWindow MdsSetQuery MdsGetResults", () => ends(), failed, found],
    ["QcAddConstraints MdsAddConstraints", () => ends(search(), it => it.addChannelConstraint(channels()[0])), failed,
      found],
    ["MdsRemoveConstraints", () => ends(search(), it => it.addChannelConstraint(null)), failed, found],
    ["MdsSetOrderBy MdsClearConstraints MdsSetQueryWindow", () => fromStream(), failed, found],
    ["AbortSearch", () => afterEnd(it => it.result.abort()), 3],
    ["CancelSearch", () => afterEnd(it => it.addChannelConstraint(null)), 3],
    ["MdsAdd MdsRetain", () => factory.createSearchManagerObject().createSearch(1) !== null, false, true],
    ["QcAddDataModeStr QcRetain", () => another(search("")) !== null, false, true],
    ["QcAddDataMode", () => search("").createQuery("Programme.startTime", 2, 1) !== null, false, true],
    ["QcAnd", () => pair((one, two) => one.and(two) !== null), false, true],
    ["QcOr", () => pair((one, two) => one.or(two) !== null), false, true],
    ["QcNot", () => pair(one => one.not() !== null), false, true],
    ["SrItemAtIndex PcGet", () => afterEnd(it => it.result.item(0) !== null), false, true],
    ["QcRelease", () => collect(another(search("")) === null), unseen],
    ["MdsRelease", () => collect(search("").forget()), unseen],
    ["SrRelease", () => afterEnd(it => it.forget()).then(collect), unseen]
  ]
};

export const methods = Object.fromEntries(Object.entries(rows).flatMap(([service, those]) =>
  those.flatMap(([names, does, fails, works = fails, vanishes = fails]) =>
    names.split(" ").map(name => [`${service}.${name}`, { does, fails, works, vanishes }]))));
