// A page's script that uses the main objects as applications do. It must pass the compiler's strictest checks.

// Application and keys

const manager = oipfObjectFactory.createApplicationManagerObject();
const application = manager.getOwnerApplication(document);
if (application) {
  application.show();
  const { keyset, currentChannel } = application.privateData;
  const granted: number = keyset.setValue(Keyset.RED | keyset.NAVIGATION, [KeyEvent.VK_GUIDE]);
  const next: hbbtv.Application | null = application.createApplication("next.html", false);
  if (!next && granted < keyset.maximumValue && currentChannel) application.destroyApplication();
}
manager.onLowMemory = () => debug("low");
manager.onApplicationLoadError = function (app) { app.hide(); this.onLowMemory = null; };
document.addEventListener("keydown", (event) => { if (event.keyCode === KeyEvent.VK_RED) event.preventDefault(); });

// Live television in an element that the markup has

const video = document.querySelector('object[type="video/broadcast"]')!;
video.onPlayStateChange = (state, error) => { if (state === 2 && error === undefined) video.setFullScreen(true); };
video.onChannelChangeSucceeded = function (channel) { if (channel) debug(channel.name + this.width); };
video.addEventListener("ChannelChangeError", (event) => debug(event.type + event.channel.toFixed() + event.error));
video.addEventListener("SelectedComponentChange", (event) => event.componentType.toFixed(), false);
video.addEventListener("click", (event) => event.stopPropagation());
video.bindToCurrentChannel();
document.body.appendChild(video).style.width = "100%";

const list = video.getChannelConfig().channelList;
for (let i = 0; i < list.length; ++i) {
  if (list[i].channelType === Channel.TYPE_RADIO) video.setChannel(list[i], false);
}
const found = list.getChannelByTriplet(1, 2, 3) ?? list.getChannel("ccid://1.0") ?? list.item(0);
video.setChannel(found ?? null);
video.setChannel(video.createChannelObject(Channel.ID_DVB_SI_DIRECT, "dsd", 7));
video.setChannel(video.createChannelObject(Channel.ID_DVB_T, 1, 2, 3), false, "");

const audio = video.getComponents(video.COMPONENT_TYPE_AUDIO)?.item(1);
if (audio) video.selectComponent(audio);
video.unselectComponent(video.COMPONENT_TYPE_SUBTITLE);
video.addStreamEventListener("dvb://1.2.3/ev", "quiz", (event) => { const text: string = event.text + event.data; });

const programme = video.programmes?.[0];
if (programme && programme.parentalRating.length) {
  const ends = new Date((programme.startTime + programme.duration) * 1000);
  const descriptor: string | undefined = programme.getSIDescriptors(0x4d)?.[0];
  debug(`${ends} ${descriptor?.charCodeAt(0)} ${programme.episode ?? ""}`);
}

// Media from the network

const player = oipfObjectFactory.createVideoMpegObject();
player.type = "video/mp4";
player.data = "film.mp4";
player.width = 640;
player.onPlayPositionChanged = (position) => debug(position / 1000);
player.addEventListener("ParentalRatingChange", ({ ratings, blocked }) => { if (blocked) debug(ratings[0].name); });
document.body.appendChild(player);
player.play(1);
player.queue(null);
const element = document.getElementById("player") as hbbtv.OipfElement<hbbtv.OipfAVControl> | null;
const position: number | undefined = element?.playPosition;

// Ways to come by an element

const made = document.createElement("object");
made.type = "video/mp4";
const film = made as hbbtv.OipfElement<hbbtv.OipfAVControl>;
const width: number = film.width;
const embedded: HTMLObjectElement = film;
const radio: hbbtv.OipfElements["audio/mp3"] = document.createElement("object");
(document.createElement("object") as hbbtv.OipfElement<hbbtv.OipfVideoBroadcast>).bindToCurrentChannel();
const byId: hbbtv.OipfElements["video/broadcast"] | null = document.getElementById("live");
const bySelector: hbbtv.OipfElements["video/broadcast"] | null = document.querySelector("#live");
const live: hbbtv.OipfVideoBroadcast | null = byId ?? bySelector;
document.getElementById("declared").getOwnerApplication(document)?.hide();
(document.getElementById("field") as HTMLInputElement).value += document.getElementById("text")?.textContent;
(window.oipfObjectFactory || oipfObjectFactory).isObjectSupported(radio.type + width);

// What the receiver is and allows

const { configuration } = oipfObjectFactory.createConfigurationObject();
const languages: string[] = configuration.preferredAudioLanguage.split(",");
const capabilities = oipfObjectFactory.createCapabilitiesObject();
if (capabilities.hasCapability("+DL")) capabilities.xmlCapabilities.getElementsByTagName("video_profile");
const threshold: number | undefined =
  oipfObjectFactory.createParentalControlManagerObject().parentalRatingSchemes[0].threshold.value;

// Search and DRM, which a receiver may not have

if (oipfObjectFactory.isObjectSupported("application/oipfSearchManager")) {
  const search = oipfObjectFactory.createSearchManagerObject().createSearch(1);
  const query = search?.createQuery("Programme.name", 6, "news");
  if (search && query) {
    search.setQuery(query.not()?.or(query) ?? query);
    search.addChannelConstraint(list);
    search.addChannelConstraint(null);
    search.result.getResults(0, 10);
    debug(search.result.item(0)?.name);
  }
}
try {
  const agent = oipfObjectFactory.createDrmAgentObject();
  agent.onDRMMessageResult = (id, message, code) => debug(`${id} ${message} ${code.toFixed()}`);
  const id: string | null = agent.sendDRMMessage("text/plain", "hello", "urn:dvb:casystemid:1");
} catch (error) {
  debug((error as hbbtv.Exception).description);
}
