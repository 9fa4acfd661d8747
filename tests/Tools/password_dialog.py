"""The dialog in which the system asks for an administrator's password, answered by a test instead of a person."""

import subprocess
import threading

from gi.repository import Gio, GLib

import elevation_rig as rig

POLKIT = ("org.freedesktop.PolicyKit1", "/org/freedesktop/PolicyKit1/Authority", "org.freedesktop.PolicyKit1.Authority")
AGENT = "/org/quillmere/test/AuthenticationAgent"
INTERFACE = """
<node><interface name="org.freedesktop.PolicyKit1.AuthenticationAgent">
  <method name="BeginAuthentication">
    <arg type="s" direction="in"/><arg type="s" direction="in"/><arg type="s" direction="in"/>
    <arg type="a{ss}" direction="in"/><arg type="s" direction="in"/><arg type="a(sa{sv})" direction="in"/>
  </method>
  <method name="CancelAuthentication"><arg type="s" direction="in"/></method>
</interface></node>
"""


class PasswordDialog:
    """Answers for the programs that are started through it: "approve", "dismiss", "refuse", "vanish" or "wait"."""

    def __init__(self, answer):
        self.answer = answer
        self.asked = []
        self.open = threading.Event()
        self._context = GLib.MainContext.new()
        self._loop = GLib.MainLoop.new(self._context, False)
        self._thread = threading.Thread(target=self._serve)
        self._ready = threading.Event()
        self._thread.start()
        self._ready.wait()

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self._loop.quit()
        self._thread.join()

    def start(self, *command, user=rig.NOBODY, locale="C", standard_input="/dev/null", environment=None):
        """The program waits until the dialog is its own; it keeps its number when it begins."""
        waiting = 'read line; exec <"$0" "$@"'
        process = subprocess.Popen(["sh", "-c", waiting, standard_input, *command],
                                   stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True,
                                   cwd="/", env=environment, user=user, group=user, extra_groups=[])
        with open(f"/proc/{process.pid}/stat", encoding="ascii") as file:
            began = int(file.read().rpartition(")")[2].split()[19])
        subject = ("unix-process", {"pid": GLib.Variant("u", process.pid), "start-time": GLib.Variant("t", began),
                                    "uid": GLib.Variant("i", user)})
        self._call("RegisterAuthenticationAgent", GLib.Variant("((sa{sv})ss)", (subject, locale, AGENT)))
        process.stdin.write("go\n")
        process.stdin.flush()
        return process

    def run(self, *command, **options):
        process = self.start(*command, **options)
        output, error = process.communicate(timeout=60)
        return subprocess.CompletedProcess(command, process.returncode, output, error)

    def osascript(self, shell_text, **options):
        return self.run(f"{rig.HELPERS}/osascript", "-e", rig.script_of(shell_text), **options)

    def _serve(self):
        self._context.push_thread_default()
        address = Gio.dbus_address_get_for_bus_sync(Gio.BusType.SYSTEM)
        flags = (Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION)
        self._bus = Gio.DBusConnection.new_for_address_sync(address, flags)
        interface = Gio.DBusNodeInfo.new_for_xml(INTERFACE).interfaces[0]
        self._bus.register_object(AGENT, interface, self._take)
        self._ready.set()
        self._loop.run()
        if not self._bus.is_closed():
            self._bus.close_sync()
        self._context.pop_thread_default()

    def _call(self, method, arguments):
        name, path, interface = POLKIT
        self._bus.call_sync(name, path, interface, method, arguments, None, Gio.DBusCallFlags.NONE, -1)

    def _take(self, _bus, _sender, _path, _interface, method, arguments, invocation):
        if method == "CancelAuthentication":
            invocation.return_value(None)
            return
        action, message, _icon, _details, cookie, identities = arguments.unpack()
        self.asked.append((action, message))
        self.open.set()
        if self.answer == "approve":
            kind, details = identities[0]
            identity = (kind, {key: GLib.Variant("u", value) for key, value in details.items()})
            self._call("AuthenticationAgentResponse2", GLib.Variant("(us(sa{sv}))", (0, cookie, identity)))
        if self.answer == "dismiss":
            invocation.return_dbus_error("org.freedesktop.PolicyKit1.Error.Cancelled", "The dialog was dismissed")
        elif self.answer == "vanish":
            self._bus.close_sync()
            self._loop.quit()
        elif self.answer != "wait":
            invocation.return_value(None)
