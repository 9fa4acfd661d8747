"""What becomes of a command when the system asks for a password: approved, dismissed, refused, not asked at all."""

import os
import pathlib
import random
import shutil
import signal
import stat
import tempfile
import time
import unittest

import elevation_rig as rig
from elevation_rig import ADMINISTRATOR, HELPERS, NOBODY, osascript
from password_dialog import PasswordDialog

# Whom nobody asks, for what is tried many times.
TRUSTED = 5
RULES = """
polkit.addAdminRule(function(action, subject) { return ["unix-user:root"]; });
polkit.addRule(function(action, subject) {
    if (action.id.indexOf("com.veltrane.quillmere.") == 0 && subject.user == "games")
        return polkit.Result.YES;
});
"""
BUNDLE = "/srv/somebody's \"own\"/Quillmere.app"
APP = "/Applications/Quillmere.app"
DRIVERS = ("if [ -f /opt/homebrew/bin/brew ]; then /opt/homebrew/bin/brew install --cask macfuse && "
           "/opt/homebrew/bin/brew install ntfs-3g-mac; elif [ -f /usr/local/bin/brew ]; then /usr/local/bin/brew "
           "install --cask macfuse && /usr/local/bin/brew install ntfs-3g-mac; else echo 'Homebrew is required to "
           "download/compile NTFS-3G and macFUSE'; exit 1; fi")
INDEX = "'/usr/bin/mdutil' '-E' '/'"
NAMES = "'/usr/bin/killall' '-HUP' 'mDNSResponder'"
POLICY = "/etc/quillmere/filter-policy.json"
RECORD = ('{"blockedBundleIdentifiers":["org.example.One"],"description":"Traffic","ecoAllowedBundleIdentifiers":[],'
          '"ecoTrafficEnabled":true,"enabled":true,"filterSockets":true,"identifier":"com.veltrane.quillmere.filter"}\n')
CANCELED = "execution error: User canceled. (-128)\n"

polkit = None


def setUpModule():
    global polkit
    polkit = rig.set_up(RULES)
    shutil.rmtree("/Applications", ignore_errors=True)


def tearDownModule():
    rig.tear_down()


def installing(bundle):
    quoted = bundle.replace("'", "'\\''").replace('"', '\\"')
    return f"rm -rf '{APP}' && /usr/bin/ditto '{quoted}' '{APP}'"


def make_bundle(path, text, files=1):
    os.makedirs(f"{path}/Contents/MacOS", exist_ok=True)
    for name in ["Info.plist", *(f"MacOS/{number}" for number in range(files))]:
        with open(f"{path}/Contents/{name}", "w", encoding="utf-8") as file:
            file.write(text)


def installed():
    try:
        with open(f"{APP}/Contents/Info.plist", encoding="utf-8") as file:
            return file.read()
    except FileNotFoundError:
        return None


class DialogCase(unittest.TestCase):
    def setUp(self):
        make_bundle(BUNDLE, "new")

    def tearDown(self):
        for folder in ("/Applications", "/srv/somebody's \"own\""):
            shutil.rmtree(folder, ignore_errors=True)

    def assert_ends(self, end, status, text=""):
        self.assertEqual(end.returncode, status, end.stdout + end.stderr)
        self.assertIn(text, end.stderr)


class AnswerTest(DialogCase):
    def test_an_approved_command_is_carried_out(self):
        with PasswordDialog("approve") as dialog:
            self.assert_ends(dialog.osascript(installing(BUNDLE)), 0)
        self.assertEqual(dialog.asked, [("com.veltrane.quillmere.install-bundle",
                                         "Authentication is required to install Quillmere for all users")])
        self.assertEqual(installed(), "new")
        for path in ("/Applications", APP, f"{APP}/Contents/Info.plist"):
            status = os.stat(path)
            self.assertEqual((status.st_uid, status.st_gid), (0, 0))
            self.assertEqual(stat.S_IMODE(status.st_mode) & 0o7022, 0)

    def test_each_time_is_asked_for(self):
        with PasswordDialog("approve") as dialog:
            for _ in range(3):
                self.assert_ends(dialog.osascript(installing(BUNDLE)), 0)
        self.assertEqual(len(dialog.asked), 3)

    def test_the_dialog_speaks_the_users_language(self):
        for locale, word in (("es_ES.UTF-8", "autenticación"), ("ru_RU.UTF-8", "аутентификация")):
            with PasswordDialog("dismiss") as dialog:
                dialog.osascript(INDEX, locale=locale)
            self.assertIn(word, dialog.asked[0][1])

    def test_each_command_is_asked_for_under_its_own_name(self):
        commands = {"pmset -a disablesleep 1": "keep-awake", "'/usr/sbin/purge'": "purge", INDEX: "reset-index",
                    NAMES: "flush-names", installing(BUNDLE): "install-bundle", DRIVERS: "install-drivers"}
        for shell_text, verb in commands.items():
            with self.subTest(verb), PasswordDialog("dismiss") as dialog:
                end = dialog.osascript(shell_text)
                self.assert_ends(end, 1)
                self.assertEqual(end.stderr, CANCELED)
                self.assertEqual([action for action, _ in dialog.asked], [f"com.veltrane.quillmere.{verb}"])
        self.assertFalse(os.path.exists("/Applications"))

    def test_a_refused_command_is_not_carried_out(self):
        with PasswordDialog("refuse") as dialog:
            self.assert_ends(dialog.osascript(installing(BUNDLE)), 1, "execution error: ")
            end = dialog.osascript(installing(BUNDLE))
        self.assertIn("Not authorized", end.stderr)
        self.assertNotIn("-128", end.stderr)
        self.assertEqual(len(dialog.asked), 2)
        self.assertFalse(os.path.exists("/Applications"))

    def test_without_a_dialog_nothing_is_carried_out(self):
        self.assert_ends(osascript(installing(BUNDLE)), 1, "No authentication agent found")
        self.assertFalse(os.path.exists("/Applications"))

    def test_a_dialog_that_goes_away_is_no_approval(self):
        with PasswordDialog("vanish") as dialog:
            self.assert_ends(dialog.osascript(installing(BUNDLE)), 1, "execution error: ")
        self.assertFalse(os.path.exists("/Applications"))

    def test_root_is_asked_for_nothing(self):
        with PasswordDialog("refuse") as dialog:
            self.assert_ends(dialog.osascript(installing(BUNDLE), user=0), 0)
        self.assertEqual(dialog.asked, [])
        self.assertEqual(installed(), "new")

    def test_another_command_is_not_asked_for_at_all(self):
        for shell_text in ("id", "rm -rf '/srv'", f"{installing(BUNDLE)} && id", "'/usr/bin/killall' '-HUP' 'sshd'",
                           f"rm -rf '/srv' && /usr/bin/ditto '{APP}' '/srv'"):
            with PasswordDialog("approve") as dialog:
                self.assert_ends(dialog.osascript(shell_text), 1, "nothing was done")
            self.assertEqual(dialog.asked, [])
        self.assertTrue(os.path.exists(BUNDLE))


class FilterPolicyTest(DialogCase):
    """The program runs pkexec itself for this one, since it has a record to hand over."""

    def setUp(self):
        super().setUp()
        shutil.rmtree(os.path.dirname(POLICY), ignore_errors=True)
        self.addCleanup(shutil.rmtree, os.path.dirname(POLICY), True)

    @staticmethod
    def save(answer, record):
        with open("/tmp/record", "w", encoding="utf-8") as file:
            file.write(record)
        os.chmod("/tmp/record", 0o644)
        with PasswordDialog(answer) as dialog:
            # It is the parent of pkexec that is asked for.
            end = dialog.run("sh", "-c", '"$@"; exit $?', "sh", "/usr/bin/pkexec", "--disable-internal-agent",
                             ADMINISTRATOR, "filter-policy", standard_input="/tmp/record")
        return end, dialog.asked

    @staticmethod
    def saved():
        with open(POLICY, encoding="utf-8") as file:
            return file.read()

    def test_an_approved_record_is_saved_for_everybody_to_read(self):
        end, asked = self.save("approve", RECORD)
        self.assert_ends(end, 0)
        self.assertEqual([action for action, _ in asked], ["com.veltrane.quillmere.filter-policy"])
        self.assertEqual(self.saved(), RECORD)
        status = os.stat(POLICY)
        self.assertEqual((status.st_uid, status.st_gid, stat.S_IMODE(status.st_mode)), (0, 0, 0o644))

    def test_a_dismissed_or_refused_one_changes_nothing(self):
        self.assert_ends(self.save("approve", RECORD)[0], 0)
        other = RECORD.replace("One", "Two")
        for answer, status in (("dismiss", 126), ("refuse", 127)):
            with self.subTest(answer):
                end, asked = self.save(answer, other)
                self.assert_ends(end, status)
                self.assertTrue(asked)
                self.assertEqual(self.saved(), RECORD)

    def test_what_is_no_record_is_not_saved_whoever_approves_it(self):
        for record in ("", "{}", RECORD + RECORD, "x" * 100000):
            end, _ = self.save("approve", record)
            self.assert_ends(end, 1, "The rules of the filter were not saved: ")
        self.assertFalse(os.path.exists(POLICY))


class TurnTest(DialogCase):
    """Two commands of one user at once, each with a dialog of its own."""

    RUNTIME = "/tmp/runtime"
    LOCK = f"{RUNTIME}/quillmere/dialog.lock"

    def setUp(self):
        super().setUp()
        os.mkdir(self.RUNTIME, 0o700)
        os.chown(self.RUNTIME, NOBODY, NOBODY)
        self.addCleanup(shutil.rmtree, self.RUNTIME)

    def start(self, dialog, shell_text, runtime=RUNTIME):
        environment = {**os.environ, "XDG_RUNTIME_DIR": runtime}
        process = dialog.start(f"{HELPERS}/osascript", "-e", rig.script_of(shell_text), environment=environment)
        self.enterContext(process)
        self.addCleanup(process.kill)
        return process

    def waits(self):
        try:
            inode = os.stat(self.LOCK).st_ino
        except FileNotFoundError:
            return False
        with open("/proc/locks", encoding="ascii") as file:
            return any("-> FLOCK" in line and f":{inode} " in line for line in file)

    def assert_waits(self, dialog):
        rig.wait_for(lambda: self.waits() or dialog.open.is_set())
        self.assertFalse(dialog.open.is_set())

    def assert_dialog(self, dialog):
        self.assertTrue(dialog.open.wait(rig.PATIENCE))

    def test_a_killed_caller_lets_the_next_ask(self):
        with PasswordDialog("wait") as first, PasswordDialog("approve") as second:
            process = self.start(first, NAMES)
            self.assert_dialog(first)
            other = self.start(second, installing(BUNDLE))
            self.assert_waits(second)
            process.kill()
            self.assert_dialog(second)
            self.assertEqual(other.wait(rig.PATIENCE), 0)
        self.assertEqual(installed(), "new")

    def test_a_killed_pkexec_lets_the_next_ask(self):
        with PasswordDialog("wait") as first, PasswordDialog("dismiss") as second:
            process = self.start(first, NAMES)
            self.assert_dialog(first)
            other = self.start(second, NAMES)
            self.assert_waits(second)
            for number in processes_of("pkexec"):
                os.kill(int(number), signal.SIGKILL)
            self.assert_dialog(second)
            self.assertEqual((process.wait(rig.PATIENCE), other.wait(rig.PATIENCE)), (1, 1))

    def test_the_next_may_ask_while_an_approved_command_goes_on(self):
        os.mkfifo("/tmp/end")
        self.addCleanup(os.unlink, "/tmp/end")
        with open("/usr/bin/updatedb", "w", encoding="utf-8") as file:
            file.write("#!/bin/sh\ntouch /tmp/begun\nread line </tmp/end\n")
        os.chmod("/usr/bin/updatedb", 0o755)
        self.addCleanup(os.unlink, "/usr/bin/updatedb")
        with PasswordDialog("approve") as first, PasswordDialog("dismiss") as second:
            process = self.start(first, INDEX)
            rig.wait_for(lambda: os.path.exists("/tmp/begun"))
            self.addCleanup(os.unlink, "/tmp/begun")
            other = self.start(second, NAMES)
            self.assert_dialog(second)
            self.assertEqual(other.wait(rig.PATIENCE), 1)
            self.assertIsNone(process.poll())
            pathlib.Path("/tmp/end").write_text("now\n", encoding="ascii")
            self.assertEqual(process.wait(rig.PATIENCE), 0)

    def test_nobody_waits_without_a_folder_of_the_session(self):
        with PasswordDialog("wait") as first, PasswordDialog("dismiss") as second:
            process = self.start(first, NAMES, runtime="/tmp/nowhere")
            self.assert_dialog(first)
            other = self.start(second, NAMES, runtime="/tmp/nowhere")
            self.assert_dialog(second)
            self.assertEqual(other.wait(rig.PATIENCE), 1)
            self.assertIsNone(process.poll())


class AbsenceTest(DialogCase):
    def hide(self, path):
        os.rename(path, f"{path}.hidden")
        self.addCleanup(os.rename, f"{path}.hidden", path)

    def restart_polkit(self):
        global polkit
        polkit = rig.start_polkit()

    def test_without_polkit_nothing_is_carried_out(self):
        self.addCleanup(self.restart_polkit)
        self.hide(rig.POLKITD)
        polkit.kill()
        polkit.wait()
        rig.wait_for(lambda: not rig.has_owner("org.freedesktop.PolicyKit1"))
        self.assert_ends(osascript(installing(BUNDLE)), 1, "execution error: ")
        self.assertFalse(os.path.exists("/Applications"))
        self.assert_ends(osascript(installing(BUNDLE), user=0), 0)

    def test_without_pkexec_nothing_is_carried_out(self):
        self.hide("/usr/bin/pkexec")
        self.assert_ends(osascript(installing(BUNDLE)), 1, "execution error: ")
        self.assertFalse(os.path.exists("/Applications"))

    def test_without_the_administrator_program_nothing_is_carried_out(self):
        self.hide(ADMINISTRATOR)
        self.assert_ends(osascript(installing(BUNDLE), user=TRUSTED), 1, "execution error: ")
        self.assertFalse(os.path.exists("/Applications"))


class CallerTest(DialogCase):
    def test_nobody_installs_what_they_may_not_read(self):
        os.makedirs("/root/private", exist_ok=True)
        make_bundle("/root/private/Quillmere.app", "secret")
        self.assert_ends(osascript(installing("/root/private/Quillmere.app"), user=TRUSTED), 1, "Permission denied")
        os.chmod(f"{BUNDLE}/Contents/Info.plist", 0o600)
        self.assert_ends(osascript(installing(BUNDLE), user=TRUSTED), 1, "Permission denied")
        self.assertIsNone(installed())

    def test_a_link_leads_nobody_to_what_they_may_not_read(self):
        for target in ("/etc/shadow", "../../../../etc/shadow"):
            os.symlink(target, f"{BUNDLE}/Contents/link")
            self.assert_ends(osascript(installing(BUNDLE), user=TRUSTED), 1, "leads out of the bundle")
            os.unlink(f"{BUNDLE}/Contents/link")
        os.symlink(BUNDLE, "/srv/link")
        self.addCleanup(os.unlink, "/srv/link")
        self.assert_ends(osascript(installing("/srv/link"), user=TRUSTED), 1, "was not installed")
        self.assertIsNone(installed())

    def test_the_index_of_the_caller_is_reset_with_the_callers_rights(self):
        told = tempfile.TemporaryDirectory()
        self.addCleanup(told.cleanup)
        os.chmod(told.name, 0o777)
        for name in ("tracker3", "tracker-miner-fs-3", "updatedb"):
            with open(f"/usr/bin/{name}", "w", encoding="utf-8") as file:
                file.write('#!/bin/sh\n'
                           f'echo "$*: $(id -u) $(id -G) $(grep CapEff /proc/self/status)" >{told.name}/{name}\n')
            os.chmod(f"/usr/bin/{name}", 0o755)
            self.addCleanup(os.unlink, f"/usr/bin/{name}")
        end = osascript(INDEX, user=TRUSTED)
        self.assert_ends(end, 0)
        self.assertEqual(pathlib.Path(told.name, "tracker3").read_text(),
                         "reset --filesystem: 5 60 CapEff:\t0000000000000000\n")
        self.assertIn(": 0 0 CapEff", pathlib.Path(told.name, "updatedb").read_text())
        self.assertIn("The index of Tracker for games was reset.\nThe index of file names was rebuilt.\n", end.stdout)

    def test_what_is_not_here_is_told_through_the_dialog(self):
        end = osascript(INDEX, user=TRUSTED)
        self.assert_ends(end, 1, "This machine keeps no index of its files: nothing to do here. (69)")
        end = osascript(NAMES, user=TRUSTED)
        self.assert_ends(end, 1, "nothing to do here. (69)")

    def test_the_driver_is_not_installed_without_packagekit(self):
        for path in ("/usr/bin/ntfs-3g", "/usr/share/dbus-1/system-services/org.freedesktop.PackageKit.service"):
            if os.path.lexists(path):
                os.unlink(path)
        end = osascript(DRIVERS, user=TRUSTED)
        self.assert_ends(end, 1, "PackageKit does not answer on this machine")

    def test_random_calls_end_neither_as_dismissed_nor_as_refused(self):
        chance = random.Random(20261121)
        words = ["on", "", "/", "/etc", "..", "-f", "--help", "/root", "/dev/null", "$(id)", "; id", "\n", "a" * 9000,
                 "\udcff", "/proc/self/fd/0", "disk4s2"]
        for verb in ("keep-awake", "purge", "reset-index", "flush-names", "install-bundle", "install-drivers",
                     "erase-volume", "secure-erase", "mount-ntfs", "filter-policy"):
            for _ in range(12):
                said = [verb, *chance.choices(words, k=chance.randint(2, 4))]
                end = rig.run("/usr/bin/pkexec", "--disable-internal-agent", ADMINISTRATOR, *said, user=TRUSTED)
                self.assertNotIn(end.returncode, (0, 126, 127), f"{said}: {end.stderr}")
        self.assertIsNone(installed())

    def test_a_caller_that_dies_at_the_dialog_leaves_nothing_behind(self):
        with PasswordDialog("wait") as dialog:
            process = dialog.start(f"{HELPERS}/osascript", "-e", rig.script_of(installing(BUNDLE)))
            self.assertTrue(dialog.open.wait(rig.PATIENCE))
            process.kill()
            process.communicate()
        rig.wait_for(lambda: not processes_of("pkexec") and not processes_of("quillmere-admin"))
        self.assertFalse(os.path.exists("/Applications"))

    def test_a_caller_that_dies_leaves_the_old_bundle_or_the_new(self):
        old = "/srv/old/Quillmere.app"
        make_bundle(old, "old", files=1)
        self.addCleanup(shutil.rmtree, "/srv/old")
        make_bundle(BUNDLE, "new", files=400)
        for turn in range(10):
            self.assert_ends(osascript(installing(old), user=0), 0)
            with PasswordDialog("approve") as dialog:
                process = dialog.start(f"{HELPERS}/osascript", "-e", rig.script_of(installing(BUNDLE)))
                self.assertTrue(dialog.open.wait(rig.PATIENCE))
                time.sleep(turn * 0.01)
                process.kill()
                process.communicate()
            rig.wait_for(lambda: not processes_of("pkexec") and not processes_of("quillmere-admin"))
            count = len(os.listdir(f"{APP}/Contents/MacOS"))
            self.assertIn((installed(), count), (("old", 1), ("new", 400)))


def processes_of(program):
    found = []
    for number in filter(str.isdigit, os.listdir("/proc")):
        try:
            found += [number] if os.readlink(f"/proc/{number}/exe").endswith(f"/{program}") else []
        except OSError:
            pass
    return found


if __name__ == "__main__":
    rig.main()
