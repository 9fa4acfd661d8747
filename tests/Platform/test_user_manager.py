"""The user's units, switched by the real systemd, which runs here for one made-up user in namespaces of its own."""

import os
import pathlib
import subprocess
import sys
import tempfile
import time
import unittest

SKIPPED = 77
MANAGER = "/lib/systemd/systemd"
BUS = "/usr/lib/systemd/user/dbus.socket"
PROGRAM = os.environ["QUILLMERE_STARTUP_ENTRIES"]
ALL_USERS = pathlib.Path("/etc/systemd/user")

UNIT = """[Unit]
Description={name}
[Service]
ExecStart=/bin/touch {mark}
[Install]
WantedBy={target}
"""


class UserManagerTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.home = pathlib.Path(os.environ["HOME"])
        cls.own = cls.home / ".config/systemd/user"
        cls.own.mkdir(parents=True)
        cls.add(cls.own / "mine.service", "default.target")
        (ALL_USERS / "later.target").write_text("[Unit]\nDescription=Nobody reaches it\n")
        cls.add(ALL_USERS / "everyones.service", "later.target")
        (ALL_USERS / "later.target.wants").mkdir()
        (ALL_USERS / "later.target.wants/everyones.service").symlink_to(ALL_USERS / "everyones.service")
        cls.manager = subprocess.Popen([MANAGER, "--user"], stdin=subprocess.DEVNULL)
        cls.wait_until_it_answers()

    @classmethod
    def tearDownClass(cls):
        cls.manager.terminate()
        cls.manager.wait()

    @classmethod
    def add(cls, unit, target):
        unit.write_text(UNIT.format(name=unit.stem, mark=cls.home / f"{unit.stem}-was-started", target=target))

    @classmethod
    def wait_until_it_answers(cls):
        deadline = time.monotonic() + 60
        question = ["busctl", "--user", "--auto-start=no", "get-property", "org.freedesktop.systemd1",
                    "/org/freedesktop/systemd1", "org.freedesktop.systemd1.Manager", "UnitPath"]
        while subprocess.run(question, capture_output=True, check=False).returncode != 0:
            if time.monotonic() > deadline or cls.manager.poll() is not None:
                raise TimeoutError("the user's systemd does not come to the bus")
            time.sleep(0.1)

    def entries(self):
        lines = subprocess.run([PROGRAM], capture_output=True, text=True, check=True).stdout.splitlines()
        return {file: state for state, file in (line.split("\t") for line in lines)}

    def switch(self, state, unit):
        return subprocess.run([PROGRAM, state, str(unit)], capture_output=True, text=True, check=False)

    def test_switches_a_unit_of_the_users_own(self):
        unit = self.own / "mine.service"
        self.switch("off", unit)
        link = self.own / "default.target.wants/mine.service"
        self.assertEqual(self.entries()[str(unit)], "off")

        self.assertEqual(self.switch("on", unit).returncode, 0)
        self.assertEqual(self.entries()[str(unit)], "on")
        self.assertTrue(link.is_symlink())

        self.assertEqual(self.switch("off", unit).returncode, 0)
        self.assertEqual(self.entries()[str(unit)], "off")
        self.assertFalse(link.is_symlink())
        self.assertTrue(unit.is_file())

    def test_keeps_the_link_that_the_user_has_in_the_place_of_a_unit(self):
        dotfiles = self.home / "dotfiles"
        dotfiles.mkdir()
        for name, target in (("near.service", "../../../dotfiles/near.service"), ("far.service", dotfiles / "far.service")):
            self.add(dotfiles / name, "default.target")
            unit = self.own / name
            unit.symlink_to(target)
            self.assertEqual(self.entries()[str(unit)], "off")

            self.assertEqual(self.switch("on", unit).returncode, 0)
            self.assertEqual(self.entries()[str(unit)], "on")
            self.assertEqual(self.switch("off", unit).returncode, 0)
            self.assertEqual(self.entries()[str(unit)], "off")
            self.assertEqual(os.readlink(unit), str(target))
            self.assertFalse((self.own / "default.target.wants" / name).is_symlink())
            self.assertEqual(self.switch("on", unit).returncode, 0)
            self.assertEqual(self.entries()[str(unit)], "on")

    def test_can_undo_what_it_does_to_a_unit_that_links_alone_start(self):
        """Nothing in these units says by what they are started: the manager would never make their links again."""
        wants = self.own / "default.target.wants"
        wants.mkdir(exist_ok=True)
        mine, everyones = self.own / "plain.service", ALL_USERS / "simple.service"
        for unit in (mine, everyones):
            unit.write_text("[Service]\nExecStart=/bin/true\n")
            (wants / unit.name).symlink_to(unit)

        self.assertEqual(self.switch("off", mine).returncode, 1)
        self.assertEqual(self.entries()[str(mine)], "on")
        for state in ("off", "on"):
            self.assertEqual(self.switch(state, everyones).returncode, 0)
            self.assertEqual(self.entries()[str(everyones)], state)
        self.assertTrue((wants / everyones.name).is_symlink())

    def test_switches_off_for_one_user_what_is_enabled_for_all(self):
        unit = ALL_USERS / "everyones.service"
        mask = self.own / "everyones.service"
        self.switch("on", unit)
        self.assertEqual(self.entries()[str(unit)], "on")

        self.assertEqual(self.switch("off", unit).returncode, 0)
        self.assertEqual(self.entries()[str(unit)], "off")
        self.assertEqual(os.readlink(mask), "/dev/null")
        self.assertTrue((ALL_USERS / "later.target.wants/everyones.service").is_symlink())

        self.assertEqual(self.switch("on", unit).returncode, 0)
        self.assertEqual(self.entries()[str(unit)], "on")
        self.assertFalse(mask.is_symlink())

    def test_starts_nothing_that_it_switches(self):
        for unit in (self.own / "mine.service", ALL_USERS / "everyones.service"):
            for state in ("off", "on", "off", "on"):
                self.assertEqual(self.switch(state, unit).returncode, 0)
        self.assertEqual([each.name for each in self.home.iterdir() if each.name.endswith("-was-started")], [])

    def test_says_what_the_manager_says_of_a_unit_that_is_not_there(self):
        answer = self.switch("on", self.own / "missing.service")
        self.assertEqual(answer.returncode, 1)
        self.assertIn("missing.service", answer.stderr)

    def test_leaves_the_manager_of_another_home_alone(self):
        with tempfile.TemporaryDirectory() as elsewhere:
            other = {**os.environ, "HOME": elsewhere}
            answer = subprocess.run([PROGRAM, "on", str(self.own / "mine.service")], env=other, capture_output=True,
                                    text=True, check=False)
            self.assertEqual(answer.returncode, 1)
            self.assertEqual(os.listdir(elsewhere), [])


def control_groups():
    """Where the one tree of control groups is mounted; nothing on a machine without."""
    with open("/proc/self/mountinfo", encoding="utf-8") as table:
        found = [line.split()[4] for line in table if " - cgroup2 " in line]
    return pathlib.Path(found[0]) if found else None


def missing():
    if os.geteuid() != 0:
        return "Only root can run a systemd of its own for a user."
    if not os.path.exists(MANAGER):
        return "systemd is not installed."
    if not os.path.exists(BUS):
        return "dbus-user-session, which gives each user a bus, is not installed."
    if not control_groups() or not os.access(control_groups(), os.W_OK):
        return "This machine gives no control groups."
    own = ["--mount", "--pid", "--fork", "--mount-proc"]
    if subprocess.run(["unshare", *own, "true"], check=False).returncode != 0:
        return "This machine gives no namespaces."
    return ""


def run_inside():
    """Once more, as the only processes of a machine on which systemd has started, and in a control group of our own."""
    group = control_groups() / f"quillmere-test-{os.getpid()}"
    group.mkdir()
    script = (f"echo 0 >'{group}/cgroup.procs'; mount -t tmpfs none /run; mkdir -p /run/systemd/system /run/user/0; "
              "chmod 700 /run/user/0; mount -t tmpfs none /sys/fs/cgroup; mount -t cgroup2 none /sys/fs/cgroup; "
              "mount -t tmpfs none /etc/systemd/user; \"$@\"; exit $?")
    with tempfile.TemporaryDirectory() as home:
        environment = {"HOME": home, "PATH": os.environ["PATH"], "XDG_RUNTIME_DIR": "/run/user/0", "LC_ALL": "C.UTF-8",
                       "DBUS_SESSION_BUS_ADDRESS": "unix:path=/run/user/0/bus", "QUILLMERE_OWN_NAMESPACES": "1",
                       "QUILLMERE_STARTUP_ENTRIES": PROGRAM}
        try:
            return subprocess.run(["unshare", "--mount", "--propagation", "private", "--pid", "--fork", "--kill-child",
                                   "--mount-proc", "sh", "-ec", script, "sh", sys.executable, "-B", *sys.argv],
                                  env=environment, check=False).returncode
        finally:
            for folder in [*sorted(group.rglob("*/"), reverse=True), group]:
                wait_for_removal(folder)


def wait_for_removal(folder):
    deadline = time.monotonic() + 10
    while folder.exists():
        try:
            folder.rmdir()
        except OSError:
            if time.monotonic() > deadline:
                raise
            time.sleep(0.05)


def main():
    if "QUILLMERE_OWN_NAMESPACES" in os.environ:
        unittest.main("__main__")
    if reason := missing():
        print(reason)
        sys.exit(1 if "CI" in os.environ else SKIPPED)
    sys.exit(run_inside())


if __name__ == "__main__":
    main()
