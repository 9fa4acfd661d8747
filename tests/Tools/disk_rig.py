"""A system bus, udev, polkit and udisks2 of a test's own, and disks that are images in files.

All of it runs as root in namespaces of its own, where nobody else sees the bus and the mounts, and ends with the test.
Loop devices are the whole machine's: each is found by its image, and is given back at the end. So is the word of each
udev to whoever listens, which is why two such tests wait for each other.
"""

import atexit
import fcntl
import os
import pwd
import shutil
import subprocess
import sys
import tempfile
import time

SKIPPED = 77
NOBODY = pwd.getpwnam("nobody").pw_uid
PATIENCE = 30
MEGABYTE = 1 << 20
HELPERS = "/usr/libexec/quillmere"
IMAGES = "/run/images"
PATTERN = b"What nobody is to read again. "

# The disks of the rig count as plugged in, as a stick does, and not as a part of the machine.
UDEV_RULES = 'SUBSYSTEM=="block", KERNEL=="loop*", ENV{UDISKS_SYSTEM}="0"\n'
POLKIT_RULES = """
polkit.addRule(function(action, subject) {
    return polkit.Result.YES;
});
"""
PROGRAMS = ("dbus-daemon", "udevadm", "losetup", "partx", "sfdisk", "blkid", "mkfs.ext4", "mkfs.vfat", "mkfs.exfat",
            "mkfs.ntfs", "ntfs-3g")
DAEMONS = ("/lib/systemd/systemd-udevd", "/usr/lib/polkit-1/polkitd", "/usr/libexec/udisks2/udisksd")

services = {}


def run(*command, user=0, environment=None, timeout=120):
    return subprocess.run(command, capture_output=True, text=True, timeout=timeout, check=False, cwd="/",
                          stdin=subprocess.DEVNULL, env=environment, user=user, group=user, extra_groups=[])


def must(*command):
    end = run(*command)
    if end.returncode != 0:
        raise RuntimeError(f"{command}: {end.stdout}{end.stderr}")
    return end.stdout.strip()


def wait_for(condition):
    deadline = time.monotonic() + PATIENCE
    while not condition():
        if time.monotonic() > deadline:
            raise TimeoutError
        time.sleep(0.02)


def overlay(folder):
    name = folder.strip("/").replace("/", "-")
    for part in ("upper", "work"):
        os.makedirs(f"/run/overlays/{name}/{part}")
    owner = os.stat(folder)
    shutil.copystat(folder, f"/run/overlays/{name}/upper")
    os.chown(f"/run/overlays/{name}/upper", owner.st_uid, owner.st_gid)
    must("mount", "-t", "overlay", "overlay", "-o",
         f"lowerdir={folder},upperdir=/run/overlays/{name}/upper,workdir=/run/overlays/{name}/work", folder)


def has_owner(name):
    answer = run("gdbus", "call", "--system", "--dest", "org.freedesktop.DBus", "--object-path", "/", "--method",
                 "org.freedesktop.DBus.NameHasOwner", name)
    return "true" in answer.stdout


def start(name, *command):
    services[name] = subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                                      stderr=subprocess.DEVNULL)


def stop(name):
    service = services.pop(name)
    service.kill()
    service.wait()


def start_udisks():
    start("udisks", DAEMONS[2], "--no-debug")
    wait_for(lambda: has_owner("org.freedesktop.UDisks2"))


def stop_udisks():
    stop("udisks")
    wait_for(lambda: not has_owner("org.freedesktop.UDisks2"))


def wait_for_turn():
    """The turn ends with this process, which keeps the descriptor."""
    fcntl.flock(os.open("/dev/loop-control", os.O_RDONLY), fcntl.LOCK_EX)


def set_up():
    wait_for_turn()
    for variable in ("DBUS_SYSTEM_BUS_ADDRESS", "PKEXEC_UID", "XDG_RUNTIME_DIR"):
        os.environ.pop(variable, None)
    # Of the links there, those of a udev that was ended stay, and lead to whatever has come to the device since.
    os.makedirs("/dev/disk", exist_ok=True)
    for folder in ("/run", "/dev/disk"):
        must("mount", "-t", "tmpfs", "-o", "mode=755", "tmpfs", folder)
    for folder in ("/usr/libexec", "/usr/share/polkit-1", "/etc/polkit-1", "/media", "/usr/share/dbus-1"):
        overlay(folder)
    # Nothing starts by itself here, so that a service which was ended stays away.
    os.unlink("/usr/share/dbus-1/system-services/org.freedesktop.UDisks2.service")
    os.makedirs(HELPERS)
    must("mount", "--bind", os.environ["QUILLMERE_HELPERS"], HELPERS)
    with open("/etc/polkit-1/rules.d/00-quillmere-test.rules", "w", encoding="utf-8") as rules:
        rules.write(POLKIT_RULES)
    must("chmod", "-R", "a+rX", "/etc/polkit-1/rules.d")
    for folder in ("/run/dbus", "/run/udev/rules.d", IMAGES):
        os.makedirs(folder)
    os.makedirs("/run/user/nobody", mode=0o700)
    os.chown("/run/user/nobody", NOBODY, NOBODY)
    with open("/run/udev/rules.d/90-quillmere-test.rules", "w", encoding="ascii") as rules:
        rules.write(UDEV_RULES)
    atexit.register(tear_down)
    start("bus", "dbus-daemon", "--system", "--nofork", "--nosyslog")
    wait_for(lambda: os.path.exists("/run/dbus/system_bus_socket"))
    start("udev", DAEMONS[0])
    wait_for(lambda: os.path.exists("/run/udev/control"))
    must("udevadm", "trigger", "--subsystem-match=block")
    must("udevadm", "settle", "--timeout=30")
    start("polkit", DAEMONS[1], "--no-debug")
    wait_for(lambda: has_owner("org.freedesktop.PolicyKit1"))
    start_udisks()


def tear_down():
    for image in os.listdir(IMAGES):
        detach(f"{IMAGES}/{image}")
    for name in list(services):
        stop(name)


def write_image(name, megabytes, pattern=False):
    image = f"{IMAGES}/{name}"
    with open(image, "wb") as file:
        file.truncate(megabytes * MEGABYTE)
        if pattern:
            file.write((PATTERN * (MEGABYTE // len(PATTERN) + 1))[:MEGABYTE] * megabytes)
    return image


def loops_of(image):
    # An image that was deleted is another file than a new one of its name.
    return [line.split(":")[0] for line in must("losetup", "-j", image).splitlines()]


def attach(image, *options):
    device = must("losetup", "--find", "--show", "--partscan", *options, image)
    wait_for(lambda: knows_image(device, image))
    if "PTTYPE" in run("blkid", "--probe", "--output", "export", device).stdout:
        wait_for(lambda: has_partitions(device))
    return device


def has_partitions(device):
    """A kernel need not know the usual tables of partitions, and then udev, which looks at each disk that was written
    to, makes it forget those that it was told of."""
    first = f"{device}p1"
    if not os.path.exists(first):
        run("partx", "--add", device)
    settle()
    time.sleep(0.1)
    return os.path.exists(first)


def detach(image):
    for device in loops_of(image):
        for place in [place for place, source in mounts() if source == device or source.startswith(f"{device}p")]:
            must("umount", place)
        run("partx", "--delete", device)
        must("losetup", "--detach", device)
        # It is free only once the last has closed it, and whoever is told of a change has a look.
        wait_for(lambda: device not in loops_of(image) and knows_image(device, ""))
    settle()


def settle():
    must("udevadm", "settle", "--timeout=30")


def udisks_object(device):
    return f"/org/freedesktop/UDisks2/block_devices/{os.path.basename(device)}"


def knows(device):
    """udisks2 has seen that there is a file system on it."""
    settle()
    answer = run("gdbus", "introspect", "--system", "--dest", "org.freedesktop.UDisks2", "--object-path",
                 udisks_object(device))
    return "org.freedesktop.UDisks2.Filesystem" in answer.stdout


def udisks_value(device, interface, name):
    """As gdbus writes it."""
    settle()
    return run("gdbus", "call", "--system", "--dest", "org.freedesktop.UDisks2", "--object-path",
               udisks_object(device), "--method", "org.freedesktop.DBus.Properties.Get",
               f"org.freedesktop.UDisks2.{interface}", name).stdout.strip()


def knows_image(device, image):
    """udisks2, where it runs, has seen what the disk is made of now; of nothing when the image is empty."""
    return "udisks" not in services or udisks_value(device, "Loop", "BackingFile") == f"(<b'{image}'>,)"


def knows_label(device, label):
    return udisks_value(device, "Block", "IdLabel") == f"(<'{label}'>,)"


def mount(device):
    """By udisks2, as a desktop does it; answers with the place."""
    answer = must("gdbus", "call", "--system", "--dest", "org.freedesktop.UDisks2", "--object-path",
                  udisks_object(device), "--method", "org.freedesktop.UDisks2.Filesystem.Mount", "{}")
    return answer.split("'")[1]


def mounts():
    """The place and the source of each."""
    with open("/proc/self/mountinfo", encoding="utf-8") as table:
        return [(line.split(" ")[4].replace("\\040", " "), line.split(" - ")[1].split(" ")[1]) for line in table]


def is_mounted(place):
    return any(mounted == place for mounted, _ in mounts())


def probed(device):
    """What is on it by its own word, and not by udev's: the type and the label."""
    values = [run("blkid", "--probe", "--output", "value", "--match-tag", tag, device).stdout.strip()
              for tag in ("TYPE", "LABEL")]
    return tuple(values)


def contents(image):
    with open(image, "rb") as file:
        return file.read()


def enter():
    """Starts the running test anew inside, and comes back there alone."""
    missing = [name for name in PROGRAMS if not shutil.which(name)]
    missing += [path for path in DAEMONS if not os.path.exists(path)]
    reason = "Only root can have disks of its own." if os.geteuid() != 0 else ""
    reason = reason or ("Missing: " + ", ".join(missing) if missing else "")
    own = ["--mount", "--propagation", "private", "--pid", "--fork", "--kill-child", "--mount-proc"]
    if not reason and "QUILLMERE_OWN_NAMESPACES" in os.environ:
        return
    if not reason and subprocess.run(["unshare", *own, "true"], check=False).returncode != 0:
        reason = "This machine gives no namespaces."
    if not reason and subprocess.run(["losetup", "--find"], capture_output=True, check=False).returncode != 0:
        reason = "This machine gives no loop devices."
    if reason:
        print(reason)
        sys.exit(1 if "CI" in os.environ else SKIPPED)
    os.environ["QUILLMERE_OWN_NAMESPACES"] = "1"
    # The first process of the namespace is a shell: pkexec serves nobody whose parent is process 1.
    os.execvp("unshare", ["unshare", *own, "sh", "-c", '"$@"; exit $?', "sh", sys.executable, "-B", *sys.argv])


def sequence_of(device):
    """The number that the kernel gives to each disk once."""
    with open(f"/sys/class/block/{os.path.basename(device)}/diskseq", encoding="ascii") as file:
        return int(file.read())


def temporary_folder():
    return tempfile.mkdtemp(dir="/run")
