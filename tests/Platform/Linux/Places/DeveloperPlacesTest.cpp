#include "Fakes/PretendFileManager.h"
#include "Platform/Linux/Places/LinuxPlaces.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace Quillmere;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

const QString jetBrains = u"Android Studio and JetBrains Caches"_qs;
const QString languages = u"Language and Package Manager Caches"_qs;
const QStringList cleanupLists = {
    u"Xcode Build Caches"_qs,
    u"Visual Studio Code Caches"_qs,
    jetBrains,
    u"Java Gradle and Maven Caches"_qs,
    languages,
    u"Android SDK Temporary Files"_qs,
    u"Smartphone Simulators and System Images"_qs,
    u"Media and Game Development Caches"_qs,
};

/// Where @p base is while no variable is set but those without a usual place, which lead below /data.
FilePath usualPlace(const QByteArray &base)
{
    static const QHash<QByteArray, FilePath> folders = {
        {"", FilePath("/")},
        {"~", pretendHome},
        {"$cache", pretendHome.appending(".cache")},
        {"$config", pretendHome.appending(".config")},
        {"$data", pretendHome.appending(".local/share")},
        {"$state", pretendHome.appending(".local/state")},
    };
    if (folders.contains(base))
        return folders[base];
    for (const PlacesData::Variable &variable : PlacesData::builtIn().variables) {
        if (variable.name == base && !variable.usual)
            return FilePath("/data").appending(base.mid(1));
        if (variable.name == base)
            return usualPlace(variable.usual->base).appending(variable.usual->names.join('/'));
    }
    ADD_FAILURE() << base.constData();
    return {};
}

FilePath example(const PlacesData::ListRow &row)
{
    return usualPlace(row.place.base).appending(row.place.names.join('/').replace("*", "any")).standardized();
}

/// A disk with nothing on it, and the places as a program with these variables sees them.
struct DeveloperWorld
{
    std::shared_ptr<PretendFileManager> disk = std::make_shared<PretendFileManager>(pretendHome);
    QHash<QByteArray, QByteArray> variables;

    void add(const PlacesData::ListRow &row)
    {
        disk->addFile(example(row).appending("data"), 10);
        if (!row.holds.isEmpty())
            disk->addFile(example(row).appending(row.holds), 1);
    }
    [[nodiscard]] LinuxPlaces places() const
    {
        return LinuxPlaces(disk, [this](const char *name) { return variables.value(name); });
    }
    [[nodiscard]] QList<FilePath> found(const QString &list) const
    {
        QList<FilePath> paths;
        for (const PlaceEntry &entry : places().entriesBehind(list))
            paths.append(entry.path);
        return paths;
    }
};

} // namespace

TEST(DeveloperPlacesTest, OffersEachOfItsRowsWhereTheToolsHaveNotBeenMoved)
{
    for (const QString &list : cleanupLists) {
        const QList<PlacesData::ListRow> rows = PlacesData::builtIn().lists.value(list);
        EXPECT_FALSE(rows.isEmpty()) << list.toStdString();
        for (const PlacesData::ListRow &row : rows) {
            DeveloperWorld world;
            for (const PlacesData::Variable &variable : PlacesData::builtIn().variables) {
                if (!variable.usual)
                    world.variables[variable.name.mid(1)] = usualPlace(variable.name).bytes();
            }
            world.add(row);
            EXPECT_THAT(world.found(list), Contains(example(row)));
            EXPECT_EQ(world.places().reasonToKeep(example(row)), std::nullopt) << example(row).bytes().constData();
        }
    }
}

TEST(DeveloperPlacesTest, NamesAllThatItListsAsInstalled)
{
    const QList<PlacesData::ListRow> rows = PlacesData::builtIn().lists.value(u"Installed Developer Tools and SDKs"_qs);
    ASSERT_FALSE(rows.isEmpty());
    DeveloperWorld world;
    for (const PlacesData::ListRow &row : rows)
        world.add(row);

    const QList<PlaceEntry> entries = world.places().entriesBehind(u"Installed Developer Tools and SDKs"_qs);

    EXPECT_GT(entries.size(), 40);
    for (const PlaceEntry &entry : entries)
        EXPECT_FALSE(entry.name.isEmpty() || entry.name.contains(u'*')) << entry.path.bytes().constData();
}

TEST(DeveloperPlacesTest, KnowsWhereEachLanguagesProgramStands)
{
    for (const char *language : {"Python", "Java", "Go", "Node.js", "Rust", "Ruby", "PHP", "Flutter"}) {
        const QString list = QString::fromLatin1(language) + u" Runtime"_qs;
        const QList<PlacesData::ListRow> rows = PlacesData::builtIn().lists.value(list);
        ASSERT_FALSE(rows.isEmpty()) << language;
        DeveloperWorld world;
        world.disk->addFile(example(rows.first()), 10);
        EXPECT_THAT(world.found(list), ElementsAre(example(rows.first()))) << language;
    }
}

TEST(DeveloperPlacesTest, OffersNothingThatMayBeTheOnlyCopy)
{
    DeveloperWorld world;
    for (const QString &list : cleanupLists) {
        for (const PlacesData::ListRow &row : PlacesData::builtIn().lists.value(list))
            world.add(row);
    }
    const char *precious[] = {
        ".cache/JetBrains/any/LocalHistory/changes.storageData",
        ".cache/JetBrains/any/caches/content.dat",
        ".cache/Google/AndroidStudioany/LocalHistory/changes.storageData",
        ".cache/JetBrains/any/terminal/history",
        ".cache/pypoetry/virtualenvs/app/bin/python",
        ".cache/ms-playwright/mcp-profile/Cookies",
        ".cargo/credentials.toml",
        ".cargo/bin/tool",
        ".conan2/remotes.json",
        ".config/Code/User/settings.json",
        ".config/Code/Backups/unsaved",
        ".config/Code/User/History/one",
        ".config/VSCodium/User/workspaceStorage/one",
        ".config/unity3d/Unity/licenses/one",
        ".gradle/gradle.properties",
        ".gradle/init.d/mine.gradle",
        ".local/share/DaVinciResolve/Resolve Projects/one",
        ".local/share/NuGet/plugins/one",
        ".m2/settings.xml",
        ".m2/settings-security.xml",
        ".nuget/NuGet/NuGet.Config",
        ".pub-cache/credentials.json",
        ".rustup/toolchains/stable/bin/rustc",
        ".npmrc",
        ".android/adbkey",
        ".android/debug.keystore",
        "Android/Sdk/platforms/android-36/android.jar",
        "go/src/mine/main.go",
        "go/bin/tool",
        ".composer/auth.json",
    };
    for (const char *file : precious)
        world.disk->addFile(pretendHome.appending(file), 10);

    for (const QString &list : cleanupLists) {
        for (const FilePath &path : world.found(list)) {
            for (const char *file : precious)
                EXPECT_FALSE(pretendHome.appending(file).isWithin(path)) << path.bytes().constData();
        }
    }
}

TEST(DeveloperPlacesTest, KeepsAVersionsLocalHistoryAndWhatItHangsOn)
{
    DeveloperWorld world;
    for (const char *folder : {"index", "log", "caches", "LocalHistory", "projects"})
        world.disk->addFile(pretendHome.appending(".cache/JetBrains/Rider2026.1").appending(folder).appending("data"),
                            10);

    EXPECT_THAT(
        world.places().entriesBehind(jetBrains),
        ElementsAre(PlaceEntry{u"Rider2026.1 index"_qs, pretendHome.appending(".cache/JetBrains/Rider2026.1/index")},
                    PlaceEntry{u"Rider2026.1 log"_qs, pretendHome.appending(".cache/JetBrains/Rider2026.1/log")}));
}

TEST(DeveloperPlacesTest, NamesWhatItsLastAsteriskHasLedTo)
{
    DeveloperWorld world;
    world.disk->addFolder(pretendHome.appending(".var/app/com.jetbrains.Rider/cache/JetBrains/Rider2026.1/log"));
    world.disk->addFolder(FilePath("/usr/lib/go-1.24"));

    EXPECT_THAT(
        world.places().entriesBehind(jetBrains),
        ElementsAre(PlaceEntry{u"Rider2026.1 log"_qs,
                               pretendHome.appending(".var/app/com.jetbrains.Rider/cache/JetBrains/Rider2026.1/log")}));
    EXPECT_THAT(world.places().entriesBehind(u"Installed Developer Tools and SDKs"_qs),
                ElementsAre(PlaceEntry{u"go-1.24"_qs, FilePath("/usr/lib/go-1.24")}));
}

TEST(DeveloperPlacesTest, FollowsAToolsOwnVariableAndThoseBuiltOnIt)
{
    DeveloperWorld world;
    world.variables = {{"CARGO_HOME", "/data/cargo"}, {"GOPATH", "/data/go"}, {"UV_CACHE_DIR", "/data/uv"}};
    for (const char *path : {"/data/cargo/registry/cache", "/data/go/pkg/mod/cache/download", "/data/uv/wheels"})
        world.disk->addFolder(FilePath(path));
    EXPECT_THAT(world.found(languages),
                ElementsAre(FilePath("/data/go/pkg/mod/cache"), FilePath("/data/cargo/registry/cache")));

    world.disk->addFile(FilePath("/data/uv/CACHEDIR.TAG"), 43);
    EXPECT_THAT(world.found(languages), Contains(FilePath("/data/uv")));
}

TEST(DeveloperPlacesTest, FollowsTheFirstFolderAloneOfAListOfThem)
{
    DeveloperWorld world;
    world.variables = {{"GOPATH", "/data/one:/data/two"}};
    for (const char *path : {"/data/one/pkg/mod/cache/download", "/data/two/pkg/mod/cache/download"})
        world.disk->addFolder(FilePath(path));

    EXPECT_THAT(world.found(languages), ElementsAre(FilePath("/data/one/pkg/mod/cache")));
}

TEST(DeveloperPlacesTest, TakesNoFolderForACacheThatAVariableNamesByMistake)
{
    DeveloperWorld world;
    for (const char *path : {"/home/ada/Documents/letters", "/home/ada/Documents/work/cache",
                             "/home/ada/Documents/work/native", "/home/ada/Pictures/one", "/data/photos"})
        world.disk->addFolder(FilePath(path));
    for (const PlacesData::Variable &variable : PlacesData::builtIn().variables) {
        for (const char *value : {"/home/ada", "/home/ada/Documents", "/home/ada/Documents/work", "/home/ada/Pictures",
                                  "/", "/data", "data", ""}) {
            world.variables = {{variable.name.mid(1), value}};
            for (const QString &list : cleanupLists)
                EXPECT_THAT(world.found(list), IsEmpty()) << variable.name.constData() << ' ' << value;
        }
    }
}

TEST(DeveloperPlacesTest, KeepsWhatStandsInTheRootWhenAnSdkIsSaidToBeThere)
{
    const DeveloperWorld world;
    for (const char *path : {"/.temp", "/temp", "/system-images", "/home/ada/temp", "/home/ada/.temp"})
        EXPECT_NE(world.places().reasonToKeep(FilePath(path)), std::nullopt) << path;
}

TEST(DeveloperPlacesTest, LeavesACompilerCacheThatHoldsItsSettingsAndTakesItsPartsAlone)
{
    DeveloperWorld world;
    world.disk->addFile(pretendHome.appending(".cache/ccache/0/CACHEDIR.TAG"), 43);
    world.disk->addFile(pretendHome.appending(".cache/ccache/ccache.conf"), 20);

    EXPECT_NE(world.places().reasonToKeep(pretendHome.appending(".cache/ccache")), std::nullopt);
    EXPECT_EQ(world.places().reasonToKeep(pretendHome.appending(".cache/ccache/0")), std::nullopt);
    EXPECT_THAT(world.found(languages), Contains(pretendHome.appending(".cache/ccache/0")));
}
