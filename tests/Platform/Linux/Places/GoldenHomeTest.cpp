#include "Fakes/InstalledLocalizer.h"
#include "Fakes/PretendMachine.h"
#include "Platform/Linux/Files/LinuxFileManager.h"
#include "Platform/Linux/Places/LinuxPlaces.h"
#include "Platform/Linux/TemporaryHome.h"
#include "Services/BrowserService.h"
#include "Services/CleanupService.h"
#include "Services/DeveloperStorageService.h"

#include <QDirIterator>

#include <gmock/gmock.h>

using namespace Quillmere;
using testing::IsEmpty;

namespace {

constexpr int applications = 200;

/// What its owner has nowhere else, where programs keep it: beside caches, within them and with names like theirs.
const QByteArrayList secrets = {
    ".ssh/id_ed25519",
    ".ssh/known_hosts",
    ".gnupg/private-keys-v1.d/A1.key",
    ".gnupg/trustdb.gpg",
    ".password-store/mail.gpg",
    ".netrc",
    ".aws/credentials",
    ".kube/config",
    ".docker/config.json",
    ".npmrc",
    ".pypirc",
    ".cargo/credentials.toml",
    ".cargo/bin/own-tool",
    ".m2/settings.xml",
    ".m2/settings-security.xml",
    ".gradle/gradle.properties",
    ".android/debug.keystore",
    ".android/adbkey",
    ".bash_history",
    ".zsh_history",
    ".python_history",
    ".virtualenvs/work/bin/python",
    "go/src/own/main.go",
    "go/bin/own",
    "Documents/thesis.odt",
    "Documents/cache/thesis.odt",
    "Pictures/2019/photo.jpg",
    "Desktop/notes.txt",
    "Music/own/song.flac",
    ".config/gh/hosts.yml",
    ".config/rclone/rclone.conf",
    ".config/keepassxc/keepassxc.ini",
    ".config/google-chrome/Default/Login Data",
    ".config/google-chrome/Default/Cookies",
    ".config/google-chrome/Default/Bookmarks",
    ".config/google-chrome/Default/Sessions/Session_1",
    ".config/BraveSoftware/Brave-Browser/Default/Login Data",
    ".config/microsoft-edge/Default/Local Storage/leveldb/1.ldb",
    ".config/opera/Cookies",
    ".config/Code/User/settings.json",
    ".config/Code/User/History/a1/entries.json",
    ".config/Code/User/globalStorage/state.vscdb",
    ".config/Code/Backups/workspace/file",
    ".mozilla/firefox/x.default/logins.json",
    ".mozilla/firefox/x.default/key4.db",
    ".mozilla/firefox/x.default/cookies.sqlite",
    ".mozilla/firefox/x.default/places.sqlite",
    ".thunderbird/x.default/Mail/Local Folders/Inbox",
    ".local/share/keyrings/login.keyring",
    ".local/share/kwalletd/kdewallet.kwl",
    ".local/share/gnome-boxes/images/disk",
    ".local/state/own-tool/log.db",
    ".cache/rclone/vfs/remote/unsent.txt",
    ".cache/keepassxc/keepassxc.ini",
    ".cache/huggingface/token",
    ".cache/git/credential/socket-note",
    ".cache/JetBrains/IntelliJIdea2026.1/LocalHistory/changes.storageData",
    ".cache/Google/AndroidStudio2026.1/LocalHistory/changes.storageData",
    ".var/app/org.mozilla.firefox/.mozilla/firefox/x.default/logins.json",
    ".var/app/com.google.Chrome/config/google-chrome/Default/Login Data",
    "snap/firefox/common/.mozilla/firefox/x.default/key4.db",
    "Library/Safari/History.db",
};

/// What may go, one file of a kind for each tool.
const QByteArrayList rubbish = {
    "Library/Caches/com.example.one/data",
    "Library/Logs/one/today.log",
    "Library/Containers/com.example.one/Data/Library/Caches/data",
    "Library/Developer/Xcode/DerivedData/app/build",
    ".gradle/caches/modules-2/a.jar",
    ".m2/repository/org/a/a.jar",
    ".npm/_cacache/content-v2/a",
    ".cargo/registry/cache/index/a.crate",
    "go/pkg/mod/cache/download/a.zip",
    ".config/Code/Cache/Cache_Data/f_1",
    ".config/Code/CachedData/a/b",
    ".cache/google-chrome/Default/Cache/Cache_Data/f_1",
    ".cache/mozilla/firefox/x.default/cache2/entries/A",
    ".cache/pip/http/a",
};

/// A home with something of everything, on a disk.
class GoldenHomeTest : public testing::Test
{
protected:
    GoldenHomeTest()
    {
        for (const BrowserService::BrowserDefinition &browser : BrowserService::supportedBrowsers())
            workspace->install(browser.bundleIdentifier);
        for (int number = 0; number < applications; ++number)
            addApplication("app" + QByteArray::number(number));
        for (const QByteArray &file : rubbish)
            disk.addFile("home/" + file, QByteArray(9000, 'x'));
        for (const QByteArray &file : secrets)
            disk.addFile("home/" + file, "secret " + file);
        disk.addFile("tmp/build-1/object.o", QByteArray(9000, 'x'));
    }

    void addApplication(const QByteArray &name) const
    {
        disk.addFile("home/.cache/" + name + "/data", QByteArray(5000, 'x'));
        disk.addFile("home/.local/state/" + name + "/log/today.log", QByteArray(5000, 'x'));
        disk.addFile("home/.var/app/org.example." + name + "/cache/data", QByteArray(5000, 'x'));
        for (const char *own : {".config", ".local/share", ".local/state"})
            disk.addFile(QByteArray("home/") + own + "/" + name + "/own", "secret " + name);
        for (const char *own : {"config", "data"})
            disk.addFile("home/.var/app/org.example." + name + "/" + own + "/own", "secret " + name);
    }

    [[nodiscard]] std::shared_ptr<LinuxPlaces> places() const
    {
        return std::make_shared<LinuxPlaces>(files, nothingSet);
    }
    [[nodiscard]] CleanupService cleaner() const { return {files, places()}; }

    [[nodiscard]] QList<CleanupItem> itemsOfTheCleanupScreens() const
    {
        ScannerService scanner(files, places());
        const DeveloperStorageService developer(files, places(), std::make_shared<PretendProcessRunner>(), nothingSet);
        QList<CleanupItem> items;
        for (const auto &category : scanner.scanSafeCategories([](double, const QString &) {}))
            items += category.items;
        for (const auto &category : developer.scanCleanupCategories(scanner))
            items += category.items;
        return items;
    }

    [[nodiscard]] QList<CleanupItem> itemsOfTheBrowsers() const
    {
        ScannerService scanner(files, places());
        const BrowserService service(files, places(), workspace);
        QList<CleanupItem> items;
        for (const BrowserProfile &profile : service.detectInstalledBrowsers(scanner)) {
            items += service.getBrowserCacheItems(profile);
            for (const auto &item : {service.cookiesItem(profile), service.historyItem(profile)}) {
                if (item)
                    items.append(*item);
            }
        }
        return items;
    }

    /// All that stands in the home and the temporary folder, the Trash left out.
    [[nodiscard]] QSet<QString> tree() const
    {
        QSet<QString> found;
        QDirIterator entries(QString::fromUtf8(disk.path().bytes()),
                             QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                             QDirIterator::Subdirectories);
        while (entries.hasNext()) {
            const QString entry = entries.next();
            if (!entry.contains(u"/home/.local/share/Trash"_qs))
                found.insert(entry);
        }
        return found;
    }

    /// What has gone from @p before and lies in no item of @p announced.
    [[nodiscard]] QStringList unannounced(const QSet<QString> &before, const QList<CleanupItem> &announced) const
    {
        QStringList found;
        for (const QString &gone : before - tree()) {
            const FilePath path(gone.toUtf8());
            if (std::ranges::none_of(announced, [&](const CleanupItem &item) { return path.isWithin(item.path); }))
                found.append(gone);
        }
        return found;
    }

    [[nodiscard]] QByteArrayList lostSecrets() const
    {
        QByteArrayList lost;
        for (const QByteArray &file : secrets) {
            if (disk.contents("home/" + file) != "secret " + file)
                lost.append(file);
        }
        for (int number = 0; number < applications; ++number) {
            const QByteArray name = "app" + QByteArray::number(number);
            for (const QByteArray &own : {".config/" + name, ".local/share/" + name, ".local/state/" + name,
                                          ".var/app/org.example." + name + "/config"}) {
                if (disk.contents("home/" + own + "/own") != "secret " + name)
                    lost.append(own);
            }
        }
        return lost;
    }

    static QByteArray nothingSet(const char *) { return {}; }

    InstalledLocalizer localizer;
    TemporaryHome disk;
    std::shared_ptr<LinuxFileManager> files = std::make_shared<LinuxFileManager>(disk.environment());
    std::shared_ptr<PretendWorkspace> workspace = std::make_shared<PretendWorkspace>();
};

} // namespace

TEST_F(GoldenHomeTest, LosesNoSecretAndNothingUnannouncedWhenEverythingIsTicked)
{
    ASSERT_THAT(lostSecrets(), IsEmpty());
    const QSet<QString> before = tree();

    const QList<CleanupItem> browsers = itemsOfTheBrowsers();
    const CleanupResult deleted = cleaner().cleanItems(browsers, false, [](double) {});
    const QList<CleanupItem> screens = itemsOfTheCleanupScreens();
    const CleanupResult trashed = cleaner().cleanItems(screens, true, [](double) {});

    EXPECT_THAT(lostSecrets(), IsEmpty());
    EXPECT_THAT(unannounced(before, browsers + screens), IsEmpty());
    EXPECT_THAT(deleted.errors, IsEmpty());
    EXPECT_THAT(trashed.errors, IsEmpty());
    // Each application's cache, its logs and the cache of its sandbox.
    EXPECT_GE(trashed.filesRemoved, 3 * applications);
}

TEST_F(GoldenHomeTest, LeavesNothingBehindOfWhatWasAnnounced)
{
    const QList<CleanupItem> browsers = itemsOfTheBrowsers();
    std::ignore = cleaner().cleanItems(browsers, false, [](double) {});
    std::ignore = cleaner().cleanItems(itemsOfTheCleanupScreens(), true, [](double) {});

    for (const QByteArray &file : rubbish)
        EXPECT_FALSE(disk.exists("home/" + file)) << file.constData();
    for (int number = 0; number < applications; ++number) {
        const QByteArray name = "app" + QByteArray::number(number);
        EXPECT_FALSE(disk.exists("home/.cache/" + name)) << name.constData();
        EXPECT_FALSE(disk.exists("home/.var/app/org.example." + name + "/cache/data")) << name.constData();
    }
    EXPECT_THAT(itemsOfTheCleanupScreens(), IsEmpty());
}
