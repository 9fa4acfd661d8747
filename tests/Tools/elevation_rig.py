"""A machine's own elevation in namespaces that nobody else sees: a system bus, polkitd, pkexec, the installed programs.

Needs root. All that is started here ends with the namespaces.
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
HELPERS = "/usr/libexec/quillmere"
ADMINISTRATOR = f"{HELPERS}/quillmere-admin"
POLKITD = "/usr/lib/polkit-1/polkitd"

services = []


def enter_root_of_its_own():
    """From here on this process sees the machine's files, and what it does to them is nobody else's."""
    subprocess.run(["mount", "-t", "tmpfs", "-o", "mode=755", "tmpfs", "/run"], check=True)
    for part in ("upper", "work", "root"):
        os.mkdir(f"/run/{part}")
    options = "lowerdir=/,upperdir=/run/upper,workdir=/run/work"
    subprocess.run(["mount", "-t", "overlay", "overlay", "-o", options, "/run/root"], check=True)
    for folder in ("/proc", "/dev"):
        subprocess.run(["mount", "--rbind", folder, f"/run/root{folder}"], check=True)
    for folder in ("/run", "/tmp"):
        subprocess.run(["mount", "-t", "tmpfs", "-o", "mode=755", "tmpfs", f"/run/root{folder}"], check=True)
    os.chroot("/run/root")
    os.chdir("/")


def start(*command):
    service = subprocess.Popen(command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    services.append(service)
    return service


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


def start_polkit():
    polkit = start(POLKITD, "--no-debug")
    wait_for(lambda: has_owner("org.freedesktop.PolicyKit1"))
    return polkit


def set_up(rules):
    """Installs the programs and starts what they ask, with @p rules as polkit's own."""
    os.environ.pop("DBUS_SYSTEM_BUS_ADDRESS", None)
    helpers = os.open(os.environ["QUILLMERE_HELPERS"], os.O_RDONLY | os.O_DIRECTORY)
    with open(os.environ["QUILLMERE_POLICY"], encoding="utf-8") as file:
        policy = file.read()
    enter_root_of_its_own()
    shutil.rmtree(HELPERS, ignore_errors=True)
    shutil.copytree(f"/proc/self/fd/{helpers}", HELPERS)
    with open("/usr/share/polkit-1/actions/com.veltrane.quillmere.policy", "w", encoding="utf-8") as file:
        file.write(policy)
    with open("/etc/polkit-1/rules.d/00-quillmere-test.rules", "w", encoding="utf-8") as file:
        file.write(rules)
    subprocess.run(["chmod", "-R", "a+rX", HELPERS, "/etc/polkit-1/rules.d", "/usr/share/polkit-1/actions"], check=True)
    os.mkdir("/run/dbus")
    start("dbus-daemon", "--system", "--nofork", "--nosyslog")
    wait_for(lambda: os.path.exists("/run/dbus/system_bus_socket"))
    return start_polkit()


def tear_down():
    for service in reversed(services):
        service.kill()
        service.wait()


def run(*command, user=NOBODY, environment=None):
    return subprocess.run(command, capture_output=True, text=True, timeout=60, check=False, cwd="/",
                          stdin=subprocess.DEVNULL, env=environment, user=user, group=user, extra_groups=[])


def script_of(shell_text):
    return f'do shell script "{shell_text}" with administrator privileges'


def osascript(shell_text, **options):
    return run(f"{HELPERS}/osascript", "-e", script_of(shell_text), **options)


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
    unittest.main("__main__")
