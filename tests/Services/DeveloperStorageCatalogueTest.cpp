#include "Services/DeveloperStorageCatalogue.h"
#include "Services/DeveloperStorageFixture.h"

#include <gmock/gmock.h>

using namespace Quillmere;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

struct ExpectedGroup
{
    const char *title;
    int index;
    QString name;
    QString localizedName;
    QString description;
    RiskLevel risk;
    QString icon;
    QList<QByteArray> paths; ///< Below the home.
};

class DeveloperStorageCatalogueTest : public DeveloperStorageFixture
{
protected:
    [[nodiscard]] QList<FilePath> pathsOf(int group) const { return cleanupGroups(lookup()).at(group).paths; }
};

class DeveloperStorageGroupTest : public DeveloperStorageFixture, public testing::WithParamInterface<ExpectedGroup>
{
};

} // namespace

TEST_P(DeveloperStorageGroupTest, IsAsTheCatalogueSays)
{
    const ExpectedGroup &expected = GetParam();
    const QList<CleanupGroup> groups = cleanupGroups(lookup());
    ASSERT_EQ(groups.size(), 9);
    const CleanupGroup &group = groups.at(expected.index);

    EXPECT_EQ(group.name, expected.name);
    EXPECT_EQ(localizer->localized(group.localizedNameKey), expected.localizedName);
    EXPECT_EQ(localizer->localized(group.descriptionKey), expected.description);
    EXPECT_EQ(group.risk, expected.risk);
    EXPECT_EQ(group.icon, expected.icon);
    QList<FilePath> paths;
    for (const QByteArray &path : expected.paths)
        paths.append(home.appending(path));
    EXPECT_EQ(group.paths, paths);
}

INSTANTIATE_TEST_SUITE_P(
    Groups, DeveloperStorageGroupTest,
    testing::Values(
        ExpectedGroup{"XcodeBuilds",
                      0,
                      u"Xcode Build Caches"_qs,
                      u"Xcode build caches"_qs,
                      u"Derived data, documentation and Swift package caches. Xcode rebuilds them when needed."_qs,
                      RiskLevel::Medium,
                      u"hammer.fill"_qs,
                      {"Library/Developer/Xcode/DerivedData", "Library/Developer/Xcode/DocumentationCache",
                       "Library/Caches/com.apple.dt.Xcode", "Library/Caches/org.swift.swiftpm", ".swiftpm/cache"}},
        ExpectedGroup{
            "VisualStudioCode",
            1,
            u"Visual Studio Code Caches"_qs,
            u"Visual Studio Code caches"_qs,
            u"UI, extension-package and service-worker caches. Settings and installed extensions are kept."_qs,
            RiskLevel::Safe,
            u"chevron.left.forwardslash.chevron.right"_qs,
            {"Library/Application Support/Code/Cache", "Library/Application Support/Code/CachedData",
             "Library/Application Support/Code/Code Cache", "Library/Application Support/Code/GPUCache",
             "Library/Application Support/Code/logs", "Library/Application Support/Code/CachedExtensionVSIXs",
             "Library/Application Support/Code/Service Worker/CacheStorage"}},
        ExpectedGroup{"XcodeSupport",
                      2,
                      u"Xcode Device Support and Archives"_qs,
                      u"Xcode device support and archives"_qs,
                      u"Old device-support symbols and app archives. Archives may contain important dSYMs, so review "
                      "before removal."_qs,
                      RiskLevel::High,
                      u"archivebox.fill"_qs,
                      {"Library/Developer/Xcode/iOS DeviceSupport", "Library/Developer/Xcode/watchOS DeviceSupport",
                       "Library/Developer/Xcode/tvOS DeviceSupport", "Library/Developer/Xcode/Archives"}},
        ExpectedGroup{"JetBrains",
                      3,
                      u"Android Studio and JetBrains Caches"_qs,
                      u"Android Studio and JetBrains caches"_qs,
                      u"IDE indexes, logs and temporary data. Projects and settings are kept."_qs,
                      RiskLevel::Medium,
                      u"brain.head.profile"_qs,
                      {}},
        ExpectedGroup{"Java",
                      4,
                      u"Java Gradle and Maven Caches"_qs,
                      u"Java, Gradle and Maven caches"_qs,
                      u"Build dependencies, Gradle distributions and daemon data; these will be downloaded or rebuilt "
                      "again."_qs,
                      RiskLevel::Medium,
                      u"cup.and.saucer.fill"_qs,
                      {".gradle/caches", ".gradle/daemon", ".gradle/native", ".gradle/notifications",
                       ".gradle/wrapper/dists", ".m2/repository"}},
        ExpectedGroup{"Languages",
                      5,
                      u"Language and Package Manager Caches"_qs,
                      u"Language and package-manager caches"_qs,
                      u"Python, Node.js, Go, Rust and CocoaPods download/build caches."_qs,
                      RiskLevel::Medium,
                      u"terminal.fill"_qs,
                      {"Library/Caches/pip", ".cache/pip", ".npm/_cacache", "Library/Caches/Yarn", "Library/pnpm/store",
                       "Library/Caches/go-build", "go/pkg/mod/cache", ".cargo/registry/cache", ".cargo/git/db",
                       "Library/Caches/CocoaPods", ".cocoapods/repos"}},
        ExpectedGroup{"AndroidTemporary",
                      6,
                      u"Android SDK Temporary Files"_qs,
                      u"Android SDK temporary files"_qs,
                      u"Incomplete SDK downloads and temporary files. Installed platforms and tools are kept."_qs,
                      RiskLevel::Safe,
                      u"wrench.adjustable.fill"_qs,
                      {}},
        ExpectedGroup{"Emulators",
                      7,
                      u"Smartphone Simulators and System Images"_qs,
                      u"Smartphone simulators and system images"_qs,
                      u"iOS/Android virtual devices, their user data and Android system images. Removing these "
                      "requires recreating or downloading them."_qs,
                      RiskLevel::High,
                      u"iphone.gen3"_qs,
                      {"Library/Developer/CoreSimulator/Devices", ".android/avd"}},
        ExpectedGroup{"Media",
                      8,
                      u"Media and Game Development Caches"_qs,
                      u"Media and game-development caches"_qs,
                      u"Regenerable Final Cut, DaVinci Resolve, Unity and Unreal Engine caches. Sony VEGAS is "
                      "detected on Windows."_qs,
                      RiskLevel::Medium,
                      u"film.stack.fill"_qs,
                      {"Library/Caches/com.apple.FinalCut", "Library/Caches/com.blackmagic-design.DaVinciResolve",
                       "Library/Caches/com.unity3d.UnityEditor5.x",
                       "Library/Application Support/Epic/UnrealEngine/Common/DerivedDataCache"}}),
    [](const auto &info) { return info.param.title; });

TEST_F(DeveloperStorageCatalogueTest, NamesEachVersionOfADevelopmentEnvironmentAndNothingHidden)
{
    for (const char *folder :
         {"Caches/Google/AndroidStudio2025.1", "Caches/Google/Chrome", "Caches/Google/androidstudio",
          "Logs/Google/AndroidStudio2026.1", "Caches/JetBrains/IntelliJIdea2026.2", "Caches/JetBrains/.hidden",
          "Logs/JetBrains/PyCharm2026.2"})
        machine.files->addFolder(library.appending(folder));

    EXPECT_THAT(pathsOf(3),
                ElementsAre(library.appending("Caches/Google/AndroidStudio2025.1"),
                            library.appending("Logs/Google/AndroidStudio2026.1"),
                            library.appending("Caches/JetBrains/IntelliJIdea2026.2"),
                            library.appending("Logs/JetBrains/PyCharm2026.2")));
}

TEST_F(DeveloperStorageCatalogueTest, LooksInEveryAndroidSdkThatThereIs)
{
    machine.files->addFolder(library.appending("Android/sdk"));
    machine.files->addFolder(FilePath("/opt/sdk"));
    machine.variables->insert("ANDROID_HOME", "/opt/sdk");
    machine.variables->insert("ANDROID_SDK_ROOT", "/opt/missing");
    const FilePath usual = library.appending("Android/sdk");

    EXPECT_THAT(pathsOf(6),
                ElementsAre(usual.appending(".temp"), usual.appending("temp"), FilePath("/opt/sdk/.temp"),
                            FilePath("/opt/sdk/temp")));
    EXPECT_EQ(pathsOf(7).mid(2), QList({usual.appending("system-images"), FilePath("/opt/sdk/system-images")}));
}

TEST_F(DeveloperStorageCatalogueTest, TakesBothVariablesThatNameTheUsualSdkForOneRoot)
{
    const FilePath usual = library.appending("Android/sdk");
    machine.files->addFolder(usual);
    machine.variables->insert("ANDROID_HOME", usual.bytes());
    machine.variables->insert("ANDROID_SDK_ROOT", usual.bytes() + "/../sdk/");

    EXPECT_THAT(pathsOf(6), ElementsAre(usual.appending(".temp"), usual.appending("temp")));
    EXPECT_EQ(pathsOf(7).size(), 3);
}

TEST_F(DeveloperStorageCatalogueTest, TakesVariablesThatAreLinksToOneSdkForOneRoot)
{
    machine.files->addFolder(FilePath("/opt/sdk"));
    machine.files->addLink(FilePath("/opt/one"), FilePath("/opt/two"));
    machine.files->addLink(FilePath("/opt/two"), FilePath("/opt/sdk"));
    machine.variables->insert("ANDROID_HOME", "/opt/one");
    machine.variables->insert("ANDROID_SDK_ROOT", "/opt/two");

    EXPECT_THAT(pathsOf(6), ElementsAre(FilePath("/opt/one/.temp"), FilePath("/opt/one/temp")));
}

TEST_F(DeveloperStorageCatalogueTest, TakesLinksThatGoRoundForNoSdk)
{
    machine.files->addLink(FilePath("/opt/one"), FilePath("/opt/two"));
    machine.files->addLink(FilePath("/opt/two"), FilePath("/opt/one"));
    machine.variables->insert("ANDROID_HOME", "/opt/one");
    machine.variables->insert("ANDROID_SDK_ROOT", "/opt/two");

    EXPECT_THAT(pathsOf(6), IsEmpty());
}

TEST_F(DeveloperStorageCatalogueTest, CountsAVariableThatIsEmptyAsNotSet)
{
    machine.variables->insert("ANDROID_HOME", "");

    EXPECT_EQ(lookup().environmentLocation("ANDROID_HOME"), std::nullopt);
    EXPECT_EQ(lookup().environmentLocation("ANDROID_SDK_ROOT"), std::nullopt);
    EXPECT_THAT(pathsOf(6), IsEmpty());
}

TEST_F(DeveloperStorageCatalogueTest, TakesARelativeTextBelowTheRootAndNotBelowItsOwnFolder)
{
    machine.variables->insert("ANDROID_HOME", "sdk");

    EXPECT_EQ(lookup().environmentLocation("ANDROID_HOME"), FilePath("/sdk"));
    EXPECT_THAT(pathsOf(6), IsEmpty());
}

TEST_F(DeveloperStorageCatalogueTest, KeepsTheFirstWayToAPlaceAsItIsWritten)
{
    machine.files->addFolder(home.appending("real"));
    machine.files->addLink(home.appending("link"), home.appending("real"));
    machine.files->addLink(home.appending("dangling"), home.appending("nowhere"));

    EXPECT_THAT(lookup().existingUnique({home.appending("missing"), home.appending("link"), home.appending("dangling"),
                                         home.appending("real"), home.appending("./real")}),
                ElementsAre(home.appending("link")));
}

TEST_F(DeveloperStorageCatalogueTest, ListsNothingOfAFolderThatCannotBeRead)
{
    machine.files->addFolder(library.appending("Caches/JetBrains/Rider2026.1"));
    machine.files->lock(library.appending("Caches/JetBrains"));

    EXPECT_THAT(pathsOf(3), IsEmpty());
}
