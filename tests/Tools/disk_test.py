"""What the tests of erasing have in common: disks of every kind, and the commands as the program gives them."""

import os
import unittest

import disk_rig as rig

MEGABYTE = rig.MEGABYTE
# What is left to the kernel is written seconds later, to any volume that is mounted then.
COMPLETE = "lazy_itable_init=0,lazy_journal_init=0"
BEFORE = ("mkfs.ext4", "-q", "-F", "-L", "Before")


def environment_of(user):
    folder = "/run/user/nobody" if user else "/run/user/root"
    os.makedirs(folder, mode=0o700, exist_ok=True)
    return {"PATH": os.environ["PATH"], "XDG_RUNTIME_DIR": folder, "LC_ALL": "C.UTF-8"}


def diskutil(*words, user=0):
    return rig.run(f"{rig.HELPERS}/diskutil", *words, user=user, environment=environment_of(user))


def osascript(*words, user=0):
    command = " ".join("'" + word.replace("'", "'\"'\"'") + "'" for word in words)
    command = command.replace("\\", "\\\\").replace('"', '\\"')
    script = f'do shell script "{command}" with administrator privileges'
    return rig.run(f"{rig.HELPERS}/osascript", "-e", script, user=user, environment=environment_of(user))


def erase(name, form="JHFS+", label="CleanDisk", user=0):
    return osascript("/usr/sbin/diskutil", "eraseVolume", form, label, name, user=user)


def ordered(name, form, label):
    """By root, of the administrator program itself."""
    with open(f"/run/user/root/quillmere/disks/{name}", encoding="utf-8") as file:
        identity = file.read().split("\n")
    return rig.run(f"{rig.HELPERS}/quillmere-admin", "erase-volume", form, label, *identity)


def overwrite(name, user=0):
    return osascript("/usr/sbin/diskutil", "secureErase", "0", f"/dev/{name}", user=user)


def value_of(end, key):
    return next(line.split(":", 1)[1].strip() for line in end.stdout.splitlines() if line.strip().startswith(key + ":"))


class DiskTest(unittest.TestCase):
    def setUp(self):
        self.images = []

    def image(self, name, megabytes=16, pattern=False):
        image = rig.write_image(name, megabytes, pattern)
        self.images.append(image)
        # After all that the test does with the disk later, such as to hold it.
        self.addCleanup(self.drop, image)
        return image

    @staticmethod
    def drop(image):
        if os.path.exists(image):
            rig.detach(image)
            os.unlink(image)

    def disk(self, name="disk", megabytes=16, maker=BEFORE, options=()):
        device = rig.attach(self.image(name, megabytes), *options)
        rig.must(*maker, device)
        rig.wait_for(lambda: rig.knows(device))
        return device

    def divided(self, megabytes=48):
        """A disk of two volumes, each of the pattern."""
        image = self.image("divided", megabytes, pattern=True)
        half = megabytes // 2
        table = f"label: gpt\nstart=1MiB, size={half - 2}MiB\nstart={half}MiB, size={half - 2}MiB\n"
        with open("/run/table", "w", encoding="ascii") as file:
            file.write(table)
        rig.must("sh", "-c", f"sfdisk --quiet --wipe never {image} </run/table")
        device = rig.attach(image)
        for part, label in (("p1", "First"), ("p2", "Second")):
            rig.must("mkfs.ext4", "-q", "-F", "-E", "nodiscard," + COMPLETE, "-L", label, device + part)
            rig.wait_for(lambda node=device + part: rig.knows(node))
        return image, device

    @staticmethod
    def whole_name(device, user=0):
        """What the disk is called, whether it was listed or not."""
        diskutil("info", "disk2s1", user=user)
        begin = os.readlink(environment_of(user)["XDG_RUNTIME_DIR"] + "/quillmere/disks/numbers-begin")
        return f"disk{rig.sequence_of(device) + int(begin)}"

    def name_of(self, device, user=0):
        place = rig.mount(device)
        self.addCleanup(rig.run, "umount", place)
        end = diskutil("info", place, user=user)
        self.assertEqual(end.returncode, 0, end.stderr)
        return value_of(end, "Device Identifier"), place

    @staticmethod
    def forget(name):
        """As if it had never been shown."""
        if os.path.exists(f"/run/user/root/quillmere/disks/{name}"):
            os.unlink(f"/run/user/root/quillmere/disks/{name}")

    def listed(self, device):
        """The name of a volume that fills its disk and is not mounted."""
        name = self.whole_name(device) + "s0"
        self.assert_done(diskutil("info", name))
        return name

    def assert_done(self, end):
        self.assertEqual(end.returncode, 0, end.stdout + end.stderr)

    def assert_refused(self, end, reason):
        self.assertNotIn(end.returncode, (0, 126, 127))
        self.assertIn(reason, end.stderr)
