"""What development tools leave behind, and the tools themselves."""

from .workshop import KIB, Workshop

#: For each group of the professional clean-up: folder, size in KiB, count of files.
GROUPS = {
    "Xcode Build Caches": (
        ("Library/Developer/Xcode/DerivedData", 6400, 20),
        ("Library/Developer/Xcode/DocumentationCache", 900, 4),
        ("Library/Caches/com.apple.dt.Xcode", 1700, 8),
        ("Library/Caches/org.swift.swiftpm", 620, 5),
        (".swiftpm/cache", 450, 5),
    ),
    "Visual Studio Code Caches": (
        ("Library/Application Support/Code/Cache", 1200, 15),
        ("Library/Application Support/Code/CachedData", 2100, 9),
        ("Library/Application Support/Code/GPUCache", 130, 4),
        ("Library/Application Support/Code/logs", 260, 6),
        (".config/Code/CachedData", 1700, 8),
        (".config/VSCodium/Cache", 800, 6),
        (".var/app/com.vscodium.codium/config/VSCodium/CachedExtensionVSIXs", 540, 3),
    ),
    "Xcode Device Support and Archives": (
        ("Library/Developer/Xcode/iOS DeviceSupport", 3800, 7),
        ("Library/Developer/Xcode/Archives", 2500, 3),
    ),
    "Android Studio and JetBrains Caches": (
        ("Library/Caches/JetBrains/IntelliJIdea2026.2", 2400, 16),
        ("Library/Caches/Google/AndroidStudio2026.1", 1800, 11),
        ("Library/Logs/JetBrains/IntelliJIdea2026.2", 330, 5),
        ("Library/Logs/Google/AndroidStudio2026.1", 210, 4),
        (".cache/JetBrains/PyCharm2026.2/index", 1500, 9),
        (".cache/JetBrains/PyCharm2026.2/log", 170, 3),
    ),
    "Java Gradle and Maven Caches": (
        (".gradle/caches", 4300, 25),
        (".gradle/wrapper/dists", 3000, 4),
        (".m2/repository", 3700, 30),
    ),
    "Language and Package Manager Caches": (
        ("Library/Caches/pip", 1500, 22),
        (".cache/pip", 1400, 20),
        (".npm/_cacache", 2900, 40),
        ("Library/Caches/Yarn", 900, 10),
        ("go/pkg/mod/cache", 2200, 18),
        (".cargo/registry/cache", 1900, 14),
        (".cargo/registry/src", 1200, 16),
        (".cargo/git/db", 800, 6),
        (".rustup/downloads", 350, 2),
        (".local/share/pnpm/store", 1100, 12),
        ("Library/Caches/CocoaPods", 700, 6),
        (".cocoapods/repos", 1100, 9),
    ),
    "Android SDK Temporary Files": (
        ("Library/Android/sdk/.temp", 600, 3),
        ("Android/Sdk/.downloadIntermediates", 410, 2),
    ),
    "Smartphone Simulators and System Images": (
        ("Library/Developer/CoreSimulator/Devices", 5200, 12),
        ("Library/Android/sdk/system-images", 4800, 5),
        (".android/avd", 2600, 4),
    ),
    "Media and Game Development Caches": (
        ("Library/Caches/com.unity3d.UnityEditor5.x", 1300, 5),
        ("Library/Application Support/Epic/UnrealEngine/Common/DerivedDataCache", 3300, 10),
        (".config/Epic/UnrealEngine/Common/DerivedDataCache", 1900, 7),
    ),
    "Mail Downloads": (
        ("Library/Containers/com.apple.mail/Data/Library/Mail Downloads", 740, 5),
    ),
}
#: Made by other families, and an item of a group all the same.
MADE_ELSEWHERE = (
    ("Language and Package Manager Caches", ".cache/ccache"),
    ("Language and Package Manager Caches", ".cache/bazel/_bazel_ada"),
)
TOOLS = (
    (".sdkman/candidates/java", 4200, 9),
    (".pyenv", 2700, 12),
    ("miniconda3", 3900, 15),
    (".rustup/toolchains", 3500, 8),
    (".nvm", 2300, 10),
    ("development/flutter", 3100, 11),
    ("Library/Android/sdk/platforms", 1600, 4),
)
#: A folder in one of these is an item of the ordinary clean-up too.
ORDINARY_ROOTS = (("Library/Caches/", "User Cache"), ("Library/Logs/", "User Logs"), (".cache/", "User Cache"))


def make(workshop: Workshop) -> None:
    for group, folders in GROUPS.items():
        for where, size, files in folders:
            workshop.tree(where, size * KIB, files)
            workshop.offer_to_professionals(group, where)
            offer_ordinarily(workshop, where)
    for group, where in MADE_ELSEWHERE:
        workshop.offer_to_professionals(group, where)
    for where, size, files in TOOLS:
        workshop.tree(where, size * KIB, files)

    workshop.document("Library/Application Support/Code/User/settings.json", "{}\n")
    workshop.document("Projects/clock/main.c", "int main(void) { return 0; }\n")
    workshop.document(".cargo/credentials.toml", "made up\n")
    workshop.document(".gradle/gradle.properties", "signing.password=made-up\n")
    workshop.document(".m2/settings.xml", "<settings/>\n")


def offer_ordinarily(workshop: Workshop, where: str) -> None:
    # What lies beside a local history is kept by the ordinary clean-up, which takes folders as a whole.
    if where.startswith(".cache/JetBrains/"):
        return
    for root, category in ORDINARY_ROOTS:
        if where.startswith(root):
            workshop.offer(category, root + where.removeprefix(root).split("/")[0])
