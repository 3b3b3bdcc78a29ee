#!/usr/bin/python3
"""The middleware of the examples with the faults that its arguments name, for the check of middlewares to find."""
import os
import sys

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "../../Examples/middleware"))
sys.dont_write_bytecode = True
import middleware  # noqa: E402

STATE_CHANGED = middleware.STATE_CHANGED
tell = middleware.Television.tell
change_state = middleware.Television.change_state


def leave():
    os._exit(3)


FAULTS = {
    # The state comes without its error.
    "signal-type": lambda: setattr(
        middleware.Television, "tell",
        lambda self, caller, signal, types, *values: tell(self, caller, signal, "(iui)", *values[:3])
        if values[0] == STATE_CHANGED else tell(self, caller, signal, types, *values)),
    # "Connecting" is told once more when the channel is there.
    "signal-order": lambda: setattr(
        middleware.Television, "change_state",
        lambda self, caller, plugin, state, *error: [change_state(self, caller, plugin, each, *error) for each in
                                                     ([state, middleware.CONNECTING] if state == middleware.PRESENTING
                                                      else [state])]),
    # An unknown channel is taken for the current one.
    "unknown-channel": lambda: setattr(
        middleware.IBroadcastPlayer, "SetChannel",
        lambda self, caller, plugin, *_: (self.BindToCurrentChannel(caller, plugin) and 11, True)),
    # A text of a page ends the program.
    "crash": lambda: setattr(middleware.IDAEBrowserAPI, "HasCapability",
                             lambda self, caller, name: leave() if len(name) > 1000 else (False,)),
    # What pages read is no text for a script.
    "capabilities": lambda: middleware.IDAEBrowserAPI.CONSTANT.update(GetXmlCapabilities='<profilelist a="b"/>'),
}

for fault in sys.argv[1:]:
    FAULTS[fault]()
middleware.main()
