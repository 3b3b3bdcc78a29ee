#!/usr/bin/python3
"""A receiver's middleware behind the bundle: three channels, their programmes, settings and capabilities.

Its author had Docs/dbus and nothing else, and writes it down for whoever writes one in another language. It claims three
of the six interfaces; pages that play media or search get failure values, as from any service that is not there. It needs
Debian's python3-gi. To see it work:

    dbus-run-session -- sh -c 'Examples/middleware/middleware.py & exec hbbtv-shell --session-bus --no-receiver URL'
"""
import os
import sys
import time

from gi.repository import Gio, GLib

# Every interface has a bus name that is equal to its own, and is exported at this one path.
PREFIX, PATH = "org.vantrel.hbbtv.", "/org/vantrel/hbbtv"
# The descriptions: of the source tree, or as they are installed. What is made from them cannot drift.
HERE = os.path.dirname(os.path.abspath(__file__))
FOLDERS = [os.path.normpath(os.path.join(HERE, folder)) for folder in ("../../gen/dbus", "../../dbus-1/interfaces")]

# How a number of a channel says that it does not apply, and how a signal says that there is no error.
NOT_KNOWN, NO_ERROR = 0xFFFFFFFF, 1000
# States of a player of live television, and the codes of the signal PluginEventData that tell of it.
UNREALIZED, CONNECTING, PRESENTING, STOPPED = range(4)
CHANNEL_CHANGED, STATE_CHANGED, COMPONENT_CHANGED = 100, 101, 108
# Why a channel cannot be shown.
NO_SIGNAL, UNKNOWN_CHANNEL = 1, 5
TUNING_MS = 200

# A channel's id is ours to choose, any number but 0. The third one cannot be received here.
CHANNELS = {11: ("Harbour", 101), 12: ("Hills", 102), 13: ("Static", 103)}
# Component records (isbnqysbi): type 0 video, 1 audio, 2 subtitles; encoding, encrypted, pid, ca_sid, tag, language,
# hearing impaired, and 16:9 in hundredths or the number of sound channels.
COMPONENTS = {0: [(0, "H264", False, 256, 0, 1, "", False, 178)],
              1: [(1, "HEAAC", False, 257, 0, 2, "eng", False, 2), (1, "HEAAC", False, 258, 0, 3, "deu", False, 2)],
              2: []}


class Television:
    """What the interfaces share: the channel that is shown, and the players."""

    def __init__(self, bus):
        self.bus, self.current = bus, 11
        # A player is known by the client of the bus that has it and its pluginId: each web process counts from 1.
        self.players = {}

    def player(self, caller, plugin):
        return self.players.setdefault((caller, plugin), {"state": UNREALIZED, "timer": 0, "audio": 257, "volume": 80})

    def tell(self, caller, signal, types, *values):
        # Only the client whose player it is hears of it; another one's player may have the same number.
        self.bus.emit_signal(caller, PATH, PREFIX + "IDAEBrowserAPI", signal, GLib.Variant(types, values))

    def change_state(self, caller, plugin, state, error=NO_ERROR):
        self.player(caller, plugin)["state"] = state
        self.tell(caller, "PluginEventData", "(iuii)", STATE_CHANGED, plugin, state, error)

    def stop_tuning(self, caller, plugin):
        timer = self.player(caller, plugin)
        if timer["timer"]:
            GLib.source_remove(timer["timer"])
        timer["timer"] = 0

    def tune(self, caller, plugin, channel, is_change):
        """Begins, and answers at once: the page waits for the answer, and hears of the outcome by signals."""
        def finish():
            self.player(caller, plugin)["timer"] = 0
            error = NO_SIGNAL if channel == 13 else NO_ERROR
            if is_change:
                if error == NO_ERROR:
                    self.current = channel
                self.tell(caller, "PluginEventData", "(iuii)", CHANNEL_CHANGED, plugin, channel, error)
            self.change_state(caller, plugin, PRESENTING if error == NO_ERROR else UNREALIZED, error)
            return GLib.SOURCE_REMOVE
        # The last of many quick key presses wins.
        self.stop_tuning(caller, plugin)
        self.player(caller, plugin)["timer"] = GLib.timeout_add(TUNING_MS, finish)
        self.change_state(caller, plugin, CONNECTING)

    def forget(self, caller):
        """A client that leaves the bus, a web process that crashes for one, releases nothing itself."""
        for key in [key for key in self.players if key[0] == caller]:
            self.stop_tuning(*key)
            del self.players[key]


class IBroadcastPlayer:
    """A method has the name that it has on the bus; `caller` is who asks, and a tuple is what is answered."""

    def __init__(self, television):
        self.television = television

    def BindToCurrentChannel(self, caller, plugin):
        # Who presents already goes on, and no change of the channel is told.
        if self.television.player(caller, plugin)["state"] not in (CONNECTING, PRESENTING):
            self.television.tune(caller, plugin, self.television.current, is_change=False)
        return (True,)

    def SetChannel(self, caller, plugin, id_type, dsd, onid, tsid, sid, channel):
        if channel == 0:  # Not one of ours, but described by the page.
            channel = next((id for id, (_, own) in CHANNELS.items() if (onid, tsid, sid) == (1, 2, own)), 0)
        if channel not in CHANNELS:
            channel &= 0x7FFFFFFF  # The signal's number has a sign.
            self.television.tell(caller, "PluginEventData", "(iuii)", CHANNEL_CHANGED, plugin, channel, UNKNOWN_CHANNEL)
            return (channel, False)
        self.television.tune(caller, plugin, channel, is_change=True)
        return (channel, True)

    def NextOrPrevChannel(self, caller, plugin, is_next):
        ids = list(CHANNELS)
        at = ids.index(self.television.current) + (1 if is_next else -1)
        self.television.tune(caller, plugin, ids[at % len(ids)], is_change=True)
        return ("", True)

    def SetNullChannel(self, caller, plugin, _):
        self.television.tell(caller, "PluginEventData", "(iuii)", CHANNEL_CHANGED, plugin, 0, NO_ERROR)
        self.Release(caller, plugin)

    def Release(self, caller, plugin):
        # 0 is all players of the page that is left.
        for key in [key for key in self.television.players if key in ((caller, plugin), (caller, plugin or key[1]))]:
            self.television.stop_tuning(*key)
            if self.television.players[key]["state"] != UNREALIZED:
                self.television.change_state(*key, UNREALIZED)
            del self.television.players[key]

    def Stop(self, caller, plugin):
        self.television.stop_tuning(caller, plugin)
        if self.television.player(caller, plugin)["state"] in (CONNECTING, PRESENTING):
            self.television.change_state(caller, plugin, STOPPED)

    def GetChannel(self, caller, plugin):
        if self.television.player(caller, plugin)["state"] == UNREALIZED:
            return (0, False)
        return (self.television.current, True)

    def components(self, caller, plugin, kind, active):
        player = self.television.player(caller, plugin)
        if player["state"] == UNREALIZED or (active and player["state"] == STOPPED):
            return ([],)
        return ([record for record in COMPONENTS[kind] if not active or kind != 1 or record[3] == player["audio"]],)

    def GetVideoComponents(self, caller, plugin, active):
        return self.components(caller, plugin, 0, active)

    def GetAudioComponents(self, caller, plugin, active):
        return self.components(caller, plugin, 1, active)

    def GetSbtComponents(self, caller, plugin, active):
        return self.components(caller, plugin, 2, active)

    def SelectComponent(self, caller, plugin, kind, pid):
        player = self.television.player(caller, plugin)
        if kind == 1 and pid in (257, 258) and pid != player["audio"]:
            player["audio"] = pid
            self.television.tell(caller, "PluginEventSigned", "(iui)", COMPONENT_CHANGED, plugin, kind)

    def UnselectComponent(self, caller, plugin, kind, pid):
        pass  # There is always sound.

    def UpdateLayout(self, caller, plugin, x, y, width, height, full_screen):
        pass  # Here a receiver moves its picture.


class IJSChannelCache:
    # Channels that never go away need no counting.
    def Retain(self, caller, channel):
        return (channel in CHANNELS,)

    def Release(self, caller, channel):
        pass

    def GetChannelInfo(self, caller, channel):
        name, sid = CHANNELS.get(channel, ("", 0))
        # ID_DVB_T2, network, onid, tsid, sid; television; authorised, not hidden, not locked, not blocked.
        return (name, name + " HD", "", 16, 1, 1, 2, sid, False, f"ccid://{channel}", True, False, False, False,
                NOT_KNOWN, "", channel - 10 if name else 0, name != "")


class IDAEBrowserAPI:
    """Most of what a page asks of the receiver itself never changes: the methods of this table."""
    CONSTANT = {
        "GetPreferredAudioLang": "eng,deu", "GetPreferredSubtitleLang": "eng", "GetPreferredUILang": "eng",
        "GetCountryID": "DEU", "GetCIPlusDrmType": "", "IsSASSessionOpen": False, "GetParentalLockStatus": 16,
        "IsBroadcastRelated": True, "IsTrusted": False, "GetChannelList": list(CHANNELS), "GetMaxKeyMask": 0x7FF,
        "StreamEventSubscribe": 0, "StreamEventUnsubscribe": False, "CreateApplication": False,
        # One line, apostrophes only: the bundle puts it into a script between quotation marks.
        "GetXmlCapabilities": "<profilelist><ui_profile name='OITF_HD_UIPROF+DVB_T2'/></profilelist>",
        "GetProgramDescriptors": []}
    # Nothing happens and nothing is answered: there is one application, and its view is the browser's own.
    NOTHING = ("DestroyApplication", "Show", "Hide")

    def __init__(self, television):
        self.television, self.mask, self.transactions = television, 0, 0
        for name, value in self.CONSTANT.items():
            setattr(self, name, lambda caller, *_, value=value: (value,))
        for name in self.NOTHING:
            setattr(self, name, lambda caller, *_: None)

    def IsProfileSupported(self, caller, profile, *version):
        return (profile == 0 and version <= (1, 2, 1),)

    def HasCapability(self, caller, name):
        return (name in ("OITF_HD_UIPROF", "+DVB_T2"),)

    def CurrentChannel(self, caller):
        return (self.television.current, True)

    def SetKeyMask(self, caller, value):
        self.mask = value & 0x7FF

    def GetKeyMask(self, caller):
        return (self.mask,)

    def GetTime(self, caller):
        return (int(time.time()), 3600, True)

    def GetProgCollection(self, caller, channel):
        if channel not in CHANNELS:
            return ([],)
        # (ssuuyis): an hour each, from the full hour on.
        hour = int(time.time()) // 3600 * 3600
        return ([(f"{CHANNELS[channel][0]} {n}", "", hour + n * 3600, 3600, 0, n + 1, f"crid://x.invalid/{n}")
                 for n in range(3)],)

    def SendDRMMessage(self, caller, kind, message, system):
        self.transactions += 1
        # "Unknown DRM system", once the page has its number.
        GLib.idle_add(self.television.tell, caller, "PlayReadyResponse", "(uis)", self.transactions, 5, "")
        return (self.transactions,)


def export(bus, service, loop):
    name = PREFIX + type(service).__name__
    file = next((path for path in (os.path.join(folder, name + ".xml") for folder in FOLDERS) if os.path.exists(path)), None)
    if file is None:
        sys.exit(f"middleware: no description {name}.xml in {', '.join(FOLDERS)}")
    with open(file, encoding="utf-8") as xml:
        description = Gio.DBusNodeInfo.new_for_xml(xml.read()).lookup_interface(name)

    # GIO has refused arguments of wrong types before this is called.
    def answer(_, caller, path, interface, method, arguments, invocation):
        function = getattr(service, method, None)
        if function is None:  # One of those that the bundle does not call.
            invocation.return_dbus_error("org.freedesktop.DBus.Error.UnknownMethod", f"{method} is not provided")
            return
        types = "".join(argument.signature for argument in description.lookup_method(method).out_args)
        try:
            result = function(caller, *arguments.unpack())
            invocation.return_value(GLib.Variant(f"({types})", result or ()))
        except Exception as fault:  # The caller must not wait for an answer that never comes.
            invocation.return_dbus_error("org.freedesktop.DBus.Error.Failed", f"{method}: {fault!r}")

    def lost(*_):
        print(f"middleware: {name} belongs to somebody else, or the bus has gone", file=sys.stderr)
        loop.failed = True
        loop.quit()

    # First the object, then the name: who sees the name may call at once.
    bus.register_object(PATH, description, answer, None, None)
    Gio.bus_own_name_on_connection(bus, name, Gio.BusNameOwnerFlags.DO_NOT_QUEUE,
                                   lambda *_: print("middleware:", name, flush=True), lost)


def main():
    loop = GLib.MainLoop()
    loop.failed = False
    bus = Gio.bus_get_sync(Gio.BusType.SESSION, None)
    television = Television(bus)
    bus.signal_subscribe("org.freedesktop.DBus", "org.freedesktop.DBus", "NameOwnerChanged", "/org/freedesktop/DBus", None,
                         Gio.DBusSignalFlags.NONE,
                         lambda *call: call[5][2] == "" and television.forget(call[5][0]))
    for service in (IBroadcastPlayer(television), IJSChannelCache(), IDAEBrowserAPI(television)):
        export(bus, service, loop)
    loop.run()
    sys.exit(1 if loop.failed else 0)


if __name__ == "__main__":
    main()
