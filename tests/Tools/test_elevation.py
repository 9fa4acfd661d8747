"""The programs as a user runs them: osascript, the machine's own pkexec and polkitd, quillmere-admin, its holder.

Runs as root in namespaces of its own, with a system bus, a polkitd and a mocked logind that nobody else sees. All of
them end with it.
"""

import os
import shutil
import subprocess
import sys
import time
import unittest

SKIPPED = 77
NOBODY = 65534
PATIENCE = 20
ADMINISTRATOR = "/usr/libexec/quillmere/quillmere-admin"
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

services = []


def overlay(folder):
    name = folder.strip("/").replace("/", "-")
    for part in ("upper", "work"):
        os.makedirs(f"/run/overlays/{name}/{part}")
    shutil.copystat(folder, f"/run/overlays/{name}/upper")
    owner = os.stat(folder)
    os.chown(f"/run/overlays/{name}/upper", owner.st_uid, owner.st_gid)
    options = f"lowerdir={folder},upperdir=/run/overlays/{name}/upper,workdir=/run/overlays/{name}/work"
    subprocess.run(["mount", "-t", "overlay", "overlay", "-o", options, folder], check=True)


def start(*command):
    services.append(subprocess.Popen(command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL))


def wait_for(condition):
    deadline = time.monotonic() + PATIENCE
    while not condition():
        if time.monotonic() > deadline:
            raise TimeoutError
        time.sleep(0.05)


def ask_bus(*arguments):
    return subprocess.run(["gdbus", "call", "--system", *arguments], capture_output=True, text=True, check=False)


def has_owner(name):
    answer = ask_bus("--dest", "org.freedesktop.DBus", "--object-path", "/", "--method",
                     "org.freedesktop.DBus.NameHasOwner", name)
    return "true" in answer.stdout


def inhibitors():
    answer = ask_bus("--dest", "org.freedesktop.login1", "--object-path", "/org/freedesktop/login1", "--method",
                     "org.freedesktop.login1.Manager.ListInhibitors")
    return answer.stdout.replace(", uint32 1000, 123456)", ")").replace(", uint32 1000, uint32 123456)", ")")


def setUpModule():
    os.environ.pop("DBUS_SYSTEM_BUS_ADDRESS", None)
    subprocess.run(["mount", "-t", "tmpfs", "-o", "mode=755", "tmpfs", "/run"], check=True)
    for folder in ("/usr/libexec", "/usr/share/polkit-1", "/etc/polkit-1"):
        overlay(folder)
    helpers = os.environ["QUILLMERE_HELPERS"]
    shutil.copytree(helpers, "/usr/libexec/quillmere")
    shutil.copy(os.environ["QUILLMERE_POLICY"], "/usr/share/polkit-1/actions/")
    with open("/etc/polkit-1/rules.d/00-quillmere-test.rules", "w", encoding="utf-8") as rules:
        rules.write(RULES)
    subprocess.run(["chmod", "-R", "a+rX", "/usr/libexec/quillmere", "/etc/polkit-1/rules.d",
                    "/usr/share/polkit-1/actions"], check=True)
    os.mkdir("/run/dbus")
    start("dbus-daemon", "--system", "--nofork", "--nosyslog")
    wait_for(lambda: os.path.exists("/run/dbus/system_bus_socket"))
    start("/usr/lib/polkit-1/polkitd", "--no-debug")
    start("/usr/bin/python3", "-m", "dbusmock", "--system", "--template", "logind")
    wait_for(lambda: has_owner("org.freedesktop.PolicyKit1") and has_owner("org.freedesktop.login1"))


def tearDownModule():
    for service in reversed(services):
        service.kill()
        service.wait()


def run(*command, user=NOBODY, environment=None):
    return subprocess.run(command, capture_output=True, text=True, timeout=60, check=False, cwd="/",
                          stdin=subprocess.DEVNULL, env=environment, user=user, group=user, extra_groups=[])


def osascript(shell_text, **options):
    script = f'do shell script "{shell_text}" with administrator privileges'
    return run("/usr/libexec/quillmere/osascript", "-e", script, **options)


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
        end = osascript("purge")
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


def main():
    if os.geteuid() != 0:
        print("Only root can have a system bus and a polkitd of its own.")
        sys.exit(1 if "CI" in os.environ else SKIPPED)
    if "QUILLMERE_OWN_NAMESPACES" not in os.environ:
        os.environ["QUILLMERE_OWN_NAMESPACES"] = "1"
        own = ["--mount", "--propagation", "private", "--pid", "--fork", "--kill-child", "--mount-proc"]
        if subprocess.run(["unshare", *own, "true"], check=False).returncode != 0 and "CI" not in os.environ:
            print("This machine gives no namespaces.")
            sys.exit(SKIPPED)
        # The first process of the namespace is a shell: pkexec serves nobody whose parent is process 1.
        os.execvp("unshare", ["unshare", *own, "sh", "-c", '"$@"; exit $?', "sh", sys.executable, "-B", *sys.argv])
    unittest.main()


if __name__ == "__main__":
    main()
