// What the pages of the fault matrix have at hand. window.heard: the names of the events so far, of media with
// state and error.
var heard = [];
var root = document.getElementById("root");
var factory = window.oipfObjectFactory;
var address = "http://media.invalid/long.mp4";

var video = document.createElement("object");
video.type = "video/broadcast";
root.appendChild(video);
for (const name of ["PlayStateChange", "ChannelChangeSucceeded", "FullScreenChange", "SelectedComponentChange"])
  video.addEventListener(name, () => heard.push(name));

const pause = milliseconds => new Promise(passed => setTimeout(passed, milliseconds));

// Waits until it is so; the page itself does not hang when it never is.
async function until(fact) {
  for (const end = Date.now() + 5000; Date.now() < end; await pause(5)) {
    if (fact())
      return;
  }
  throw new DOMException(String(fact), "TimeoutError");
}

// Runs finalisers: what was dropped in an earlier task goes, even if the stack still seems to hold some of it.
async function collect() {
  for (let i = 0; i < 3; ++i) {
    await pause(1);
    window.__collectGarbage();
  }
}

const application = () => factory.createApplicationManagerObject().getOwnerApplication(document);
const keys = () => application().privateData.keyset;
const settings = () => factory.createConfigurationObject().configuration;
const capabilities = () => factory.createCapabilitiesObject();
const gateway = () => factory.createGatewayInfoObject();
const channels = () => video.getChannelConfig().channelList;

function film() {
  const medium = document.createElement("object");
  medium.setAttribute("type", "video/mp4");
  medium.setAttribute("name", "film");
  window.medium = root.appendChild(medium);
  medium.onPlayStateChange = (state, error) => heard.push(`${state} ${error}`);
  for (const name of ["FullScreenChange", "SelectedComponentChange"])
    medium.addEventListener(name, () => heard.push(name));
  medium.data = address;
  return medium;
}

async function playing() {
  const medium = film();
  medium.play(1);
  await until(() => medium.playState === 1);
  return medium;
}

function search(title = "e") {
  const manager = factory.createSearchManagerObject();
  const made = manager.createSearch(1);
  manager.onMetadataSearch = (_, state) => { made.last = state; };
  // Who has a handler is kept.
  made.forget = () => { manager.onMetadataSearch = null; return null; };
  if (title)
    made.setQuery(made.createQuery("Programme.name", 6, title));
  return made;
}

// The state that tells of the end of the search, after what "change" did to it.
async function ends(found = search(), change = () => {}) {
  change(found);
  found.last = undefined;
  found.result.getResults(0, 5);
  await until(() => found.last === 0 || found.last === 4);
  return found.last;
}

// What "change" answers of a search that has ended, or the state that tells of it.
async function afterEnd(change) {
  const made = search();
  await ends(made);
  const answer = change(made);
  if (answer !== undefined)
    return answer;
  await until(() => made.last !== 0);
  return made.last;
}

const another = made => made.createQuery("Programme.name", 6, "a");

function pair(combine) {
  const made = search("");
  return combine(another(made), another(made));
}

const fromStream = () => ends(search(), made => made.findProgrammesFromStream(channels()[0], null, 2));

// Shows a second application for a moment.
function withChild(look) {
  const child = application().createApplication(location.href, true);
  const seen = look(child);
  child?.destroyApplication();
  return seen;
}

function stopped() {
  video.stop();
  return until(() => video.playState === 3);
}

const hasAllComponents = player => [0, 1, 2].every(type => player.getComponents(type).length > 0);

const triggered = () => heard.push("trigger");

const ask = url => new Promise(answered => {
  const script = document.createElement("script");
  script.onload = () => answered("loaded");
  script.onerror = () => answered("error");
  script.src = url;
  document.head.appendChild(script);
});

// What does not work of what every page needs; the failure values of it all are told apart by their names.
async function check() {
  const own = application();
  const wrong = window.failures.slice();
  const expect = (name, isRight) => isRight || wrong.push(name);
  expect("application", own !== null);
  expect("current channel", own.privateData.currentChannel?.ccid.startsWith("ccid://1."));
  expect("channel list", channels().length === 3 && channels().item(2).name !== "");
  video.release();
  await until(() => video.playState === 0);
  video.bindToCurrentChannel();
  await until(() => video.playState === 2);
  expect("search", await ends() === 0);
  return wrong;
}

// Does it now, and answers what came of it.
async function perform(action) {
  heard = [];
  try {
    const answer = await action();
    return answer === undefined ? "undefined" : answer;
  } catch (error) {
    return error.name;
  }
}

// Everything that hears signals, with a handler for whatever they tell.
function listen() {
  heard = [];
  const hear = (object, ...names) => names.forEach(name => object.addEventListener(name, () => heard.push(name)));
  window.listening = [factory.createApplicationManagerObject(), gateway(), factory.createDrmAgentObject(), film()];
  const [manager, module, agent, medium] = listening;
  hear(manager, "LowMemory", "ApplicationLoadError");
  hear(module, "DiscoverCSPGCIPlus");
  hear(agent, "DRMMessageResult", "DRMSystemMessage");
  hear(medium, "PlayStateChange", "PlaySpeedChanged", "PlayPositionChanged", "ParentalRatingChange",
    "ParentalRatingError", "DRMRightsError");
  hear(video, "ChannelChangeError", "ParentalRatingChange");
  video.addStreamEventListener("dvb://1.2.3/e", "quick", triggered);
}
