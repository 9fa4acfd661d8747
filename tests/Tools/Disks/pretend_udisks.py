"""A udisks2 of drives that are not there, as a template of dbusmock."""

import dbus
from dbusmock import get_object

BUS_NAME = "org.freedesktop.UDisks2"
MAIN_OBJ = "/org/freedesktop/UDisks2"
MAIN_IFACE = "org.freedesktop.UDisks2.Mock"
SYSTEM_BUS = True
IS_OBJECT_MANAGER = True

BLOCK = "org.freedesktop.UDisks2.Block"
DRIVE = "org.freedesktop.UDisks2.Drive"
FILE_SYSTEM = "org.freedesktop.UDisks2.Filesystem"
ENCRYPTED = "org.freedesktop.UDisks2.Encrypted"

FORMAT = f"""
block = self.props["{BLOCK}"]
if block["IdLabel"] == "Worn":
    raise dbus.exceptions.DBusException("mkfs ended with 1.", name="org.freedesktop.UDisks2.Error.Failed")
if block["IdLabel"] != "Stubborn":
    block["IdType"] = args[0]
    block["IdLabel"] = args[1]["label"]
    block["IdUUID"] = "new"
self.log("FORMATTED " + self.path + " " + args[0] + " " + args[1]["label"])
"""
UNMOUNT = f"""
places = self.props["{FILE_SYSTEM}"]["MountPoints"]
if not places:
    raise dbus.exceptions.DBusException("Not mounted.", name="org.freedesktop.UDisks2.Error.NotMounted")
if bytes(places[0]).startswith(b"/busy"):
    raise dbus.exceptions.DBusException("target is busy", name="org.freedesktop.UDisks2.Error.DeviceBusy")
self.props["{FILE_SYSTEM}"]["MountPoints"] = dbus.Array(places[1:], signature="ay")
"""
MOUNT = f"""
if self.props["{FILE_SYSTEM}"]["MountPoints"]:
    raise dbus.exceptions.DBusException("Mounted.", name="org.freedesktop.UDisks2.Error.AlreadyMounted")
self.props["{FILE_SYSTEM}"]["MountPoints"] = dbus.Array([dbus.ByteArray(b"/media/new" + bytes(1))], signature="ay")
ret = "/media/new"
"""
LOCK = f"""
self.props["{ENCRYPTED}"]["CleartextDevice"] = dbus.ObjectPath("/")
"""


def path_of(name):
    return f"{MAIN_OBJ}/block_devices/{name.replace('-', '_2d')}"


def load(mock, _parameters):
    mock.AddObject(MAIN_OBJ + "/Manager", "org.freedesktop.UDisks2.Manager", {},
                   [("CanFormat", "s", "(bs)", 'ret = (args[0] != "ntfs", "" if args[0] != "ntfs" else "mkntfs")')])


@dbus.service.method(MAIN_IFACE, in_signature="sssb", out_signature="")
def AddDrive(self, name, bus, serial, removable):
    self.AddObject(f"{MAIN_OBJ}/drives/{name}", DRIVE,
                   {"ConnectionBus": bus, "Serial": serial, "WWN": "", "Removable": removable,
                    "Ejectable": dbus.Boolean(False)}, [])


@dbus.service.method(MAIN_IFACE, in_signature="sxsssas", out_signature="")
def AddVolume(self, name, number, drive, kind, label, places):
    path = path_of(name)
    self.AddObject(path, BLOCK,
                   {"DeviceNumber": dbus.UInt64(number), "HintSystem": dbus.Boolean(True),
                    "HintIgnore": dbus.Boolean(False), "IdType": kind, "IdLabel": label, "IdUUID": "1234-ABCD",
                    "Drive": dbus.ObjectPath(f"{MAIN_OBJ}/drives/{drive}" if drive else "/")},
                   [("Format", "sa{sv}", "", FORMAT)])
    block = get_object(path)
    if kind == "crypto_LUKS":
        block.AddProperties(ENCRYPTED, {"CleartextDevice": dbus.ObjectPath(path_of(label))})
        block.AddMethods(ENCRYPTED, [("Lock", "a{sv}", "", LOCK)])
        return
    mounted = dbus.Array([dbus.ByteArray(place.encode() + b"\0") for place in places], signature="ay")
    block.AddProperties(FILE_SYSTEM, {"MountPoints": mounted})
    block.AddMethods(FILE_SYSTEM, [("Unmount", "a{sv}", "", UNMOUNT), ("Mount", "a{sv}", "s", MOUNT)])


@dbus.service.method(MAIN_IFACE, in_signature="ss", out_signature="")
def Reformat(_self, name, uuid):
    """By somebody else, with a file system of the same kind and label."""
    get_object(path_of(name)).props[BLOCK]["IdUUID"] = uuid


@dbus.service.method(MAIN_IFACE, in_signature="s", out_signature="s")
def Describe(_self, name):
    block = get_object(path_of(name)).props
    places = block.get(FILE_SYSTEM, {}).get("MountPoints", [])
    words = [block[BLOCK]["IdType"], block[BLOCK]["IdLabel"]]
    return " ".join(words + [bytes(place).rstrip(b"\0").decode() for place in places])
