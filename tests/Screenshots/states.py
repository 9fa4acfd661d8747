"""The states of the screens that can be reached on a machine that exists only in memory.

For each destination and each name of a state: what the program is told of its machine, and what is pressed then, by the
keys of texts, or by the names of rows where there is no such key; a name of several is parted by commas. Keys of the
setup's texts begin with "setup:". What no screen has, such as WAIT, is not found, and lets the time of a press go by.
Behind a = stands what is typed.
"""

SCAN = "cleanup.startScan"
UNINSTALL = "applications.uninstall"
CLEAR = "applications.clearData"

WAIT = "nothing"
OPEN_SHEET = "tools.run, tools.disk.title"
TO_STICK = "=⇥↓"
TO_SECOND_DRIVE = "=⇥↓↓"
TO_SECURE = "=⇥→"
CLEANED = ["nav.safeCleanup", SCAN, "cleanup.clean", WAIT, "common.done"]
TO_COPYING = ["setup:next", "setup:next", "setup:install"]

STATES = {
    "wizard": {
        "1-start": (["--wizard"], []),
        "1-drivers": (["--wizard", "--drivers"], []),
        "1-installing": (["--wizard", "--hold", "/usr/bin/osascript"], ["setup:drivers.install"]),
        "1-failed": (["--wizard", "--refused"], ["setup:drivers.install"]),
        "2-privacy": (["--wizard"], ["setup:next"]),
        "3-terms": (["--wizard"], ["setup:next", "setup:next"]),
        "4-copying": (["--wizard"], TO_COPYING),
        "4-portable": (["--wizard", "--no-filter", "--refused"], [*TO_COPYING, *6 * [WAIT]]),
        "5-completed": (["--wizard"], [*TO_COPYING, *8 * [WAIT]]),
    },
    "settings": {
        "list": ([], []),
        "drivers": (["--drivers"], []),
        "installing": (["--hold", "/usr/bin/osascript"], ["drivers.install"]),
        "failed": (["--refused"], ["drivers.install"]),
        "removal": ([], ["settings.uninstall.title"]),
        "whole": (["--size", "900x1600"], []),
    },
    "tools": {
        "idle": ([], []),
        "running": (["--hold", "/usr/bin/osascript"], ["tools.run, tools.spotlight.title"]),
        "success": ([], ["tools.run, tools.spotlight.title"]),
        "failure": (["--refused"], ["tools.run, tools.memory.title"]),
        "sheet": ([], [OPEN_SHEET]),
        "confirm-1": ([], [OPEN_SHEET, "disk.runQuick"]),
        "confirm-2": ([], [OPEN_SHEET, "disk.runQuick", "disk.proceed"]),
        "confirm-3": ([], [OPEN_SHEET, "disk.runQuick", "disk.proceed", "disk.proceed"]),
        "confirm-3-typed": ([], [OPEN_SHEET, "disk.runQuick", "disk.proceed", "disk.proceed", "=ERASE"]),
        "blocked": ([], [OPEN_SHEET, "=⇥⇥→"]),
        "external": ([], [OPEN_SHEET, TO_SECOND_DRIVE]),
        "secure": ([], [OPEN_SHEET, TO_STICK, TO_SECURE]),
        "no-drive": ([], [OPEN_SHEET, "=⇥↑"]),
        "erasing": (["--hold", "/usr/bin/osascript"], [OPEN_SHEET, TO_STICK, "disk.runQuick", "disk.proceed"]),
        "erased": ([], [OPEN_SHEET, TO_STICK, "disk.runQuick", "disk.proceed", WAIT]),
        "erase-refused": (["--refused"], [OPEN_SHEET, TO_STICK, "disk.runQuick", "disk.proceed", WAIT]),
        "after-erasing": ([], [OPEN_SHEET, TO_STICK, "disk.runQuick", "disk.proceed", WAIT, "common.ok", "common.close"]),
    },
    "dashboard": {
        "good": ([], []),
        "needs-attention": (["--memory", "84"], []),
        "critical": (["--disk", "93", "--memory", "88", "--processors", "91"], []),
        "cleaning": ([], ["dashboard.cleanCaches"]),
        "optimizing": ([], ["dashboard.fastBoost"]),
        "refused": (["--no-filter"], ["traffic.eco"]),
        "question": ([], ["resource.forceQuit"]),
        "switched-on": (["--size", "1100x1300"], ["traffic.eco", "keepAwake.trayOff", "resource.showMore"]),
        "whole": (["--size", "900x1300"], []),
    },
    "safeCleanup": {
        "start": ([], []),
        "scanning": (["--hold", "/home/ada/Library/Caches/Google/Chrome"], [SCAN]),
        "list": ([], [SCAN]),
        "report": ([], [SCAN, "cleanup.clean"]),
        "nothing-found": (["--empty"], [SCAN]),
    },
    "professionalCleanup": {
        "start": ([], []),
        "scanning": (["--hold", "/home/ada/.nvm/data"], [SCAN]),
        "list": ([], [SCAN]),
        "whole-list": (["--size", "1100x1000"], [SCAN]),
        "inventory": (["--size", "1100x1250"], [SCAN, "developer.installed.name"]),
        "cleaning": (["--hold", "/home/ada/Library/Application Support/Code/Cache"], [SCAN, "cleanup.clean"]),
        "report": ([], [SCAN, "cleanup.selectAll", "cleanup.clean"]),
        "nothing-found": (["--empty"], [SCAN]),
    },
    "largeFiles": {
        "start": ([], []),
        "scanning": (["--hold", "/home/ada/Movies/Concert.mkv"], [SCAN]),
        "list": ([], [SCAN]),
        "sorted": ([], [SCAN, "largeFiles.column.name"]),
        "nothing-found": (["--empty"], [SCAN]),
    },
    "browsers": {
        "detecting": (["--hold", "/home/ada/Library/Caches/Google/Chrome/data"], []),
        "list": ([], []),
        "warning": ([], ["browsers.cookiesWarning"]),
        "question": ([], ["browsers.cookiesWarning", "common.clean"]),
        "cleaning": (["--hold", "/home/ada/Library/Caches/Google/Chrome"], ["common.clean"]),
        "cleaned": ([], ["common.clean", WAIT]),
        "none": (["--empty"], []),
    },
    "systemData": {
        "scanning": (["--hold", "/home/ada/Documents/Films"], []),
        "list": ([], []),
        "empty": (["--empty"], []),
    },
    "applications": {
        "empty": (["--empty", "--no-filter"], []),
        "scanning": (["--hold", "/Applications/Sound Studio.app/Contents"], []),
        "list": ([], []),
        "leftovers": ([], ["Model Workshop"]),
        "self-contained": ([], ["Document Reader"]),
        "long-name": ([], ["An Image Manipulation Program of Uncommon Length"]),
        "system": ([], ["Firefox"]),
        "blocked": ([], ["Painter", "applications.blockTraffic"]),
        "traffic-error": ([], ["Nameless", "applications.blockTraffic"]),
        "confirm-uninstall": ([], ["Painter", UNINSTALL]),
        "confirm-clear-running": ([], ["Model Workshop", CLEAR]),
        "uninstalling": (["--hold", "/Applications/Painter.app"],
                         ["Painter", UNINSTALL, "applications.confirmUninstall"]),
        "cleared": ([], ["Painter", CLEAR, "applications.confirmClear"]),
    },
    "history": {
        "empty": ([], []),
        "list": ([], [*CLEANED, "nav.history"]),
        "question": ([], [*CLEANED, "nav.history", "common.delete"]),
        "menu": ([], [*CLEANED, "nav.history", "history.export"]),
    },
    "startup": {
        "empty": (["--empty"], []),
        "loading": (["--hold", "/etc/xdg/autostart"], []),
        "list": ([], []),
        "switched": ([], ["org.example.backup"]),
        "whole-list": (["--size", "1100x1180"], []),
        "failure": (["--size", "1100x1180"], ["org.example.vpn"]),
        "failure-in-view": ([], ["org.example.vpn"]),
    },
}
