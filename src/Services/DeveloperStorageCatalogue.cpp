#include "Services/DeveloperStorageCatalogue.h"

#include <span>

namespace Quillmere {

namespace {

/// What a path of the table is relative to.
enum class Origin { Library, Home, AndroidSdk };

struct PathRow
{
    Origin origin;
    const char *path;
};

struct GroupRow
{
    QStringView name;
    QStringView localizedNameKey;
    QStringView descriptionKey;
    RiskLevel risk;
    QStringView icon;
    std::span<const PathRow> paths;
};

constexpr PathRow xcodeBuilds[] = {
    {Origin::Library, "Developer/Xcode/DerivedData"},
    {Origin::Library, "Developer/Xcode/DocumentationCache"},
    {Origin::Library, "Caches/com.apple.dt.Xcode"},
    {Origin::Library, "Caches/org.swift.swiftpm"},
    {Origin::Home, ".swiftpm/cache"},
};

constexpr PathRow visualStudioCode[] = {
    {Origin::Library, "Application Support/Code/Cache"},
    {Origin::Library, "Application Support/Code/CachedData"},
    {Origin::Library, "Application Support/Code/Code Cache"},
    {Origin::Library, "Application Support/Code/GPUCache"},
    {Origin::Library, "Application Support/Code/logs"},
    {Origin::Library, "Application Support/Code/CachedExtensionVSIXs"},
    {Origin::Library, "Application Support/Code/Service Worker/CacheStorage"},
};

constexpr PathRow xcodeSupport[] = {
    {Origin::Library, "Developer/Xcode/iOS DeviceSupport"},
    {Origin::Library, "Developer/Xcode/watchOS DeviceSupport"},
    {Origin::Library, "Developer/Xcode/tvOS DeviceSupport"},
    {Origin::Library, "Developer/Xcode/Archives"},
};

constexpr PathRow java[] = {
    {Origin::Home, ".gradle/caches"},        {Origin::Home, ".gradle/daemon"},        {Origin::Home, ".gradle/native"},
    {Origin::Home, ".gradle/notifications"}, {Origin::Home, ".gradle/wrapper/dists"}, {Origin::Home, ".m2/repository"},
};

constexpr PathRow languages[] = {
    {Origin::Library, "Caches/pip"},    {Origin::Home, ".cache/pip"},
    {Origin::Home, ".npm/_cacache"},    {Origin::Library, "Caches/Yarn"},
    {Origin::Library, "pnpm/store"},    {Origin::Library, "Caches/go-build"},
    {Origin::Home, "go/pkg/mod/cache"}, {Origin::Home, ".cargo/registry/cache"},
    {Origin::Home, ".cargo/git/db"},    {Origin::Library, "Caches/CocoaPods"},
    {Origin::Home, ".cocoapods/repos"},
};

constexpr PathRow androidTemporary[] = {
    {Origin::AndroidSdk, ".temp"},
    {Origin::AndroidSdk, "temp"},
};

constexpr PathRow emulators[] = {
    {Origin::Library, "Developer/CoreSimulator/Devices"},
    {Origin::Home, ".android/avd"},
    {Origin::AndroidSdk, "system-images"},
};

constexpr PathRow media[] = {
    {Origin::Library, "Caches/com.apple.FinalCut"},
    {Origin::Library, "Caches/com.blackmagic-design.DaVinciResolve"},
    {Origin::Library, "Caches/com.unity3d.UnityEditor5.x"},
    {Origin::Library, "Application Support/Epic/UnrealEngine/Common/DerivedDataCache"},
};

// The caches and logs of the development environments have no paths of their own: see versionedFolders().
constexpr QStringView jetBrainsName = u"Android Studio and JetBrains Caches";

constexpr GroupRow rows[] = {
    {u"Xcode Build Caches", u"developer.xcode.name", u"developer.xcode.description", RiskLevel::Medium, u"hammer.fill",
     xcodeBuilds},
    {u"Visual Studio Code Caches", u"developer.vscode.name", u"developer.vscode.description", RiskLevel::Safe,
     u"chevron.left.forwardslash.chevron.right", visualStudioCode},
    {u"Xcode Device Support and Archives", u"developer.xcodeSupport.name", u"developer.xcodeSupport.description",
     RiskLevel::High, u"archivebox.fill", xcodeSupport},
    {jetBrainsName,
     u"developer.jetbrains.name",
     u"developer.jetbrains.description",
     RiskLevel::Medium,
     u"brain.head.profile",
     {}},
    {u"Java Gradle and Maven Caches", u"developer.java.name", u"developer.java.description", RiskLevel::Medium,
     u"cup.and.saucer.fill", java},
    {u"Language and Package Manager Caches", u"developer.languages.name", u"developer.languages.description",
     RiskLevel::Medium, u"terminal.fill", languages},
    {u"Android SDK Temporary Files", u"developer.androidSDK.name", u"developer.androidSDK.description", RiskLevel::Safe,
     u"wrench.adjustable.fill", androidTemporary},
    {u"Smartphone Simulators and System Images", u"developer.emulators.name", u"developer.emulators.description",
     RiskLevel::High, u"iphone.gen3", emulators},
    {u"Media and Game Development Caches", u"developer.media.name", u"developer.media.description", RiskLevel::Medium,
     u"film.stack.fill", media},
};

/// The Android SDKs that there are, each once.
QList<FilePath> androidSdkRoots(const DeveloperStorageLookup &lookup)
{
    QList<FilePath> roots = {lookup.library().appending("Android/sdk")};
    for (const char *variable : {"ANDROID_HOME", "ANDROID_SDK_ROOT"}) {
        if (const std::optional<FilePath> root = lookup.environmentLocation(variable))
            roots.append(*root);
    }
    return lookup.existingUnique(roots);
}

/// Each version of a development environment keeps one folder of caches and one of logs.
QList<FilePath> versionedFolders(const DeveloperStorageLookup &lookup)
{
    const FilePath library = lookup.library();
    return lookup.matchingChildren(library.appending("Caches/Google"), "AndroidStudio")
        + lookup.matchingChildren(library.appending("Logs/Google"), "AndroidStudio")
        + lookup.matchingChildren(library.appending("Caches/JetBrains"))
        + lookup.matchingChildren(library.appending("Logs/JetBrains"));
}

/// The rows below the Android SDKs stand together, and are gone through for one SDK after the other.
QList<FilePath> pathsOf(const GroupRow &row, const DeveloperStorageLookup &lookup, const QList<FilePath> &sdkRoots)
{
    QList<FilePath> paths;
    for (const PathRow &path : row.paths) {
        if (path.origin == Origin::Library)
            paths.append(lookup.library().appending(path.path));
        else if (path.origin == Origin::Home)
            paths.append(lookup.home().appending(path.path));
    }
    for (const FilePath &root : sdkRoots) {
        for (const PathRow &path : row.paths) {
            if (path.origin == Origin::AndroidSdk)
                paths.append(root.appending(path.path));
        }
    }
    return paths;
}

} // namespace

QList<CleanupGroup> cleanupGroups(const DeveloperStorageLookup &lookup)
{
    const QList<FilePath> sdkRoots = androidSdkRoots(lookup);
    QList<CleanupGroup> groups;
    for (const GroupRow &row : rows) {
        groups.append({row.name.toString(), row.localizedNameKey.toString(), row.descriptionKey.toString(), row.risk,
                       row.icon.toString(),
                       row.name == jetBrainsName ? versionedFolders(lookup) : pathsOf(row, lookup, sdkRoots)});
    }
    return groups;
}

} // namespace Quillmere
