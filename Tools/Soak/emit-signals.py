#!/usr/bin/python3
"""Has the simulated receiver emit signals, so many a second, by turns, over one connection, until it is ended.

    emit-signals.py RATE SIGNAL TUPLE [SIGNAL TUPLE]...

Once a second it prints how many it has asked for. A receiver that is away is no error: it may come back.
"""
import itertools
import sys
import time

from gi.repository import Gio, GLib

CONTROL = "org.vantrel.hbbtv.ReceiverControl"

rate = int(sys.argv[1])
arguments = [GLib.Variant("(sv)", (signal, GLib.Variant.parse(None, values)))
             for signal, values in zip(sys.argv[2::2], sys.argv[3::2])]
bus = Gio.bus_get_sync(Gio.BusType.SESSION)
due = count = printed = 0
last = time.monotonic()
for each in itertools.cycle(arguments):
    while due < 1:
        time.sleep(0.005)
        now = time.monotonic()
        # A program that was stopped for a while makes up for a second of it at most.
        due = min(due + (now - last) * rate, rate)
        last = now
        if now - printed >= 1:
            printed = now
            print(count, flush=True)
    # Nobody waits for the answer.
    bus.call(CONTROL, "/org/vantrel/hbbtv/control", CONTROL, "EmitSignal", each, None,
             Gio.DBusCallFlags.NO_AUTO_START, -1)
    due -= 1
    count += 1
