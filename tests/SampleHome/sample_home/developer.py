"""What development tools leave behind, and the tools themselves."""

from .workshop import KIB, Workshop

#: Folder, size in KiB, count of files.
BUILD_PRODUCTS = (
    ("Library/Developer/Xcode/DerivedData", 6400, 20),
    ("Library/Developer/Xcode/DocumentationCache", 900, 4),
    ("Library/Developer/Xcode/iOS DeviceSupport", 3800, 7),
    ("Library/Developer/Xcode/Archives", 2500, 3),
    ("Library/Developer/CoreSimulator/Devices", 5200, 12),
    (".swiftpm/cache", 450, 5),
    ("Library/Application Support/Code/Cache", 1200, 15),
    ("Library/Application Support/Code/CachedData", 2100, 9),
    ("Library/Application Support/Code/GPUCache", 130, 4),
    ("Library/Application Support/Code/logs", 260, 6),
    (".gradle/caches", 4300, 25),
    (".gradle/wrapper/dists", 3000, 4),
    (".m2/repository", 3700, 30),
    (".npm/_cacache", 2900, 40),
    ("go/pkg/mod/cache", 2200, 18),
    (".cargo/registry/cache", 1900, 14),
    (".cargo/git/db", 800, 6),
    (".cocoapods/repos", 1100, 9),
    ("Library/Android/sdk/.temp", 600, 3),
    ("Library/Android/sdk/system-images", 4800, 5),
    (".android/avd", 2600, 4),
    ("Library/Application Support/Epic/UnrealEngine/Common/DerivedDataCache", 3300, 10),
)
#: The same, below Library/Caches or .cache, where the folder at the top is an item of the user's caches too.
CACHES = (
    ("Library/Caches", "com.apple.dt.Xcode", 1700, 8),
    ("Library/Caches", "org.swift.swiftpm", 620, 5),
    ("Library/Caches", "JetBrains/IntelliJIdea2026.2", 2400, 16),
    ("Library/Caches", "Google/AndroidStudio2026.1", 1800, 11),
    ("Library/Caches", "pip", 1500, 22),
    ("Library/Caches", "Yarn", 900, 10),
    ("Library/Caches", "CocoaPods", 700, 6),
    ("Library/Caches", "com.unity3d.UnityEditor5.x", 1300, 5),
    (".cache", "pip", 1400, 20),
)
LOGS = (
    ("JetBrains/IntelliJIdea2026.2", 330, 5),
    ("Google/AndroidStudio2026.1", 210, 4),
)
TOOLS = (
    (".sdkman/candidates/java", 4200, 9),
    (".pyenv", 2700, 12),
    ("miniconda3", 3900, 15),
    (".rustup", 3500, 8),
    (".nvm", 2300, 10),
    ("development/flutter", 3100, 11),
    ("Library/Android/sdk/platforms", 1600, 4),
)


def make(workshop: Workshop) -> None:
    for where, size, files in BUILD_PRODUCTS + TOOLS:
        workshop.tree(where, size * KIB, files)
    for root, name, size, files in CACHES:
        workshop.tree(f"{root}/{name}", size * KIB, files)
        workshop.offer("User Cache", f"{root}/{name.split('/')[0]}")
    for name, size, files in LOGS:
        workshop.tree(f"Library/Logs/{name}", size * KIB, files)
        workshop.offer("User Logs", f"Library/Logs/{name.split('/')[0]}")

    workshop.document("Library/Application Support/Code/User/settings.json", "{}\n")
    workshop.document("Projects/clock/main.c", "int main(void) { return 0; }\n")
    workshop.document(".cargo/credentials.toml", "made up\n")
    workshop.document(".m2/settings.xml", "<settings/>\n")
