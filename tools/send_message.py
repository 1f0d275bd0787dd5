#!/usr/bin/env python3
"""Stands in for a distributor of UnifiedPush and gives Lamina a message, for a try (docs/messages.md).

    tools/send_message.py '{"title": "Hello", "body": "from the server", "badge": 3}'

takes the name of a distributor on the session bus, waits until Lamina registers (start it now), gives it the message,
prints Lamina's answer and leaves. Needs python3-gi.
"""

import sys

try:
    from gi.repository import Gio, GLib
except ImportError:
    sys.exit("send_message.py: this Python has no module gi (python3-gi)")

NAME = "org.unifiedpush.Distributor.Try"
PATH = "/org/unifiedpush/Distributor"
INTERFACE = """<node><interface name="org.unifiedpush.Distributor2">
    <method name="Register"><arg type="a{sv}" direction="in"/><arg type="a{sv}" direction="out"/></method>
</interface></node>"""
ANSWER_MILLISECONDS = 10_000


def main(arguments):
    if len(arguments) != 1 or arguments[0] in ("-h", "--help"):
        print(__doc__)
        return 2
    loop = GLib.MainLoop()
    bus = Gio.bus_get_sync(Gio.BusType.SESSION)
    codes = []

    def leave(text, code):
        print(text)
        codes.append(code)
        loop.quit()

    def answered(_, result):
        try:
            leave(f"taken: {bus.call_finish(result).print_(False)}", 0)
        except GLib.Error as error:
            leave(f"refused: {error.message}", 1)

    def called(_bus, sender, _path, _interface, _method, parameters, invocation):
        registration = parameters.unpack()[0]
        print(f"registered: {registration['service']} ({sender})")
        invocation.return_value(GLib.Variant("(a{sv})", ({"success": GLib.Variant("s", "REGISTRATION_SUCCEEDED")},)))
        message = {"token": GLib.Variant("s", registration["token"]),
                   "message": GLib.Variant("ay", arguments[0].encode()),
                   "id": GLib.Variant("s", "try")}
        bus.call(registration["service"], "/org/unifiedpush/Connector", "org.unifiedpush.Connector2", "Message",
                 GLib.Variant("(a{sv})", (message,)), None, Gio.DBusCallFlags.NONE, ANSWER_MILLISECONDS, None, answered)

    interface = Gio.DBusNodeInfo.new_for_xml(INTERFACE).interfaces[0]
    bus.register_object(PATH, interface, called, None, None)
    Gio.bus_own_name_on_connection(bus, NAME, Gio.BusNameOwnerFlags.NONE,
                                   lambda *_: print("waiting for Lamina: start it now"),
                                   lambda *_: leave("another distributor has the name", 1))
    loop.run()
    return codes[0]


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
