#include "Fakes/PretendMachine.h"
#include "Platform/Linux/Files/LinuxFileManager.h"
#include "Platform/Linux/Places/LinuxPlaces.h"
#include "Platform/Linux/TemporaryHome.h"
#include "Services/BrowserService.h"
#include "Services/CleanupService.h"

#include <QDirIterator>

#include <gmock/gmock.h>

#include <algorithm>
#include <iterator>

using namespace Quillmere;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

namespace {

/// Every browser in a home that really stands on a disk, caches and secrets side by side.
class BrowsersOnDiskTest : public testing::Test
{
protected:
    BrowsersOnDiskTest()
    {
        for (const BrowserService::BrowserDefinition &browser : BrowserService::supportedBrowsers())
            workspace->install(browser.bundleIdentifier);
    }

    void add(const QByteArrayList &places) const
    {
        for (const QByteArray &place : places)
            disk.addFile(place, QByteArray(5000, 'x'));
    }

    [[nodiscard]] QSet<QString> tree() const
    {
        QSet<QString> found;
        const QString top = QString::fromUtf8(disk.path().bytes());
        QDirIterator entries(top, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                             QDirIterator::Subdirectories);
        while (entries.hasNext())
            found.insert(entries.next().mid(top.size() + 1));
        return found;
    }

    [[nodiscard]] BrowserService service() const { return {files, places(), workspace}; }
    [[nodiscard]] std::shared_ptr<LinuxPlaces> places() const
    {
        return std::make_shared<LinuxPlaces>(files, [](const char *) { return QByteArray(); });
    }

    [[nodiscard]] BrowserProfile detected(const QString &name) const
    {
        ScannerService scanner(files, places());
        const QList<BrowserProfile> profiles = service().detectInstalledBrowsers(scanner);
        const auto found = std::ranges::find(profiles, name, &BrowserProfile::browserName);
        return found == profiles.end() ? BrowserProfile() : *found;
    }

    /// Cleans @p name with all that is offered, and answers with what has gone from the disk, relative to it.
    [[nodiscard]] QStringList cleaned(const QString &name, CleanupResult &result) const
    {
        const BrowserProfile profile = detected(name);
        QList<CleanupItem> items = service().getBrowserCacheItems(profile);
        for (const auto &item : {service().cookiesItem(profile), service().historyItem(profile)}) {
            if (item)
                items.append(*item);
        }
        const QSet<QString> before = tree();
        result = CleanupService(files, places()).cleanItems(items, false, [](double) {});
        const QSet<QString> gone = before - tree();
        // Of a folder that has gone as a whole, its top is enough.
        QStringList tops;
        std::ranges::copy_if(gone, std::back_inserter(tops),
                             [&](const QString &each) { return !gone.contains(each.section(u'/', 0, -2)); });
        return tops;
    }

    TemporaryHome disk;
    std::shared_ptr<LinuxFileManager> files = std::make_shared<LinuxFileManager>(disk.environment());
    std::shared_ptr<PretendWorkspace> workspace = std::make_shared<PretendWorkspace>();
    CleanupResult result;
};

struct Browser
{
    const char *test;
    const char *name;
    QByteArrayList caches; ///< With a file in each.
    QByteArrayList secrets;
};

void PrintTo(const Browser &browser, std::ostream *out)
{
    *out << browser.name;
}

QByteArrayList secretsOfChromium(const QByteArray &profile)
{
    QByteArrayList secrets;
    for (const char *name : {"Bookmarks", "Cookies", "History", "Login Data", "Web Data", "Preferences",
                             "Sessions/Session_1", "Local Storage/leveldb/1.ldb", "IndexedDB/a/1.log",
                             "Service Worker/CacheStorage/a", "Extensions/a/manifest.json", "Network/Cookies"})
        secrets.append("home/" + profile + "/Default/" + name);
    return secrets;
}

QByteArrayList secretsOfFirefox(const QByteArray &profile)
{
    QByteArrayList secrets;
    for (const char *name : {"places.sqlite", "cookies.sqlite", "logins.json", "key4.db", "formhistory.sqlite",
                             "sessionstore.jsonlz4", "sessionstore-backups/recovery.jsonlz4", "storage/default/a/ls",
                             "extensions/a.xpi", "prefs.js", "bookmarkbackups/a.jsonlz4"})
        secrets.append("home/" + profile + "/8k2a.default/" + name);
    return secrets;
}

const Browser browsers[] = {
    {"Safari",
     "Safari",
     {"home/Library/Caches/com.apple.Safari", "home/Library/Containers/com.apple.Safari/Data/Library/Caches"},
     {"home/Library/Safari/History.db", "home/Library/Cookies/Cookies.binarycookies",
      "home/Library/Safari/Bookmarks.plist"}},
    {"GoogleChrome",
     "Google Chrome",
     {"home/Library/Caches/Google/Chrome", "home/.cache/google-chrome/Default/Cache",
      "home/.cache/google-chrome/Default/Code Cache", "home/.cache/google-chrome/Profile 1/Cache",
      "home/.var/app/com.google.Chrome/cache/google-chrome/Default/Cache",
      "home/.var/app/com.google.Chrome/cache/google-chrome/Default/Code Cache"},
     secretsOfChromium("Library/Application Support/Google/Chrome") + secretsOfChromium(".config/google-chrome")
         + secretsOfChromium(".var/app/com.google.Chrome/config/google-chrome")
         + QByteArrayList{"home/.cache/google-chrome-beta/Default/Cache/f", "home/.cache/google-chrome/Default/kept"}},
    {"Firefox",
     "Firefox",
     {"home/Library/Caches/Firefox/Profiles", "home/.cache/mozilla/firefox/8k2a.default/cache2",
      "home/.cache/mozilla/firefox/8k2a.default/startupCache", "home/.cache/mozilla/firefox/8k2a.default/thumbnails",
      "home/.cache/mozilla/firefox/8k2a.default/safebrowsing", "home/.cache/mozilla/firefox/other.dev/cache2",
      "home/.var/app/org.mozilla.firefox/cache/mozilla/firefox/8k2a.default/cache2",
      "home/snap/firefox/common/.cache/mozilla/firefox/8k2a.default/cache2"},
     secretsOfFirefox(".mozilla/firefox") + secretsOfFirefox(".config/mozilla/firefox")
         + secretsOfFirefox("Library/Application Support/Firefox/Profiles")
         + secretsOfFirefox(".var/app/org.mozilla.firefox/.mozilla/firefox")
         + secretsOfFirefox("snap/firefox/common/.mozilla/firefox")
         + QByteArrayList{"home/.cache/mozilla/firefox/8k2a.default/kept",
                          "home/.cache/mozilla/thunderbird/a/cache2/f"}},
    {"Brave",
     "Brave",
     {"home/Library/Caches/BraveSoftware/Brave-Browser", "home/.cache/BraveSoftware/Brave-Browser/Default/Cache",
      "home/.cache/BraveSoftware/Brave-Browser/Default/Code Cache",
      "home/.var/app/com.brave.Browser/cache/BraveSoftware/Brave-Browser/Default/Cache",
      "home/snap/brave/common/.cache/BraveSoftware/Brave-Browser/Default/Cache"},
     secretsOfChromium(".config/BraveSoftware/Brave-Browser")
         + secretsOfChromium("Library/Application Support/BraveSoftware/Brave-Browser")},
    {"MicrosoftEdge",
     "Microsoft Edge",
     {"home/Library/Caches/Microsoft Edge", "home/.cache/microsoft-edge/Default/Cache",
      "home/.cache/microsoft-edge/Default/Code Cache",
      "home/.var/app/com.microsoft.Edge/cache/microsoft-edge/Default/Cache"},
     secretsOfChromium(".config/microsoft-edge") + secretsOfChromium("Library/Application Support/Microsoft Edge")},
    {"Opera",
     "Opera",
     {"home/Library/Caches/com.operasoftware.Opera", "home/.cache/opera/Cache", "home/.cache/opera/Code Cache",
      "home/.cache/opera/Default/Cache", "home/.cache/opera/Default/Code Cache",
      "home/.var/app/com.opera.Opera/cache/opera/Default/Cache", "home/snap/opera/common/.cache/opera/Default/Cache"},
     secretsOfChromium(".config/opera") + secretsOfChromium("Library/Application Support/com.operasoftware.Opera")},
};

class EachBrowserOnDiskTest : public BrowsersOnDiskTest, public testing::WithParamInterface<Browser>
{
};

} // namespace

TEST_P(EachBrowserOnDiskTest, LosesItsCachesAndNothingElse)
{
    for (const QByteArray &cache : GetParam().caches)
        add({cache + "/deep/f", cache + "/.hidden"});
    add(GetParam().secrets);
    // All others' as well: none is another's business.
    const QString name = QString::fromLatin1(GetParam().name);
    for (const Browser &other : browsers) {
        if (name != QString::fromLatin1(other.name))
            add(other.secrets);
    }
    const qint64 announced = detected(name).cacheSize;

    const QStringList gone = cleaned(name, result);

    QStringList expected;
    for (const QByteArray &cache : GetParam().caches)
        expected.append(QString::fromUtf8(cache));
    EXPECT_THAT(gone, testing::UnorderedElementsAreArray(expected));
    EXPECT_GT(announced, 0);
    EXPECT_EQ(result.sizeCleaned, announced);
    EXPECT_EQ(result.filesRemoved, GetParam().caches.size());
    EXPECT_THAT(result.errors, IsEmpty());
    EXPECT_EQ(detected(name).cacheSize, 0);
    for (const QByteArray &secret : GetParam().secrets)
        EXPECT_TRUE(disk.exists(secret)) << secret.constData();
}

INSTANTIATE_TEST_SUITE_P(Browsers, EachBrowserOnDiskTest, testing::ValuesIn(browsers),
                         [](const auto &info) { return info.param.test; });

TEST_F(BrowsersOnDiskTest, CleansASecondTimeWithoutAnythingToDo)
{
    add({"home/.cache/mozilla/firefox/8k2a.default/cache2/f"});
    static_cast<void>(cleaned(u"Firefox"_qs, result));

    EXPECT_THAT(cleaned(u"Firefox"_qs, result), IsEmpty());
    EXPECT_EQ(result.filesRemoved, 0);
    EXPECT_EQ(result.filesSkipped, 0);
}

TEST_F(BrowsersOnDiskTest, DoesNotFollowAProfileFolderThatIsALink)
{
    add({"outside/cache2/precious"});
    disk.addFolder("home/.cache/mozilla/firefox");
    disk.addLink("home/.cache/mozilla/firefox/8k2a.default", disk.path("outside").bytes());

    EXPECT_EQ(detected(u"Firefox"_qs).cacheSize, 0);
    EXPECT_THAT(cleaned(u"Firefox"_qs, result), IsEmpty());
    EXPECT_EQ(result.filesRemoved + result.filesSkipped, 0);
    EXPECT_TRUE(disk.exists("outside/cache2/precious"));
    EXPECT_TRUE(disk.exists("home/.cache/mozilla/firefox/8k2a.default"));
}

TEST_F(BrowsersOnDiskTest, DoesNotFollowACacheFolderThatIsALinkNorOneInside)
{
    add({"outside/precious", "home/Library/Caches/Google/Chrome/Default/f"});
    disk.addLink("home/.cache/google-chrome/Default/Cache", disk.path("outside").bytes());
    disk.addLink("home/Library/Caches/Google/Chrome/link", disk.path("outside").bytes());

    EXPECT_THAT(cleaned(u"Google Chrome"_qs, result), ElementsAre(u"home/Library/Caches/Google/Chrome"_qs));
    EXPECT_EQ(result.filesRemoved, 1);
    EXPECT_TRUE(disk.exists("outside/precious"));
    EXPECT_TRUE(disk.exists("home/.cache/google-chrome/Default/Cache"));
}

TEST_F(BrowsersOnDiskTest, CleansInACacheFolderThatTheUserHasMovedElsewhere)
{
    add({"moved/mozilla/firefox/8k2a.default/cache2/f", "moved/mozilla/firefox/8k2a.default/kept"});
    disk.addLink("home/.cache", disk.path("moved").bytes());

    EXPECT_GT(detected(u"Firefox"_qs).cacheSize, 0);
    EXPECT_THAT(cleaned(u"Firefox"_qs, result), ElementsAre(u"moved/mozilla/firefox/8k2a.default/cache2"_qs));
    EXPECT_THAT(result.errors, IsEmpty());
}

TEST_F(BrowsersOnDiskTest, NeitherCountsNorCleansWhatIsKept)
{
    add({"home/.cache/mozilla/firefox/8k2a.default/cache2/f"});
    PlacesData data = PlacesData::builtIn();
    data.keep.append({PlacesData::Place::parse("$cache/mozilla/firefox/*/cache2"), u"For this test."_qs});
    const auto keeping = std::make_shared<LinuxPlaces>(
        files, [](const char *) { return QByteArray(); }, data);
    const BrowserService careful(files, keeping, workspace);
    ScannerService scanner(files, keeping);

    for (const BrowserProfile &profile : careful.detectInstalledBrowsers(scanner)) {
        EXPECT_EQ(profile.cacheSize, 0);
        EXPECT_THAT(careful.getBrowserCacheItems(profile), IsEmpty());
    }
}
