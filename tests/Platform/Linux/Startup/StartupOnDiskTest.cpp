#include "Platform/Linux/ChildProcess.h"
#include "Platform/Linux/Files/LinuxFileManager.h"
#include "Platform/Linux/Startup/LinuxStartupEntries.h"
#include "Platform/Linux/TemporaryHome.h"
#include "Services/StartupService.h"
#include "Utilities/PropertyList.h"

#include <QRandomGenerator>

#include <gmock/gmock.h>

#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

using namespace Quillmere;

namespace {

const QByteArray agents = "home/Library/LaunchAgents/";
const char *const attribute = "user.quillmere.test";

QByteArray xml(const QByteArray &pairs)
{
    return "<?xml version=\"1.0\"?><plist version=\"1.0\"><dict>" + pairs + "</dict></plist>";
}

QByteArray variable(const QByteArray &name)
{
    return name == "XDG_CONFIG_DIRS" ? "/nowhere" : QByteArray();
}

class StartupOnDiskTest : public testing::Test
{
protected:
    [[nodiscard]] FilePath addAgent(const QByteArray &name, const QByteArray &pairs = {}) const
    {
        return home.addFile(agents + name, xml(pairs));
    }
    [[nodiscard]] StartupItem only() const
    {
        const QList<StartupItem> items = service.loadStartupItems();
        EXPECT_EQ(items.size(), 1);
        return items.value(0);
    }
    [[nodiscard]] QStringList names() const
    {
        QStringList found;
        for (const StartupItem &item : service.loadStartupItems())
            found.append(item.name);
        found.sort();
        return found;
    }
    [[nodiscard]] QByteArray whyNoAttributes() const
    {
        const FilePath probe = home.addFile("probe");
        return ::setxattr(probe.bytes().constData(), attribute, "x", 1, 0) == 0
            ? QByteArray()
            : "the file system keeps no extended attributes";
    }

    TemporaryHome home;
    const std::shared_ptr<LinuxFileManager> files = std::make_shared<LinuxFileManager>(home.environment());
    const std::shared_ptr<LinuxStartupEntries> entries = std::make_shared<LinuxStartupEntries>(
        files, [](const char *name) { return variable(name); }, QDBusConnection(u"no such connection"_qs),
        QList<QByteArray>(), QList<FilePath>());
    const StartupService service{files, entries};
};

/// A root of its own that holds all of this machine's folders and a folder for daemons, seen by this process alone.
bool enterRootWithDaemon(const FilePath &root, const QByteArray &daemon)
{
    for (const DirectoryEntry &entry :
         LinuxFileManager().contentsOfDirectory(FilePath("/"), HiddenFiles::Skip).value()) {
        const QByteArray place = root.appending(entry.path.lastPathComponent()).bytes();
        if (entry.type != EntryKind::Directory)
            continue;
        if (::mkdir(place.constData(), 0755) != 0
            || ::mount(entry.path.bytes().constData(), place.constData(), nullptr, MS_BIND | MS_REC, nullptr) != 0)
            return false;
    }
    const FilePath folder = root.appending("Library/LaunchDaemons");
    return LinuxFileManager().createDirectory(folder, Intermediates::Create)
        && LinuxFileManager().writeFile(folder.appending("d.plist"), daemon, WriteMode::Atomic)
        && ::chroot(root.bytes().constData()) == 0 && ::chdir("/") == 0;
}

} // namespace

TEST_F(StartupOnDiskTest, LeavesDisabledFalseInTheFileAfterTurningAnItemOffAndOnAgain)
{
    (void)addAgent("a.plist", "<key>Other</key><date>2024-01-02T03:04:05Z</date>");

    EXPECT_EQ(service.toggleItem(only(), false), std::nullopt);
    EXPECT_FALSE(only().isEnabled);
    EXPECT_EQ(service.toggleItem(only(), true), std::nullopt);

    EXPECT_TRUE(only().isEnabled);
    EXPECT_EQ(home.contents(agents + "a.plist"),
              PropertyList::read(xml("<key>Disabled</key><false/><key>Other</key><date>2024-01-02T03:04:05Z</date>"))
                  .value()
                  .written(PropertyList::Form::Xml));
    EXPECT_EQ(home.names(agents), QList<QByteArray>{"a.plist"});
}

TEST_F(StartupOnDiskTest, ReadsLabelsExtensionsAndTypesStrictly)
{
    (void)addAgent("capitals.PLIST");
    (void)addAgent("a number.plist", "<key>Label</key><integer>7</integer>");
    (void)addAgent("text.plist", "<key>Disabled</key><string>YES</string><key>Label</key><string>com.apple.x</string>");

    EXPECT_EQ(names(), (QStringList{u"a number"_qs, u"com.apple.x"_qs}));
    for (const StartupItem &item : service.loadStartupItems()) {
        EXPECT_TRUE(item.isEnabled);
        EXPECT_EQ(item.isSystemItem, item.name == u"com.apple.x"_qs);
        EXPECT_EQ(item.riskLevel, RiskLevel::Safe);
    }
}

TEST_F(StartupOnDiskTest, PassesOverWhatIsHostileWithoutWaiting)
{
    (void)addAgent("sound.plist");
    ASSERT_EQ(::mkfifo(home.path(agents + "pipe.plist").bytes().constData(), 0600), 0);
    home.addFolder(agents + "folder.plist");
    home.addLink(agents + "loop.plist", "loop.plist");
    home.addLink(agents + "dangling.plist", "nothing");
    home.addLink(agents + "device.plist", "/dev/zero");
    const FilePath huge = addAgent("huge.plist");
    ASSERT_EQ(::truncate(huge.bytes().constData(), 1LL << 30), 0);
    home.addFile(agents + "deep.plist", xml("<key>a</key>" + QByteArray("<array>").repeated(100'000)));
    home.addFile(agents + "entities.plist",
                 "<!DOCTYPE p [<!ENTITY a \"b\">]><plist><dict><key>&a;</key><true/></dict></plist>");
    home.addFile(agents + "bytes.plist", xml("<key>\xC3</key><true/>"));

    EXPECT_EQ(names(), QStringList{u"sound"_qs});

    StartupItem item = only();
    for (const char *name : {"pipe.plist", "folder.plist", "loop.plist", "device.plist", "huge.plist"}) {
        item.path = home.path(agents + name);
        const std::optional<StartupError> error = service.toggleItem(item, false);
        ASSERT_TRUE(error) << name;
        EXPECT_EQ(error->code, StartupError::CannotRead) << name;
    }
}

TEST_F(StartupOnDiskTest, KeepsTheRightsAndAttributesOfTheFile)
{
    QUILLMERE_NEED(whyNoAttributes());
    const FilePath file = addAgent("a.plist");
    ASSERT_EQ(::chmod(file.bytes().constData(), 0604), 0);
    ASSERT_EQ(::setxattr(file.bytes().constData(), attribute, "kept", 4, 0), 0);

    EXPECT_EQ(service.toggleItem(only(), false), std::nullopt);

    EXPECT_EQ(home.mode(agents + "a.plist"), 0604u);
    std::array<char, 16> value{};
    ASSERT_EQ(::getxattr(file.bytes().constData(), attribute, value.data(), value.size()), 4);
    EXPECT_STREQ(value.data(), "kept");
}

TEST_F(StartupOnDiskTest, KeepsTheOwnerWhereTheAdministratorSwitches)
{
    QUILLMERE_NEED(::geteuid() == 0 ? QByteArray() : "only the administrator gives files away");
    const FilePath file = addAgent("a.plist");
    ASSERT_EQ(::chown(file.bytes().constData(), 4711, 4712), 0);

    EXPECT_EQ(service.toggleItem(only(), false), std::nullopt);

    struct stat status = {};
    ASSERT_EQ(::stat(file.bytes().constData(), &status), 0);
    EXPECT_EQ(status.st_uid, 4711u);
    EXPECT_EQ(status.st_gid, 4712u);
}

TEST_F(StartupOnDiskTest, FailsWhereTheUserMayNotWriteTheFileThoughTheFolderIsTheirs)
{
    const FilePath file = addAgent("a.plist");
    ASSERT_EQ(::chmod(file.bytes().constData(), 0444), 0);
    inUnprivilegedChild(home.path(), [&] {
        ASSERT_EQ(::chmod(home.path(agents).bytes().constData(), 0755), 0);
        const std::optional<StartupError> error = service.toggleItem(only(), false);
        ASSERT_TRUE(error);
        EXPECT_EQ(error->code, StartupError::CannotWrite);
        EXPECT_TRUE(only().isEnabled);
    });
    EXPECT_EQ(home.contents(agents + "a.plist"), xml(""));
}

TEST_F(StartupOnDiskTest, FailsForADaemonAndLeavesItOnWhereAStandardUserSwitches)
{
    QUILLMERE_NEED(whyNoMountNamespace());
    QUILLMERE_NEED(::geteuid() == 0 ? QByteArray() : "only the administrator can make a folder for daemons");
    home.addFolder("root");
    inMountNamespace([&] {
        ASSERT_TRUE(mountTmpfs(home.path("root"), "size=1m"));
        ASSERT_TRUE(enterRootWithDaemon(home.path("root"), xml("<key>Label</key><string>org.example.d</string>")));
        ASSERT_EQ(::setresuid(65534, 65534, 65534), 0);

        const StartupItem daemon = only();
        EXPECT_EQ(daemon.name, u"org.example.d"_qs);
        EXPECT_EQ(daemon.type, StartupItemType::LaunchDaemon);
        EXPECT_EQ(daemon.riskLevel, RiskLevel::High);
        EXPECT_TRUE(daemon.isSystemItem);
        const std::optional<StartupError> error = service.toggleItem(daemon, false);

        ASSERT_TRUE(error);
        EXPECT_EQ(int(error->code), 2);
        EXPECT_EQ(error->description,
                  u"Failed to write plist at /Library/LaunchDaemons/d.plist. You may need "
                  u"administrative permissions."_qs);
        EXPECT_TRUE(only().isEnabled);
    });
}

TEST_F(StartupOnDiskTest, FindsTheOldFileOrTheNewOneWhereverASwitchWasKilled)
{
    const FilePath file = addAgent("a.plist", "<key>Other</key><data>" + QByteArray("AAEC").repeated(2000) + "</data>");
    const StartupItem item = only();
    ASSERT_EQ(service.toggleItem(item, false), std::nullopt);
    const QByteArray off = contentsOf(file);
    ASSERT_EQ(service.toggleItem(item, true), std::nullopt);
    const QByteArray on = contentsOf(file);
    ASSERT_NE(on, off);

    constexpr int kills = 500;
    constexpr int mostMicroseconds = 3000;
    QRandomGenerator random(1);
    int foundOff = 0;
    for (int kill = 0; kill < kills; ++kill) {
        const pid_t child = startChild([&] {
            for (bool enabled = false;; enabled = !enabled)
                (void)service.toggleItem(item, enabled);
        });
        ::usleep(static_cast<useconds_t>(random.bounded(mostMicroseconds)));
        killChild(child);

        const QByteArray found = contentsOf(file);
        ASSERT_TRUE(found == on || found == off) << "after kill " << kill << ": " << found.constData();
        foundOff += found == off ? 1 : 0;
    }
    // The kills did come while files were being replaced.
    EXPECT_GT(foundOff, 0);
    EXPECT_LT(foundOff, kills);
}

TEST_F(StartupOnDiskTest, ListsAndSwitchesTheDesktopsEntriesBehindItsOwn)
{
    (void)addAgent("a.plist");
    home.addFile("home/.config/autostart/c.desktop", "[Desktop Entry]\nType=Application\nName=Clock\nExec=clock\n");
    const QList<StartupItem> items = service.loadStartupItems();
    ASSERT_EQ(items.size(), 2);
    EXPECT_EQ(items.at(1).name, u"Clock"_qs);
    EXPECT_EQ(items.at(1).type, StartupItemType::LaunchAgent);

    EXPECT_EQ(service.toggleItem(items.at(1), false), std::nullopt);

    EXPECT_FALSE(service.loadStartupItems().at(1).isEnabled);
    EXPECT_EQ(home.contents("home/.config/autostart/c.desktop"),
              "[Desktop Entry]\nType=Application\nName=Clock\nExec=clock\nHidden=true\n");
}
