#include "Fakes/InstalledLocalizer.h"
#include "Platform/Linux/Files/LinuxFileManager.h"
#include "Platform/Linux/Places/LinuxPlaces.h"
#include "Platform/Linux/Programs/LinuxProcessRunner.h"
#include "Platform/Linux/TemporaryHome.h"
#include "Services/CleanupService.h"
#include "Services/DeveloperStorageService.h"

#include <QFile>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

using namespace Quillmere;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

/// A developer's home that really stands on a disk.
class DeveloperStorageOnDiskTest : public testing::Test
{
protected:
    [[nodiscard]] DeveloperStorageService service() const
    {
        return {m_files, std::make_shared<LinuxPlaces>(m_files, environment()),
                std::make_shared<LinuxProcessRunner>(m_disk.path("helpers")), environment()};
    }
    [[nodiscard]] BaseDirectories::Environment environment() const
    {
        return [this](const char *name) { return m_variables.value(name); };
    }

    void addTree(const QByteArray &folder, int kilobytes = 64) const
    {
        m_disk.addFile("home/" + folder + "/data", QByteArray(kilobytes * 1024, 'x'));
    }

    [[nodiscard]] QList<CleanupCategory> scan()
    {
        ScannerService scanner(m_files, std::make_shared<LinuxPlaces>(m_files, environment()));
        return service().scanCleanupCategories(scanner);
    }

    /// Relative to the home.
    [[nodiscard]] static QList<QByteArray> paths(const QList<CleanupCategory> &categories, const FilePath &home)
    {
        QList<QByteArray> paths;
        for (const CleanupCategory &category : categories) {
            for (const CleanupItem &item : category.items)
                paths.append(item.path.bytes().sliced(home.bytes().size() + 1));
        }
        return paths;
    }
    [[nodiscard]] QList<QByteArray> offered() { return paths(scan(), m_disk.path("home")); }

    void addProgram(const QByteArray &relative, const QByteArray &text) const
    {
        const FilePath path = m_disk.addFile("home/" + relative, "#!/bin/sh\n" + text);
        ::chmod(path.bytes().constData(), 0700);
    }

    /// What the inventory says of the places in this home.
    [[nodiscard]] QStringList inventory()
    {
        ScannerService scanner(m_files, std::make_shared<LinuxPlaces>(m_files, environment()));
        const std::optional<CleanupCategory> category = service().scanInstalledTools(scanner);
        QStringList names;
        for (const CleanupItem &item : category.value_or(CleanupCategory()).items) {
            if (item.path.isWithin(m_disk.path("home")))
                names.append(item.name);
        }
        return names;
    }

    InstalledLocalizer m_localizer;
    TemporaryHome m_disk;
    QHash<QByteArray, QByteArray> m_variables;
    std::shared_ptr<LinuxFileManager> m_files = std::make_shared<LinuxFileManager>(m_disk.environment());
};

} // namespace

TEST_F(DeveloperStorageOnDiskTest, FindsNothingInANewHome)
{
    EXPECT_THAT(offered(), IsEmpty());
}

TEST_F(DeveloperStorageOnDiskTest, CleansWhatItOffersAndNothingBeside)
{
    for (const char *folder :
         {"Library/Developer/Xcode/DerivedData", ".config/VSCodium/CachedData", ".gradle/caches", ".cache/pip",
          ".cargo/registry/cache", ".cargo/registry/src", "Android/Sdk/.temp", ".android/avd",
          ".cache/JetBrains/Rider2026.1/index", ".config/Epic/UnrealEngine/Common/DerivedDataCache"})
        addTree(folder);
    const QByteArrayList kept
        = {"home/.cargo/credentials.toml", "home/.gradle/gradle.properties", "home/.config/VSCodium/User/settings.json",
           "home/.cache/JetBrains/Rider2026.1/LocalHistory/changes", "home/Android/Sdk/platforms/one"};
    for (const QByteArray &file : kept)
        m_disk.addFile(file, "precious");

    const QList<CleanupCategory> categories = scan();
    const auto places = std::make_shared<LinuxPlaces>(m_files, environment());
    QList<CleanupItem> items;
    for (const CleanupCategory &category : categories)
        items += category.items;
    const CleanupResult result = CleanupService(m_files, places).cleanItems(items, true, [](double) {});

    EXPECT_EQ(categories.size(), 8);
    EXPECT_EQ(result.filesRemoved, 10);
    EXPECT_THAT(result.errors, IsEmpty());
    EXPECT_THAT(offered(), IsEmpty());
    for (const QByteArray &file : kept)
        EXPECT_EQ(m_disk.contents(file), "precious") << file.constData();
    EXPECT_EQ(m_disk.names("home/.local/share/Trash/files").size(), 10);
}

TEST_F(DeveloperStorageOnDiskTest, CleansInAHomeThatIsALink)
{
    addTree(".gradle/caches");
    m_disk.addLink("door", "home");
    UserEnvironment environment = m_disk.environment();
    environment.home = m_disk.path("door");
    m_files = std::make_shared<LinuxFileManager>(environment);

    const QList<CleanupCategory> categories = scan();

    ASSERT_THAT(paths(categories, m_disk.path("home")), ElementsAre(".gradle/caches"));
    const CleanupService cleaner(m_files, std::make_shared<LinuxPlaces>(m_files, this->environment()));
    EXPECT_EQ(cleaner.cleanItems(categories.first().items, true, [](double) {}).filesRemoved, 1);
    EXPECT_FALSE(m_disk.exists("home/.gradle/caches"));
}

TEST_F(DeveloperStorageOnDiskTest, MeasuresAnSdkOnceThatAllVariablesName)
{
    addTree("Library/Android/sdk/.temp");
    addTree("Library/Android/sdk/system-images");
    m_disk.addLink("home/sdk", "Library/Android/sdk");
    m_variables = {{"ANDROID_HOME", m_disk.path("home/Library/Android/sdk").bytes()},
                   {"ANDROID_SDK_ROOT", m_disk.path("home/sdk").bytes()}};

    EXPECT_THAT(offered(), ElementsAre("Library/Android/sdk/.temp", "Library/Android/sdk/system-images"));
}

TEST_F(DeveloperStorageOnDiskTest, CountsVariablesThatAreEmptyRelativeOrLeadInACircleAsNothing)
{
    addTree("Library/Android/sdk/.temp");
    m_disk.addLink("home/one", "two");
    m_disk.addLink("home/two", "one");
    for (const QByteArray &value :
         {QByteArray(), QByteArray("home"), QByteArray("."), m_disk.path("home/one").bytes()}) {
        m_variables = {{"ANDROID_HOME", value}, {"ANDROID_SDK_ROOT", m_disk.path("home/two").bytes()}};
        EXPECT_THAT(offered(), ElementsAre("Library/Android/sdk/.temp")) << value.constData();
    }
}

TEST_F(DeveloperStorageOnDiskTest, OffersNothingOfAnSdkThatIsSaidToBeTheHomeItself)
{
    addTree("temp");
    addTree(".temp");
    addTree("system-images");
    m_disk.addLink("door", "home");
    m_disk.addLink("root", "/");
    m_variables = {{"ANDROID_HOME", m_disk.path("door").bytes()}, {"ANDROID_SDK_ROOT", m_disk.path("root").bytes()}};
    EXPECT_THAT(offered(), IsEmpty());

    m_variables = {{"ANDROID_HOME", m_disk.path("home").bytes()}, {"ANDROID_SDK_ROOT", "/"}};

    EXPECT_THAT(offered(), IsEmpty());
}

TEST_F(DeveloperStorageOnDiskTest, TakesTwoThousandVersionsInOneFolder)
{
    const int versions = 2'000;
    for (int i = 0; i < versions; ++i)
        m_disk.addFolder("home/Library/Caches/JetBrains/Rider" + QByteArray::number(i));
    addTree("Library/Caches/JetBrains/Rider1711");

    EXPECT_THAT(offered(), ElementsAre("Library/Caches/JetBrains/Rider1711"));
}

TEST_F(DeveloperStorageOnDiskTest, PassesOverWhatItMayNotRead)
{
    addTree(".gradle/caches");
    addTree(".m2/repository");
    ::chmod(m_disk.path("home/.m2/repository").bytes().constData(), 0);

    // Whoever runs the tests as root may read it all the same.
    if (::geteuid() == 0)
        EXPECT_THAT(offered(), ElementsAre(".gradle/caches", ".m2/repository"));
    else
        EXPECT_THAT(offered(), ElementsAre(".gradle/caches"));
}

TEST_F(DeveloperStorageOnDiskTest, NamesWhatIsInstalledWithTheLineThatItPrints)
{
    addTree(".rustup");
    addProgram(".cargo/bin/rustc", "echo; echo \"rustc of $1\" >&2; echo more; exit 1");

    EXPECT_THAT(inventory(), ElementsAre(u"Rust toolchains"_qs, u"Rust — rustc of --version"_qs));
}

TEST_F(DeveloperStorageOnDiskTest, SaysInstalledOfAProgramThatHangsAndLeavesNothingBehind)
{
    addProgram(".cargo/bin/rustc", "echo $$ > \"$0.pid\"; trap '' TERM; while :; do sleep 0.05; done");

    EXPECT_THAT(inventory(), ElementsAre(u"Rust — installed"_qs));
    const QByteArray pid = m_disk.contents("home/.cargo/bin/rustc.pid").trimmed();
    ASSERT_FALSE(pid.isEmpty());
    EXPECT_FALSE(QFile::exists(u"/proc/"_qs + QString::fromLatin1(pid)));
}

TEST_F(DeveloperStorageOnDiskTest, NamesAProgramAloneThatPrintsNothingOrNoText)
{
    addProgram(".cargo/bin/rustc", "exit 0");
    addProgram("development/flutter/bin/flutter", "printf 'flutter \\377\\376\\n'");

    EXPECT_THAT(inventory(), ElementsAre(u"Flutter SDK"_qs, u"Rust"_qs, u"Flutter"_qs));
}

TEST_F(DeveloperStorageOnDiskTest, NamesAProgramAloneThatCannotBeStarted)
{
    const FilePath path = m_disk.addFile("home/.cargo/bin/rustc", "#!/nonexistent/interpreter\n");
    ::chmod(path.bytes().constData(), 0700);

    EXPECT_THAT(inventory(), ElementsAre(u"Rust"_qs));
}

TEST_F(DeveloperStorageOnDiskTest, DoesNotWaitForWhatAProgramLeavesBehind)
{
    ASSERT_EQ(::mkfifo(m_disk.path("home/fifo").bytes().constData(), 0600), 0);
    addProgram(".cargo/bin/rustc", "(read line < '" + m_disk.path("home/fifo").bytes() + "') & echo rustc 1.91");

    EXPECT_THAT(inventory(), ElementsAre(u"Rust — rustc 1.91"_qs));

    QFile line(m_disk.path("home/fifo").displayText());
    EXPECT_TRUE(line.open(QIODevice::WriteOnly));
}
