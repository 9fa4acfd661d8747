"""Disks are formatted and overwritten as the program does it: diskutil tells what they are, osascript asks for the
rights, quillmere-admin erases through the machine's own udisks2."""

import os
import unittest

import disk_rig as rig
from disk_rig import MEGABYTE
from disk_test import DiskTest, diskutil, environment_of, erase, ordered, overwrite, value_of


def setUpModule():
    rig.set_up()


class ListingTest(DiskTest):
    def test_names_are_such_that_a_volumes_disk_is_what_stands_before_the_last_s(self):
        _, device = self.divided()
        first, _ = self.name_of(device + "p1")
        second, _ = self.name_of(device + "p2")
        whole = value_of(diskutil("info", first), "Part of Whole")
        self.assertEqual((first, second), (whole + "s1", whole + "s2"))
        self.assertRegex(whole, "^disk[0-9]+$")

    def test_a_disk_without_partitions_is_a_volume_of_its_own(self):
        name, _ = self.name_of(self.disk())
        self.assertRegex(name, "^disk[0-9]+s0$")

    def test_tells_the_family_of_a_file_system_behind_the_name_and_of_others_nothing(self):
        for maker, family in ((("mkfs.ntfs", "-Q", "-F", "-q"), "NTFS"), (("mkfs.vfat",), "MS-DOS"),
                              (("mkfs.exfat",), "ExFAT"), (("mkfs.ext4", "-q", "-F"), None)):
            device = self.disk(f"family-{family}", maker=maker)
            name = self.whole_name(device) + "s0"
            end = diskutil("info", name)
            lines = end.stdout.splitlines()
            self.assertEqual(lines[0], f"   Device Identifier:        {name}", end.stderr)
            self.assertEqual(lines[1], f"   Device Node:              {device}")
            personality = [line for line in lines if "File System Personality:" in line]
            self.assertEqual(personality, [f"   File System Personality:  {family}"] if family else [])

    def test_a_label_that_looks_like_a_line_of_it_is_not_among_the_lines(self):
        name, place = self.name_of(self.disk(maker=("mkfs.ext4", "-q", "-F", "-L", "Type (Bundle):ntf")))
        end = diskutil("info", place)
        self.assertEqual(value_of(end, "Device Identifier"), name)
        self.assertNotIn("Bundle", end.stdout)

    def test_what_is_no_volume_of_a_disk_is_said_to_be_none(self):
        for place in ("/proc", "/run", "/nowhere", "", "disk1s1s1", "disk999999s1", "/dev/sda1", "CleanDisk", "-x"):
            self.assert_refused(diskutil("info", place), "diskutil: ")
        self.assertEqual(diskutil("info").returncode, 64)
        self.assertEqual(diskutil("eject", "disk2").returncode, 64)

    def test_mounts_and_unmounts_by_name_and_by_place(self):
        device = self.disk()
        name, place = self.name_of(device)
        self.assert_done(diskutil("mount", name))
        self.assert_done(diskutil("unmount", place))
        self.assertFalse(rig.is_mounted(place))
        self.assert_done(diskutil("mount", name))
        self.assertTrue(rig.is_mounted(place))
        self.assert_done(diskutil("unmount", name))
        self.assertFalse(rig.is_mounted(place))

    def test_a_volume_mounted_twice_is_unmounted_from_both(self):
        device = self.disk()
        name, place = self.name_of(device)
        other = rig.temporary_folder()
        rig.must("mount", device, other)
        self.addCleanup(rig.run, "umount", other)
        self.assert_done(diskutil("unmount", place))
        self.assertFalse(rig.is_mounted(place) or rig.is_mounted(other))
        self.assertEqual(rig.probed(device), ("ext4", "Before"))
        self.assertRegex(name, "s0$")

    def test_it_erases_nothing_itself_for_nobody(self):
        device = self.disk()
        name, _ = self.name_of(device)
        for words in (("eraseVolume", "JHFS+", "CleanDisk", name), ("secureErase", "0", "/dev/" + name[:-2])):
            self.assertEqual(diskutil(*words).returncode, 64)
        self.assertEqual(rig.probed(device), ("ext4", "Before"))

    def test_each_session_has_names_of_its_own(self):
        device = self.disk()
        name, _ = self.name_of(device, user=rig.NOBODY)
        self.assertEqual(rig.probed(device), ("ext4", "Before"))
        self.assert_refused(erase(name), "when it was listed")
        self.assertEqual(rig.probed(device), ("ext4", "Before"))


class FormattingTest(DiskTest):
    def test_makes_each_file_system_and_leaves_the_neighbour_alone(self):
        image, device = self.divided(96)
        for form, file_system, label in (("JHFS+", "ext4", "CleanDisk"), ("APFS", "ext4", "Second One"),
                                         ("MS-DOS", "vfat", "CLEANDISK"), ("FAT32", "vfat", "CLEANDISK"),
                                         ("ExFAT", "exfat", "CleanDisk"), ("NTFS", "ntfs", "Диск")):
            name = self.whole_name(device) + "s1"
            self.forget(name)
            self.assert_done(diskutil("info", name))
            neighbour = rig.contents(image)[48 * MEGABYTE:94 * MEGABYTE]
            end = ordered(name, form, label)
            self.assert_done(end)
            self.assertIn(f"Formatted {name} with {file_system}.", end.stdout)
            self.assertEqual(rig.probed(device + "p1"), (file_system, label))
            self.assertEqual(rig.contents(image)[48 * MEGABYTE:94 * MEGABYTE], neighbour)
            diskutil("unmount", name)

    def test_a_user_gets_the_new_volume_mounted_and_for_his_own(self):
        device = self.disk(megabytes=32)
        name, _ = self.name_of(device, user=rig.NOBODY)
        self.assert_done(erase(name, user=rig.NOBODY))
        self.assertEqual(rig.probed(device), ("ext4", "CleanDisk"))
        place = "/media/nobody/CleanDisk"
        self.addCleanup(rig.run, "umount", place)
        self.assertTrue(rig.is_mounted(place))
        self.assertEqual(os.stat(place).st_uid, rig.NOBODY)

    def test_the_same_row_can_be_formatted_again_once_it_was_listed_anew(self):
        device = self.disk()
        name, _ = self.name_of(device)
        self.assert_done(erase(name))
        place = "/media/root/CleanDisk"
        self.addCleanup(rig.run, "umount", place)
        self.assert_refused(erase(name), "no longer the disk that was chosen")
        end = diskutil("info", place)
        self.assert_done(end)
        later = value_of(end, "Device Identifier")
        self.assertEqual(later, name[:-1] + "256")
        self.assert_refused(erase(name), "no longer the disk that was chosen")
        self.assertTrue(rig.is_mounted(place))
        self.assert_done(erase(later))
        self.assertEqual(rig.probed(device), ("ext4", "CleanDisk"))

    def test_a_volume_mounted_twice_is_unmounted_and_formatted(self):
        device = self.disk()
        name, place = self.name_of(device)
        other = rig.temporary_folder()
        rig.must("mount", device, other)
        end = erase(name)
        self.assert_done(end)
        self.assertIn(f"Unmounted {place}.", end.stdout)
        self.assertIn(f"Unmounted {other}.", end.stdout)
        self.assertEqual(rig.probed(device), ("ext4", "CleanDisk"))

    def test_names_that_no_volume_can_have_change_nothing(self):
        device = self.disk()
        name, place = self.name_of(device)
        for form, label in (("JHFS+", "x" * 255), ("JHFS+", "ж" * 9), ("MS-DOS", "x" * 12), ("ExFAT", "x" * 12),
                            ("NTFS", "x" * 33), ("JHFS+", ""), ("JHFS+", "   "), ("MS-DOS", "a/b"), ("MS-DOS", "Диск"),
                            ("HFS", "CleanDisk"), ("", "CleanDisk"), ("ext4", "CleanDisk"), ("jhfs+", "CleanDisk")):
            self.assert_refused(ordered(name, form, label), "Nothing was erased.")
            self.assert_refused(erase(name, form, label), "nothing was done")
        self.assertEqual(rig.probed(device), ("ext4", "Before"))
        self.assertTrue(rig.is_mounted(place))


class OverwritingTest(DiskTest):
    def test_nothing_of_what_was_on_any_volume_of_the_disk_is_left(self):
        image, device = self.divided()
        name, place = self.name_of(device + "p1")
        _, other = self.name_of(device + "p2")
        self.assertIn(rig.PATTERN, rig.contents(image))
        end = overwrite(name.rsplit("s", 1)[0])
        self.assert_done(end)
        self.assertEqual(rig.contents(image).count(b"\0"), 48 * MEGABYTE)
        self.assertFalse(rig.is_mounted(place) or rig.is_mounted(other))
        self.assertEqual([line for line in end.stdout.splitlines() if "%" in line],
                         [f"{percent} % of {name[:-2]}" for percent in range(10, 101, 10)])
        self.assertIn(f"Overwrote all {48 * MEGABYTE} bytes of {name[:-2]} with zeros, once. Read back 256 places",
                      end.stdout)
        rig.settle()
        self.assertFalse(os.path.exists(f"/sys/class/block/{os.path.basename(device)}p1"))

    def test_a_user_does_it_too(self):
        device = self.disk(maker=("mkfs.vfat",))
        name = self.whole_name(device, rig.NOBODY)
        self.assert_done(diskutil("info", name + "s0", user=rig.NOBODY))
        self.assert_done(overwrite(name, user=rig.NOBODY))
        self.assertEqual(rig.contents(self.images[0]).count(b"\0"), 16 * MEGABYTE)

    def test_a_disk_whose_size_is_no_round_number_is_overwritten_to_its_end(self):
        image = self.image("odd", 5, pattern=True)
        os.truncate(image, 5 * MEGABYTE - 512)
        device = rig.attach(image)
        self.assert_done(overwrite(self.listed(device)[:-2]))
        self.assertEqual(rig.contents(image).count(b"\0"), 5 * MEGABYTE - 512)

    def test_a_volume_is_not_taken_for_a_whole_disk(self):
        _, device = self.divided()
        name, _ = self.name_of(device + "p1")
        self.assert_refused(overwrite(name), f"There is no disk with the name {name}")
        self.assertEqual(rig.probed(device + "p1"), ("ext4", "First"))

    def test_it_is_brought_to_its_end_when_nobody_reads_how_far_it_is(self):
        image, device = self.divided()
        name, _ = self.name_of(device + "p1")
        command = f"'/usr/sbin/diskutil' 'secureErase' '0' '/dev/{name[:-2]}'"
        script = f'do shell script "{command}" with administrator privileges'
        osascript_program = f"{rig.HELPERS}/osascript"
        end = rig.run("sh", "-c", f"{osascript_program} -e \"$1\" 3>&1 >&- | true; wait", "sh", script,
                      environment=environment_of(0))
        self.assertEqual(end.returncode, 0)
        rig.wait_for(lambda: rig.contents(image).count(b"\0") == 48 * MEGABYTE)


if __name__ == "__main__":
    rig.enter()
    unittest.main()
