"""Volumes that are mounted, their names and kinds, and those that come: as the machine itself has them."""

import os
import queue
import signal
import subprocess
import threading
import unittest

import disk_rig as rig
from disk_test import DiskTest, diskutil, environment_of, erase

PROGRAM = os.environ["QUILLMERE_VOLUMES"]


def setUpModule():
    rig.set_up()


class Watcher:
    """The program that is told of volumes, until the test is over."""

    def __init__(self, test):
        self.process = subprocess.Popen([PROGRAM], env=environment_of(0), stdout=subprocess.PIPE, text=True)
        test.addCleanup(self.end)
        self.volumes = []
        self.lines = queue.SimpleQueue()
        self.reader = threading.Thread(target=self.read)
        self.reader.start()
        while (line := self.next()) != "ready":
            self.volumes.append(line)

    def read(self):
        for line in self.process.stdout:
            self.lines.put(line.rstrip("\n"))

    def next(self):
        return self.lines.get(timeout=rig.PATIENCE)

    def end(self):
        self.process.kill()
        self.process.wait()
        self.reader.join()
        self.process.stdout.close()


def described(place):
    return rig.run(PROGRAM, place, environment=environment_of(0)).stdout.rstrip("\n")


class VolumesTest(DiskTest):
    def test_volumes_are_listed_once_with_name_and_kind_in_the_order_of_mounting(self):
        first = rig.mount(self.disk("first", maker=("mkfs.ext4", "-q", "-F", "-L", "Stick One")))
        second = rig.mount(self.disk("second", maker=("mkfs.ntfs", "-Q", "-F", "-q")))
        self.addCleanup(rig.run, "umount", first)
        self.addCleanup(rig.run, "umount", second)
        again = rig.temporary_folder()
        rig.must("mount", "--bind", first, again)
        self.addCleanup(rig.run, "umount", again)
        volumes = Watcher(self).volumes
        ours = [line for line in volumes if line.startswith((first + " ", second + " ", again + " "))]
        self.assertEqual(ours, [f"{first} name=Stick One internal=no readonly=no",
                                f"{second} name=none internal=no readonly=no"])
        self.assertIn("internal=yes", next(line for line in volumes if line.startswith("/ ")))

    def test_what_carries_the_system_is_internal_however_it_is_plugged_in(self):
        device = self.disk()
        rig.must("mount", "-o", "ro", device, "/home")
        self.addCleanup(rig.run, "umount", "/home")
        self.assertEqual(described("/home"), "/home name=Before internal=yes readonly=yes")

    def test_a_place_where_no_volume_is_mounted_has_no_values(self):
        for place in ("/proc", "/run", "/usr/bin", "/nowhere"):
            self.assertEqual(described(place), f"{place} fails")

    def test_without_udisks_the_kernel_is_asked_whether_it_is_plugged_in(self):
        place = rig.mount(self.disk())
        self.addCleanup(rig.run, "umount", place)
        rig.stop_udisks()
        self.addCleanup(rig.start_udisks)
        self.assertEqual(described(place), f"{place} name=none internal=yes readonly=no")

    def test_one_that_does_not_answer_leaves_the_list_to_the_kernel(self):
        device = self.disk()
        place = rig.mount(device)
        self.addCleanup(rig.run, "umount", place)
        udisks = rig.services["udisks"]
        udisks.send_signal(signal.SIGSTOP)
        silence = "/run/user/root/quillmere/udisks2-silent"
        try:
            told = diskutil("info", place)
            self.assertTrue(os.path.exists(silence))
            os.unlink(silence)
            volumes = Watcher(self).volumes
            self.assertTrue(os.path.exists(silence))
        finally:
            udisks.send_signal(signal.SIGCONT)
        self.assertIn(f"{place} name=none internal=yes readonly=no", volumes)
        self.assert_refused(told, "udisks2 does not answer")
        # What it was asked for meanwhile is known to all for a while.
        rig.wait_for(lambda: diskutil("info", place).returncode == 0)
        self.assertEqual(described(place), f"{place} name=Before internal=no readonly=no")


class NoticeTest(DiskTest):
    def test_each_volume_is_told_of_once_when_its_disk_comes(self):
        device = self.disk("early")
        early = rig.mount(device)
        self.addCleanup(rig.run, "umount", early)
        watcher = Watcher(self)
        rig.must("umount", early)
        rig.mount(device)
        image = self.image("late")
        rig.must("mkfs.ext4", "-q", "-F", "-L", "Late One", image)
        late = rig.attach(image)
        rig.wait_for(lambda: rig.knows(late))
        place = rig.mount(late)
        self.assertEqual(watcher.next(), f"mounted {place}")
        rig.must("umount", place)
        rig.mount(late)
        rig.detach(image)
        late = rig.attach(image)
        rig.wait_for(lambda: rig.knows(late))
        place = rig.mount(late)
        self.assertEqual(watcher.next(), f"mounted {place}")
        other = rig.attach(self.image("other"))
        rig.must("mkfs.ext4", "-q", "-F", other)
        last = rig.temporary_folder()
        rig.must("mount", other, last)
        self.addCleanup(rig.run, "umount", last)
        # In between came no other: not for what was there before, and not for a second mount.
        self.assertEqual(watcher.next(), f"mounted {last}")

    def test_what_is_formatted_anew_is_news_and_what_is_only_mounted_again_is_none(self):
        device = self.disk()
        name, place = self.name_of(device)
        watcher = Watcher(self)
        rig.must("umount", place)
        rig.mount(device)
        self.assert_done(erase(name))
        self.addCleanup(rig.run, "umount", "/media/root/CleanDisk")
        self.assertFalse(rig.is_mounted(place))
        self.assertEqual(watcher.next(), "mounted /media/root/CleanDisk")
        rig.must("umount", "/media/root/CleanDisk")
        rig.must("mkfs.ntfs", "-Q", "-F", "-q", "-L", "Elsewhere", device)
        rig.wait_for(lambda: rig.knows_label(device, "Elsewhere"))
        self.addCleanup(rig.run, "umount", "/media/root/Elsewhere")
        rig.mount(device)
        self.assertEqual(watcher.next(), "mounted /media/root/Elsewhere")


class NtfsTest(DiskTest):
    place = "/media/nobody/Windows One"
    usual_place = "/media/root/Windows One"

    def setUp(self):
        super().setUp()
        os.makedirs("/media/nobody", mode=0o755, exist_ok=True)
        self.device = self.disk("ntfs", maker=("mkfs.ntfs", "-Q", "-F", "-q", "-L", "Windows One"))
        self.name = self.listed(self.device)
        self.addCleanup(rig.run, "rmdir", self.place)
        self.addCleanup(rig.run, "umount", self.place)

    def mount(self, place, name=None):
        script = (f'do shell script "mkdir -p \\"{place}\\" && /usr/local/bin/ntfs-3g /dev/{name or self.name} '
                  f'\\"{place}\\" -o local,allow_other" with administrator privileges')
        return rig.run(f"{rig.HELPERS}/osascript", "-e", script, environment=environment_of(0))

    def test_is_mounted_for_writing_at_its_old_place(self):
        self.assert_done(self.mount(self.place))
        self.assertTrue(rig.is_mounted(self.place))
        with open(f"{self.place}/written", "w", encoding="ascii") as file:
            file.write("here")
        self.assertEqual(os.statvfs(self.place).f_flag & (os.ST_NOSUID | os.ST_NODEV), os.ST_NOSUID | os.ST_NODEV)
        self.assert_refused(self.mount(self.place), "is mounted already")

    def test_one_on_which_windows_sleeps_is_explained_and_left_alone(self):
        rig.must("ntfs-3g", self.device, "/mnt")
        with open("/mnt/hiberfil.sys", "wb") as file:
            file.write(b"hibr" + bytes(4092))
        rig.must("umount", "/mnt")
        rig.must("sync")
        before = rig.contents(self.images[0])
        end = self.mount(self.place)
        self.assert_refused(end, "Windows is asleep on")
        self.assertIn(f"NTFS disk at {self.place} is mounted as it was: Windows is asleep on", end.stdout)
        self.assertTrue(rig.is_mounted(self.usual_place))
        rig.must("umount", self.usual_place)
        rig.must("sync")
        self.assertTrue(rig.contents(self.images[0]) == before)
        self.assertFalse(os.path.exists(self.place))

    def test_no_place_but_those_for_volumes_is_mounted_over(self):
        os.makedirs("/media/nobody/full/inner", exist_ok=True)
        os.symlink("/etc", "/media/nobody/link")
        os.makedirs("/media/theirs", exist_ok=True)
        os.chown("/media/theirs", rig.NOBODY, rig.NOBODY)
        for place in ("/etc", "/media", "/media/a/b/c", "/media/nobody/../../etc/x", "/media/nobody/link",
                      "/media/nobody/link/x", "/media/theirs/x", "/media/theirs", "/home/x", "/", "relative", "",
                      "/media/nobody/full", "/media/nobody"):
            self.assert_refused(self.mount(place), "")
            # As a desktop mounts it, and there alone.
            rig.must("umount", self.usual_place)
            self.assertNotIn(f"{self.device} ", rig.must("cat", "/proc/self/mounts"), place)
        self.assertTrue(os.path.isdir("/media/nobody/full/inner"))
        self.assertFalse(os.path.exists("/media/theirs/x") or os.path.exists("/etc/x"))

    def test_only_what_is_ntfs_is_mounted_with_it(self):
        other = self.listed(self.disk("other"))
        self.assert_refused(self.mount(self.place, other), "is no NTFS volume")
        self.assertFalse(rig.is_mounted(self.place))


if __name__ == "__main__":
    rig.enter()
    unittest.main()
