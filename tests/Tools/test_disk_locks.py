"""What is never erased: the disk of the running system, one that is in use, and any other than the one that was shown.
"""

import os
import random
import shutil
import signal
import subprocess
import sys
import unittest

import disk_rig as rig
from disk_test import DiskTest, diskutil, environment_of, erase, osascript, overwrite, value_of

ADMINISTRATOR = f"{rig.HELPERS}/quillmere-admin"
SWAPS = 100


def setUpModule():
    rig.set_up()


class LockTest(DiskTest):
    def assert_untouched(self, name, image, reason):
        """By neither way, and not a byte of it."""
        rig.must("sync")
        before = rig.contents(image)
        self.assert_refused(erase(name), reason)
        self.assert_refused(overwrite(name.rsplit("s", 1)[0]), reason)
        self.assertTrue(rig.contents(image) == before)


class SystemDiskTest(LockTest):
    reason = "lies on a disk that the running system needs"

    def mounted_at(self, device, place, *options):
        os.makedirs(place, exist_ok=True)
        rig.must("mount", *options, device, place)
        self.addCleanup(rig.run, "umount", place)

    def test_a_disk_that_carries_a_folder_of_the_system(self):
        device = self.disk()
        name = self.listed(device)
        for place in ("/boot", "/home", "/usr/local", "/var/log"):
            self.mounted_at(device, place, "-o", "ro")
            self.assert_untouched(name, self.images[0], self.reason)
            self.assertTrue(rig.is_mounted(place))
            rig.must("umount", place)

    def mounted_at_the_first_touch(self, device, place):
        script = os.path.join(os.path.dirname(os.path.abspath(__file__)), "pretend_automount.py")
        automounter = subprocess.Popen([sys.executable, "-B", script, place, device], stdout=subprocess.PIPE, text=True)
        self.addCleanup(rig.run, "umount", place)
        self.addCleanup(automounter.stdout.close)
        self.addCleanup(automounter.wait)
        self.addCleanup(automounter.kill)
        if automounter.stdout.readline() != "ready\n":
            self.assertNotIn("CI", os.environ)
            self.skipTest("This kernel mounts nothing at the first touch.")
        self.addCleanup(rig.run, "umount", device)

    def test_a_folder_of_the_boot_loader_that_is_idle_keeps_its_own_disk_alone(self):
        carrier, stick = self.disk("carrier"), self.disk("stick")
        name = self.listed(carrier)
        stick_name, stick_place = self.name_of(stick)
        self.mounted_at_the_first_touch(carrier, "/boot")

        self.assertIn("internal=no", rig.run(os.environ["QUILLMERE_VOLUMES"], stick_place).stdout)
        rig.must("umount", carrier)
        self.assert_untouched(name, self.images[0], self.reason)
        rig.must("umount", carrier)
        self.assert_done(erase(stick_name))

    def test_a_disk_that_carries_the_home_of_whoever_asks_wherever_that_is(self):
        device = self.disk()
        self.mounted_at(device, "/run/homes", "-o", "ro")
        with open("/etc/passwd", encoding="utf-8") as file:
            accounts = [line for line in file if not line.startswith("root:")]
        with open("/run/passwd", "w", encoding="utf-8") as file:
            file.writelines(["root:x:0:0:root:/run/homes/root:/bin/sh\n", *accounts])
        name = value_of(diskutil("info", "/run/homes"), "Device Identifier")
        rig.must("mount", "--bind", "/run/passwd", "/etc/passwd")
        self.addCleanup(rig.run, "umount", "/etc/passwd")
        self.assert_untouched(name, self.images[0], self.reason)
        self.assertTrue(rig.is_mounted("/run/homes"))

    def test_a_disk_of_which_only_another_volume_carries_the_system(self):
        image, device = self.divided()
        name, place = self.name_of(device + "p1")
        self.mounted_at(device + "p2", "/home", "-o", "ro")
        self.assert_untouched(name, image, self.reason)
        self.assertTrue(rig.is_mounted(place))

    def test_a_disk_that_holds_the_image_of_one_that_carries_the_system(self):
        outer = self.disk("outer", megabytes=16)
        self.mounted_at(outer, "/run/outer")
        inner_image = "/run/outer/inner"
        with open(inner_image, "wb") as file:
            file.truncate(4 * rig.MEGABYTE)
        inner = rig.attach(inner_image)
        self.addCleanup(rig.detach, inner_image)
        rig.must("mkfs.ext4", "-q", "-F", inner)
        self.mounted_at(inner, "/home", "-o", "ro")
        rig.must("sync")
        self.assert_untouched(self.listed(outer), self.images[0], self.reason)

    def test_the_disk_that_the_running_program_lies_on(self):
        device = self.disk("program", megabytes=2 * os.path.getsize(ADMINISTRATOR) // rig.MEGABYTE + 16)
        name = self.listed(device)
        self.mounted_at(device, "/run/program")
        shutil.copy(ADMINISTRATOR, "/run/program")
        rig.must("sync")
        identity = self.words_of(name)
        end = rig.run("/run/program/quillmere-admin", "erase-volume", "JHFS+", "CleanDisk", *identity)
        self.assert_refused(end, self.reason)
        self.assertTrue(os.path.exists("/run/program/quillmere-admin"))

    def test_a_system_of_which_it_cannot_be_told_where_it_lives_keeps_every_disk(self):
        name = self.listed(self.disk())
        rig.must("mount", "-t", "overlay", "overlay", "-o", "lowerdir=/run/overlays:/run/images", "/home")
        self.addCleanup(rig.run, "umount", "/home")
        # These folders are in memory; a file system of an unknown kind is not known to be.
        before = rig.contents(self.images[0])
        rig.must("mount", "-t", "cgroup2", "cgroup2", "/opt")
        self.addCleanup(rig.run, "umount", "/opt")
        self.assert_refused(erase(name), "It cannot be told which disks the running system needs (/opt)")
        self.assertTrue(rig.contents(self.images[0]) == before)
        rig.must("umount", "/opt")
        self.assert_done(erase(name))

    def test_the_name_that_stands_for_the_system_disk(self):
        for name in ("disk1s1s1", "disk1s1", "disk1"):
            self.assert_refused(erase(name), f"{name} is the disk that the running system needs")
            self.assert_refused(overwrite(name), f"{name} is the disk that the running system needs")

    @staticmethod
    def words_of(name):
        with open(f"/run/user/root/quillmere/disks/{name}", encoding="utf-8") as file:
            return file.read().split("\n")


class UseTest(LockTest):
    def test_a_volume_with_an_open_file_stays_mounted(self):
        device = self.disk()
        name, place = self.name_of(device)
        with open(f"{place}/open", "w", encoding="ascii") as file:
            file.write("still needed")
            file.flush()
            os.sync()
            self.assert_untouched(name, self.images[0], "is in use")
            self.assertTrue(rig.is_mounted(place))
        self.assert_done(erase(name))

    def test_what_was_unmounted_for_nothing_is_mounted_again(self):
        _, device = self.divided()
        name, first = self.name_of(device + "p1")
        _, second = self.name_of(device + "p2")
        with open(f"{first}/open", "w", encoding="ascii"):
            # Of the two the second is unmounted first.
            end = overwrite(name.rsplit("s", 1)[0])
        self.assert_refused(end, "is in use")
        self.assertEqual(end.stdout, f"Unmounted {second}.\nMounted {second} again.\n")
        self.assertTrue(rig.is_mounted(first) and rig.is_mounted(second))
        self.assertEqual(rig.probed(device + "p2"), ("ext4", "Second"))

    def test_a_volume_that_is_mounted_where_nobody_else_sees_it(self):
        device = self.disk()
        name = self.listed(device)
        place = rig.temporary_folder()
        hidden = subprocess.Popen(["unshare", "--mount", "--propagation", "private", "sh", "-c",
                                   f"mount -o ro {device} {place} && echo ready && exec sleep 1000"],
                                  stdout=subprocess.PIPE, text=True)
        self.addCleanup(hidden.wait)
        self.addCleanup(hidden.kill)
        self.assertEqual(hidden.stdout.readline(), "ready\n")
        self.assert_untouched(name, self.images[0], "is in use")
        hidden.stdout.close()

    def test_a_device_that_another_program_has_claimed(self):
        device = self.disk()
        name = self.listed(device)
        claim = os.open(device, os.O_RDONLY | os.O_EXCL)
        self.addCleanup(os.close, claim)
        self.assert_untouched(name, self.images[0], "is in use")

    def test_a_disk_that_is_protected_against_writing(self):
        image = self.image("protected")
        rig.must("mkfs.ext4", "-q", "-F", image)
        name = self.listed(rig.attach(image, "--read-only"))
        self.assert_untouched(name, image, "is protected against writing")


class ExchangeTest(LockTest):
    def test_a_disk_that_is_exchanged_between_the_confirmation_and_the_write(self):
        refusals = 0
        other = self.image("other", 4, pattern=True)
        for _ in range(SWAPS):
            shown = self.image(f"shown-{refusals}", 4, pattern=True)
            first = rig.attach(shown)
            name = self.listed(first)
            rig.detach(shown)
            second = rig.attach(other)
            self.assertEqual(first, second)
            way = erase if refusals % 2 else overwrite
            end = way(name if refusals % 2 else name[:-2])
            self.assert_refused(end, "no longer the disk that was chosen")
            for image in (shown, other):
                self.assertEqual(rig.contents(image)[:len(rig.PATTERN)], rig.PATTERN)
                self.assertEqual(rig.contents(image).count(b"\0"), 0)
            rig.detach(other)
            refusals += 1
        self.assertEqual(refusals, SWAPS)

    def test_the_same_disk_pulled_out_and_put_back_is_another(self):
        image = self.image("stick")
        rig.must("mkfs.ext4", "-q", "-F", "-L", "Before", image)
        name = self.listed(rig.attach(image))
        rig.detach(image)
        self.assert_untouched(name, image, "no longer the disk that was chosen")
        rig.attach(image)
        self.assert_untouched(name, image, "no longer the disk that was chosen")
        self.assert_refused(diskutil("info", name), "There is no disk")

    def test_a_volume_of_other_contents_is_another(self):
        device = self.disk()
        name = self.listed(device)
        rig.must("mkfs.ext4", "-q", "-F", "-L", "Newer", device)
        rig.wait_for(lambda: rig.knows_label(device, "Newer"))
        self.assert_refused(erase(name), "no longer the disk that was chosen")
        self.assertEqual(rig.probed(device), ("ext4", "Newer"))

    def test_a_partition_of_other_borders_is_another(self):
        _, device = self.divided()
        name, place = self.name_of(device + "p1")
        rig.must("umount", place)
        # Whoever looks at what has changed holds the partition open for a moment.
        rig.wait_for(lambda: rig.run("partx", "--delete", "--nr", "1", device).returncode == 0)
        with open("/run/table", "w", encoding="ascii") as file:
            file.write("label: gpt\nstart=1MiB, size=10MiB\nstart=24MiB, size=22MiB\n")
        rig.must("sh", "-c", f"sfdisk --quiet --no-reread --force --wipe never {device} </run/table")
        # udev looks at what was written before the partition comes back: its look makes the kernel forget partitions.
        rig.settle()
        rig.must("partx", "--add", "--nr", "1", device)
        rig.settle()
        self.assert_refused(erase(name), "no longer the disk that was chosen")
        self.assertEqual(rig.probed(device + "p1"), ("ext4", "First"))

    def test_a_disk_whose_name_somebody_has_written_on_a_stick(self):
        name = self.listed(self.disk("meant"))
        image = self.images[0]
        for label in (name, name[:-2]):
            stick = self.disk("stick", maker=("mkfs.ext4", "-q", "-F", "-L", label))
            place = rig.mount(stick)
            self.assertEqual(os.path.basename(place), label)
            before = rig.contents(image)
            refusals = (overwrite(name[:-2]), erase(name)) if label == name else (overwrite(label),)
            for refusal in refusals:
                self.assert_refused(refusal, "has the name of the disk")
            self.assertTrue(rig.contents(image) == before)
            rig.must("umount", place)
            self.drop(self.images.pop())
        self.assert_done(erase(name))

    def test_a_disk_that_was_never_listed(self):
        device = self.disk()
        name = self.whole_name(device) + "s0"
        self.assert_untouched(name, self.images[0], "It is not known what")


class ServiceTest(LockTest):
    def test_without_udisks_nothing_is_known_and_nothing_is_done(self):
        device = self.disk()
        name, place = self.name_of(device)
        rig.stop_udisks()
        self.addCleanup(rig.start_udisks)
        self.assert_untouched(name, self.images[0], "udisks2 does not answer")
        self.assert_refused(diskutil("info", place), "udisks2 does not answer")
        self.assert_refused(diskutil("unmount", place), "udisks2 does not answer")
        self.assertTrue(rig.is_mounted(place))

    def test_without_a_system_bus_too(self):
        name = self.listed(self.disk())
        nowhere = {**environment_of(0), "DBUS_SYSTEM_BUS_ADDRESS": "unix:path=/run/no-bus"}
        end = rig.run(f"{rig.HELPERS}/diskutil", "info", name, environment=nowhere)
        self.assert_refused(end, "There is no system bus")

    def test_one_that_does_not_answer_is_given_up(self):
        device = self.disk()
        name = self.listed(device)
        udisks = rig.services["udisks"]
        udisks.send_signal(signal.SIGSTOP)
        try:
            self.assert_refused(erase(name), "udisks2 does not answer")
        finally:
            udisks.send_signal(signal.SIGCONT)
        self.assertEqual(rig.probed(device), ("ext4", "Before"))
        self.assert_done(erase(name))

    def test_one_that_ends_in_the_middle_is_told_of(self):
        device = self.disk()
        name = self.listed(device)
        folder = rig.temporary_folder()
        with open(f"{folder}/mkfs.ext4", "w", encoding="ascii") as program:
            program.write(f"#!/bin/sh\ntouch {folder}/begun\nexec sleep 1000\n")
        os.chmod(f"{folder}/mkfs.ext4", 0o755)
        rig.stop_udisks()
        path = os.environ["PATH"]
        os.environ["PATH"] = f"{folder}:{path}"
        rig.start_udisks()
        os.environ["PATH"] = path
        words = f"'/usr/sbin/diskutil' 'eraseVolume' 'JHFS+' 'CleanDisk' '{name}'"
        script = f'do shell script "{words}" with administrator privileges'
        erasing = subprocess.Popen([f"{rig.HELPERS}/osascript", "-e", script], env=environment_of(0), text=True,
                                   stdout=subprocess.PIPE, stderr=subprocess.PIPE)
        rig.wait_for(lambda: os.path.exists(f"{folder}/begun"))
        rig.stop_udisks()
        _, errors = erasing.communicate(timeout=60)
        rig.start_udisks()
        self.assertEqual(erasing.returncode, 1)
        self.assertIn(f"{name} could not be formatted: ", errors)
        self.assertIn("What was on it may be lost.", errors)


class CallerTest(LockTest):
    """Whoever comes through the password dialog may say anything."""

    def test_made_up_orders_erase_nothing(self):
        device = self.disk(megabytes=4)
        name = self.listed(device)
        with open(f"/run/user/root/quillmere/disks/{name}", encoding="utf-8") as file:
            words = file.read().split("\n")
        before = rig.contents(self.images[0])
        chance = random.Random(20261121)
        wrong = ["", "0", "-1", "8:0", "254:0", "vda", "../vda", "/dev/vda", "loop-control", "null", "disk1s1",
                 "disk1", "9" * 400, "\n", "%1", "$(id)", "ä" * 300, "disk2s1 ", "4194304 ", "0x10"]
        for verb, lead in (("erase-volume", ["JHFS+", "CleanDisk"]), ("secure-erase", []), ("mount-ntfs", ["/media/x"])):
            for _ in range(40):
                order = list(words)
                order[chance.randrange(len(order))] = chance.choice(wrong + ["wrong"])
                if order == words or chance.random() < 0.2:
                    order.pop()
                end = rig.run(ADMINISTRATOR, verb, *lead, *order)
                self.assertIn(end.returncode, (1, 64), f"{verb} {order}: {end.stdout}{end.stderr}")
        self.assertTrue(rig.contents(self.images[0]) == before)

    def test_what_is_no_disk_is_not_even_opened(self):
        name = self.listed(self.disk(megabytes=4))
        with open(f"/run/user/root/quillmere/disks/{name}", encoding="utf-8") as file:
            words = file.read().split("\n")
        os.symlink("/dev/" + words[1], "/dev/quillmere-test-link")
        self.addCleanup(os.unlink, "/dev/quillmere-test-link")
        for node in ("quillmere-test-link", "null", "tty", "loop-control", "watchdog"):
            self.assert_refused(rig.run(ADMINISTRATOR, "erase-volume", "JHFS+", "CleanDisk", words[0], node, *words[2:]),
                                "no longer the disk that was chosen")
        self.assertEqual(rig.probed("/dev/" + words[1]), ("ext4", "Before"))

    def test_what_another_user_wrote_down_is_not_believed(self):
        name = self.listed(self.disk(megabytes=4))
        file = f"/run/user/root/quillmere/disks/{name}"
        os.chmod(os.path.dirname(file), 0o777)
        self.assert_refused(erase(name), "Others than the user may write there.")
        os.chmod(os.path.dirname(file), 0o700)
        with open(file, "a", encoding="ascii") as listed:
            listed.write("\nmore")
        self.assert_refused(erase(name), "What is written there is no disk.")

    def test_an_ordinary_user_gets_nothing_from_the_administrator_program_itself(self):
        for verb in ("erase-volume", "secure-erase", "mount-ntfs"):
            self.assertEqual(rig.run(ADMINISTRATOR, verb, user=rig.NOBODY).returncode, 77)

    def test_other_words_of_the_command_are_none_of_its(self):
        name = self.listed(self.disk(megabytes=4))
        for words in (("/usr/sbin/diskutil", "eraseDisk", "JHFS+", "CleanDisk", name),
                      ("/usr/sbin/diskutil", "secureErase", "1", "/dev/" + name[:-2]),
                      ("/usr/sbin/diskutil", "secureErase", "0", name[:-2]),
                      ("diskutil", "eraseVolume", "JHFS+", "CleanDisk", name),
                      ("/usr/sbin/diskutil", "eraseVolume", "JHFS+", "CleanDisk", name, name)):
            self.assert_refused(osascript(*words), "nothing was done")
        self.assertEqual(rig.probed(f"/dev/{self.node_of(name)}"), ("ext4", "Before"))

    @staticmethod
    def node_of(name):
        with open(f"/run/user/root/quillmere/disks/{name}", encoding="utf-8") as file:
            return file.read().split("\n")[1]


if __name__ == "__main__":
    rig.enter()
    unittest.main()
