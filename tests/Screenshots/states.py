"""The states of the screens that can be reached on a machine that exists only in memory.

For each destination and each name of a state: what the program is told of its machine, and what is pressed then, by the
keys of texts, or by the names of rows where there is no such key.
"""

SCAN = "cleanup.startScan"
UNINSTALL = "applications.uninstall"
CLEAR = "applications.clearData"

STATES = {
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
        "list": ([], [SCAN]),
        "nothing-found": (["--empty"], [SCAN]),
    },
    "browsers": {
        "list": ([], []),
        "none": (["--empty"], []),
    },
    "systemData": {
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
