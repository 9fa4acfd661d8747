"""The programs as a user runs them: osascript, the machine's own pkexec and polkitd, quillmere-admin, its holder.

Runs as root in namespaces of its own, with a system bus, a polkitd and a mocked logind that nobody else sees. All of
them end with it.
"""

import os
import unittest

import elevation_rig as rig
from elevation_rig import ADMINISTRATOR, NOBODY, ask_bus, osascript, run

LISTED = "('sleep:handle-lid-switch', 'Quillmere', 'Keep Awake Mode', 'block')"

# The one action is allowed, the other refused: what holds for one verb does not for another.
RULES = """
polkit.addRule(function(action, subject) {
    if (action.id == "com.veltrane.quillmere.keep-awake")
        return polkit.Result.YES;
    if (action.id == "com.veltrane.quillmere.purge")
        return polkit.Result.NO;
});
"""


def inhibitors():
    answer = ask_bus("--dest", "org.freedesktop.login1", "--object-path", "/org/freedesktop/login1", "--method",
                     "org.freedesktop.login1.Manager.ListInhibitors")
    return answer.stdout.replace(", uint32 1000, 123456)", ")").replace(", uint32 1000, uint32 123456)", ")")


def setUpModule():
    rig.set_up(RULES)
    rig.start("/usr/bin/python3", "-m", "dbusmock", "--system", "--template", "logind")
    rig.wait_for(lambda: rig.has_owner("org.freedesktop.login1"))


def tearDownModule():
    rig.tear_down()


def holder():
    with open("/run/quillmere/keepawake.pid", encoding="ascii") as file:
        return int(file.read())


class ElevationTest(unittest.TestCase):
    def tearDown(self):
        run(ADMINISTRATOR, "keep-awake", "off", user=0)

    def assert_ends(self, end, status):
        self.assertEqual(end.returncode, status, end.stdout + end.stderr)

    def assert_on(self, user, environment=None):
        self.assert_ends(osascript("pmset -a disablesleep 1", user=user, environment=environment), 0)
        self.assertIn(LISTED, inhibitors())
        self.assertEqual(inhibitors().count("Quillmere"), 1)

    def assert_off(self, user):
        self.assert_ends(osascript("pmset -a disablesleep 0", user=user), 0)
        self.assertNotIn("Quillmere", inhibitors())

    def test_an_ordinary_user_switches_the_machine_awake_and_back(self):
        self.assert_on(NOBODY)
        self.assertEqual(os.stat(f"/proc/{holder()}").st_uid, 0)
        self.assert_off(NOBODY)

    def test_a_shell_that_the_system_does_not_know_is_no_hindrance(self):
        self.assert_on(NOBODY, environment={**os.environ, "SHELL": "/opt/nowhere/shell"})

    def test_root_is_asked_for_nothing(self):
        self.assert_on(0)
        self.assert_off(0)

    def test_a_second_time_keeps_the_one_holder(self):
        self.assert_on(NOBODY)
        before = holder()
        self.assert_on(NOBODY)
        self.assertEqual(holder(), before)

    def test_pmset_switches_the_same_for_root_and_nothing_for_others(self):
        pmset = "/usr/libexec/quillmere/pmset"
        self.assert_ends(run(pmset, "-a", "disablesleep", "1"), 77)
        self.assertNotIn("Quillmere", inhibitors())
        self.assert_ends(run(pmset, "-a", "disablesleep", "1", user=0), 0)
        self.assertIn(LISTED, inhibitors())
        self.assert_off(NOBODY)

    def test_what_is_allowed_for_one_verb_is_refused_for_another(self):
        end = osascript("'/usr/sbin/purge'")
        self.assert_ends(end, 1)
        self.assertIn("execution error: ", end.stderr)
        self.assertIn("Not authorized", end.stderr)

    def test_a_verb_without_an_action_needs_a_password_too(self):
        end = run("/usr/bin/pkexec", "--disable-internal-agent", ADMINISTRATOR, "everything")
        self.assert_ends(end, 127)
        self.assertIn("No authentication agent found", end.stderr)

    def test_the_administrator_program_alone_raises_nobody(self):
        for words in (["keep-awake", "on"], ["purge"], []):
            self.assert_ends(run(ADMINISTRATOR, *words), 77)
        self.assertNotIn("Quillmere", inhibitors())

    def test_other_arguments_of_an_allowed_verb_are_refused(self):
        for words in (["keep-awake"], ["keep-awake", "on", "on"], ["keep-awake", "/run"]):
            self.assert_ends(run("/usr/bin/pkexec", "--disable-internal-agent", ADMINISTRATOR, *words), 64)
        self.assertNotIn("Quillmere", inhibitors())

    def test_the_holder_knows_nothing_of_its_callers_environment(self):
        self.assert_on(0, environment={**os.environ, "LD_BIND_NOW": "1", "QT_PLUGIN_PATH": "/tmp", "SECRET": "1"})
        with open(f"/proc/{holder()}/environ", "rb") as file:
            names = {entry.split(b"=")[0] for entry in file.read().split(b"\0") if entry}
        self.assertEqual(names, {b"PATH", b"LC_ALL"})

    def test_the_holder_leads_a_life_of_its_own(self):
        self.assert_on(NOBODY)
        process = f"/proc/{holder()}"
        with open(f"{process}/stat", encoding="ascii") as file:
            parent, _, session, terminal = file.read().rpartition(")")[2].split()[1:5]
        self.assertEqual((parent, terminal), ("1", "0"))
        self.assertNotEqual(session, str(os.getsid(0)))
        for number in (0, 1, 2):
            self.assertEqual(os.readlink(f"{process}/fd/{number}"), "/dev/null")

    def test_polkit_knows_each_action(self):
        end = run("pkaction", "--verbose", "--action-id", "com.veltrane.quillmere.keep-awake")
        self.assert_ends(end, 0)
        self.assertEqual(end.stdout.count("auth_admin\n"), 3)
        self.assertIn(f"org.freedesktop.policykit.exec.path -> {ADMINISTRATOR}", end.stdout)
        self.assertIn("org.freedesktop.policykit.exec.argv1 -> keep-awake", end.stdout)

    def test_an_ordinary_user_cannot_purge(self):
        end = run("/usr/libexec/quillmere/purge")
        self.assert_ends(end, 77)
        self.assertEqual(end.stderr, "purge: Only root may drop the caches of this machine.\n")

    def test_nobody_is_asked_for_a_program_on_another_system_bus(self):
        elsewhere = {**os.environ, "DBUS_SYSTEM_BUS_ADDRESS": "unix:path=/run/no-system-bus"}
        self.assert_ends(osascript("pmset -a disablesleep 1", environment=elsewhere), 1)
        self.assert_ends(osascript("pmset -a disablesleep 1", user=0, environment=elsewhere), 1)
        self.assertNotIn("Quillmere", inhibitors())


if __name__ == "__main__":
    rig.main()
