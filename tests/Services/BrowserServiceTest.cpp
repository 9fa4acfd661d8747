#include "Services/BrowserService.h"

#include "Fakes/PretendMachine.h"
#include "Values/CancellationError.h"

#include <gmock/gmock.h>

#include <stdexcept>

using namespace Quillmere;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

const FilePath home("/home/ada");

class BrowserServiceTest : public testing::Test
{
protected:
    void install(const char *identifier, const QString &icon = {})
    {
        machine.workspace->install(QString::fromLatin1(identifier), {FilePath("/opt/browser"), icon});
    }

    void run(const char *identifier, qint32 pid)
    {
        RunningApplication application;
        application.processIdentifier = pid;
        application.bundleIdentifier = QString::fromLatin1(identifier);
        machine.workspace->start(application);
    }

    void addCache(const QByteArray &folder, qint64 bytes)
    {
        machine.files->addFile(home.appending(folder).appending("data"), bytes);
    }

    QList<BrowserProfile> detect() { return service.detectInstalledBrowsers(scanner); }

    QStringList detectedNames()
    {
        QStringList names;
        for (const BrowserProfile &profile : detect())
            names.append(profile.browserName);
        return names;
    }

    QList<FilePath> itemPaths(const char *identifier)
    {
        BrowserProfile profile;
        profile.bundleIdentifier = QString::fromLatin1(identifier);
        QList<FilePath> paths;
        for (const CleanupItem &item : service.getBrowserCacheItems(profile))
            paths.append(item.path);
        return paths;
    }

    PretendMachine machine;
    ScannerService scanner{machine.files, machine.places};
    BrowserService service{machine.files, machine.places, machine.workspace};
};

constexpr const char *safari = "com.apple.Safari";
constexpr const char *chrome = "com.google.Chrome";
constexpr const char *firefox = "org.mozilla.firefox";

} // namespace

TEST_F(BrowserServiceTest, KnowsSixBrowsersInTheirOrderWithTheirPlaces)
{
    QByteArrayList rows;
    for (const BrowserService::BrowserDefinition &browser : BrowserService::supportedBrowsers()) {
        rows.append(browser.name.toUtf8() + '|' + browser.bundleIdentifier.toUtf8() + '|' + browser.cachePaths.join(';')
                    + '|' + browser.profileBasePath);
    }
    EXPECT_THAT(rows,
                ElementsAre("Safari|com.apple.Safari|Library/Caches/com.apple.Safari;"
                            "Library/Containers/com.apple.Safari/Data/Library/Caches|Library/Safari",
                            "Google Chrome|com.google.Chrome|Library/Caches/Google/Chrome|"
                            "Library/Application Support/Google/Chrome",
                            "Firefox|org.mozilla.firefox|Library/Caches/Firefox/Profiles|"
                            "Library/Application Support/Firefox/Profiles",
                            "Brave|com.brave.Browser|Library/Caches/BraveSoftware/Brave-Browser|"
                            "Library/Application Support/BraveSoftware/Brave-Browser",
                            "Microsoft Edge|com.microsoft.edgemac|Library/Caches/Microsoft Edge|"
                            "Library/Application Support/Microsoft Edge",
                            "Opera|com.operasoftware.Opera|Library/Caches/com.operasoftware.Opera|"
                            "Library/Application Support/com.operasoftware.Opera"));
}

TEST_F(BrowserServiceTest, FindsNothingWhereNoBrowserIsInstalled)
{
    addCache("Library/Caches/Google/Chrome", 100);

    EXPECT_THAT(detect(), IsEmpty());
}

TEST_F(BrowserServiceTest, ListsTheInstalledOnesInTheOrderOfTheTableAndNotBySize)
{
    install("com.operasoftware.Opera");
    install(firefox);
    install(safari);
    addCache("Library/Caches/com.operasoftware.Opera", 9000);

    EXPECT_THAT(detectedNames(), ElementsAre(u"Safari"_qs, u"Firefox"_qs, u"Opera"_qs));
}

TEST_F(BrowserServiceTest, FillsInEachFieldOfAProfile)
{
    install(chrome, u"google-chrome"_qs);
    addCache("Library/Caches/Google/Chrome/Default/Cache", 4096);
    const BrowserProfile profile = detect().value(0);

    EXPECT_FALSE(profile.id.isNull());
    EXPECT_NE(profile.id, detect().value(0).id);
    EXPECT_EQ(profile.browserName, u"Google Chrome"_qs);
    EXPECT_EQ(profile.profileName, u"Default"_qs);
    EXPECT_EQ(profile.profilePath, home.appending("Library/Application Support/Google/Chrome"));
    EXPECT_EQ(profile.cacheSize, 4096);
    EXPECT_EQ(profile.cookiesSize, 0);
    EXPECT_EQ(profile.historySize, 0);
    EXPECT_EQ(profile.localStorageSize, 0);
    EXPECT_FALSE(profile.isBrowserRunning);
    EXPECT_EQ(profile.bundleIdentifier, u"com.google.Chrome"_qs);
    EXPECT_EQ(profile.icon, u"google-chrome"_qs);
}

TEST_F(BrowserServiceTest, ListsABrowserWithoutAnyCacheWithASizeOfZeroAndNoIcon)
{
    install(firefox);
    machine.files->addFolder(home.appending("Library/Caches/Firefox/Profiles"));

    const QList<BrowserProfile> profiles = detect();

    ASSERT_EQ(profiles.size(), 1);
    EXPECT_EQ(profiles[0].cacheSize, 0);
    EXPECT_EQ(profiles[0].icon, std::nullopt);
}

TEST_F(BrowserServiceTest, AddsBothOfSafarisCachesAndCleansThemAsTwoItemsWithoutAnEmptyOne)
{
    install(safari);
    addCache("Library/Caches/com.apple.Safari", 300);
    addCache("Library/Containers/com.apple.Safari/Data/Library/Caches", 50);
    EXPECT_EQ(detect().value(0).cacheSize, 350);
    EXPECT_THAT(itemPaths(safari),
                ElementsAre(home.appending("Library/Caches/com.apple.Safari"),
                            home.appending("Library/Containers/com.apple.Safari/Data/Library/Caches")));

    machine.files->vanish(home.appending("Library/Caches/com.apple.Safari"));
    machine.files->vanish(home.appending("Library/Containers/com.apple.Safari/Data/Library/Caches/data"));
    EXPECT_THAT(itemPaths(safari), IsEmpty());
}

TEST_F(BrowserServiceTest, MakesOneItemOfAWholeCacheFolder)
{
    addCache("Library/Caches/Google/Chrome/Default/Cache", 4096);
    addCache("Library/Caches/Google/Chrome/Profile 1/Cache", 1000);
    BrowserProfile profile;
    profile.bundleIdentifier = QString::fromLatin1(chrome);

    const QList<CleanupItem> items = service.getBrowserCacheItems(profile);

    ASSERT_EQ(items.size(), 1);
    EXPECT_EQ(items[0].name, u"Chrome"_qs);
    EXPECT_EQ(items[0].path, home.appending("Library/Caches/Google/Chrome"));
    EXPECT_EQ(items[0].size, 5096);
    EXPECT_EQ(items[0].category, u"Browser Cache"_qs);
    EXPECT_EQ(items[0].riskLevel, RiskLevel::Safe);
    EXPECT_TRUE(items[0].isSelected);
    EXPECT_TRUE(items[0].isDeletable);
    EXPECT_FALSE(items[0].requiresPermission);
    EXPECT_FALSE(items[0].requiresAppClosed);
    EXPECT_EQ(items[0].ownerApp, std::nullopt);
    EXPECT_EQ(items[0].lastModified, std::nullopt);
    EXPECT_EQ(items[0].explanation, QString());
    EXPECT_EQ(items[0].recommendedAction, u"Move to Trash"_qs);
}

TEST_F(BrowserServiceTest, HasNoItemsForABrowserThatIsNoneOfTheTable)
{
    EXPECT_THAT(itemPaths("org.example.Browser"), IsEmpty());
}

TEST_F(BrowserServiceTest, CountsAnUnreadableCacheAsNothingAndGoesOn)
{
    install(safari);
    addCache("Library/Caches/com.apple.Safari", 300);
    addCache("Library/Containers/com.apple.Safari/Data/Library/Caches", 50);
    machine.files->lock(home.appending("Library/Caches/com.apple.Safari"));

    EXPECT_EQ(detect().value(0).cacheSize, 50);
    EXPECT_EQ(itemPaths(safari).size(), 1);
}

TEST_F(BrowserServiceTest, CountsAWalkThatFailsAsNothingAndGoesOn)
{
    install(safari);
    install(firefox);
    addCache("Library/Caches/com.apple.Safari", 300);
    addCache("Library/Caches/Firefox/Profiles", 50);
    machine.files->onMeasure([](const FilePath &entry) {
        if (entry.bytes().contains("Safari"))
            throw std::runtime_error("the disk is on fire");
    });

    const QList<BrowserProfile> profiles = detect();
    ASSERT_EQ(profiles.size(), 2);
    EXPECT_EQ(profiles[0].cacheSize, 0);
    EXPECT_EQ(profiles[1].cacheSize, 50);
    EXPECT_THAT(itemPaths(safari), IsEmpty());
}

TEST_F(BrowserServiceTest, AddsTheFoldersOfThePlatformBehindItsOwn)
{
    install(firefox);
    addCache("Library/Caches/Firefox/Profiles", 50);
    addCache(".cache/mozilla/firefox/abc/cache2", 700);
    machine.places->addEntry(QString::fromLatin1(firefox), {{}, home.appending(".cache/mozilla/firefox/abc/cache2")});

    EXPECT_EQ(detect().value(0).cacheSize, 750);
    EXPECT_THAT(itemPaths(firefox),
                ElementsAre(home.appending("Library/Caches/Firefox/Profiles"),
                            home.appending(".cache/mozilla/firefox/abc/cache2")));
}

TEST_F(BrowserServiceTest, NeitherCountsNorOffersWhatACleanupWouldRefuse)
{
    install(firefox);
    addCache("Library/Caches/Firefox/Profiles", 50);
    addCache(".cache/kept", 700);
    addCache("Documents", 900);
    for (const char *place : {".cache/kept", "Documents"})
        machine.places->addEntry(QString::fromLatin1(firefox), {{}, home.appending(place)});
    machine.places->keep(home.appending(".cache/kept"), u"It would not come back."_qs);

    EXPECT_EQ(detect().value(0).cacheSize, 50);
    EXPECT_THAT(itemPaths(firefox), ElementsAre(home.appending("Library/Caches/Firefox/Profiles")));
}

TEST_F(BrowserServiceTest, CountsAFolderOnceThatIsNamedTwiceOrInsideAnother)
{
    install(chrome);
    addCache(".cache/google-chrome/Default/Cache", 700);
    for (const char *place : {".cache/google-chrome/Default/Cache", ".cache/google-chrome/Default/Cache/data",
                              ".cache/google-chrome", ".cache/google-chrome/Default/Cache"})
        machine.places->addEntry(QString::fromLatin1(chrome), {{}, home.appending(place)});

    EXPECT_EQ(detect().value(0).cacheSize, 700);
    EXPECT_THAT(itemPaths(chrome), ElementsAre(home.appending(".cache/google-chrome/Default/Cache")));
}

TEST_F(BrowserServiceTest, NamesACacheBelowALinkWhereItTrulyStands)
{
    install(chrome);
    machine.files->addFile(FilePath("/data/Google/Chrome/data"), 700);
    machine.files->addLink(home.appending("Library/Caches/Google"), FilePath("/data/Google"));

    EXPECT_EQ(detect().value(0).cacheSize, 700);
    EXPECT_THAT(itemPaths(chrome), ElementsAre(FilePath("/data/Google/Chrome")));
}

TEST_F(BrowserServiceTest, NeitherCountsNorOffersACacheThatIsALinkItself)
{
    install(chrome);
    machine.files->addFile(FilePath("/data/precious"), 700);
    machine.files->addLink(home.appending("Library/Caches/Google/Chrome"), FilePath("/data"));

    EXPECT_EQ(detect().value(0).cacheSize, 0);
    EXPECT_THAT(itemPaths(chrome), IsEmpty());
}

TEST_F(BrowserServiceTest, TakesABrowserForRunningByItsExactIdentifier)
{
    install(chrome);
    run("com.google.Chrome.beta", 7);
    RunningApplication nameless;
    nameless.processIdentifier = 8;
    machine.workspace->start(nameless);
    EXPECT_FALSE(service.isBrowserRunning(u"com.google.Chrome"_qs));
    EXPECT_FALSE(detect().value(0).isBrowserRunning);

    run(chrome, 9);
    EXPECT_TRUE(service.isBrowserRunning(u"com.google.Chrome"_qs));
    EXPECT_TRUE(detect().value(0).isBrowserRunning);
}

TEST_F(BrowserServiceTest, AsksTheFirstOfABrowsersInstancesToQuitAndForcesNone)
{
    EXPECT_FALSE(service.quitBrowser(u"com.google.Chrome"_qs));
    run(firefox, 5);
    run(chrome, 6);
    run(chrome, 7);

    EXPECT_TRUE(service.quitBrowser(u"com.google.Chrome"_qs));

    EXPECT_THAT(machine.workspace->askedToQuit(), ElementsAre(6));
    EXPECT_THAT(machine.workspace->terminated(), IsEmpty());
}

TEST_F(BrowserServiceTest, SaysSoWhenABrowserCannotBeAsked)
{
    run(chrome, 6);
    machine.workspace->protect(6);

    EXPECT_FALSE(service.quitBrowser(u"com.google.Chrome"_qs));
}

TEST_F(BrowserServiceTest, StopsByTheScannersFlagAndByItsTask)
{
    install(safari);
    addCache("Library/Caches/com.apple.Safari", 300);
    machine.files->onMeasure([this](const FilePath &) { scanner.cancelScan(); });
    EXPECT_THROW(detect(), CancellationError);

    scanner.resetCancellation();
    machine.files->onMeasure({});
    std::stop_source task;
    task.request_stop();
    EXPECT_THROW(static_cast<void>(service.detectInstalledBrowsers(scanner, task.get_token())), CancellationError);
}

TEST_F(BrowserServiceTest, HasCookiesAndHistoryOfSafariAndChromeAlone)
{
    QStringList names;
    for (const BrowserService::BrowserDefinition &browser : BrowserService::supportedBrowsers()) {
        install(qPrintable(browser.bundleIdentifier));
    }
    for (const BrowserProfile &profile : detect()) {
        for (const std::optional<CleanupItem> &item : {service.cookiesItem(profile), service.historyItem(profile)}) {
            if (item)
                names.append(item->name + u'|' + item->category + u'|' + item->path.displayText());
        }
    }

    EXPECT_THAT(
        names,
        ElementsAre(u"Safari Cookies|Browser Cookies|/home/ada/Library/Cookies/Cookies.binarycookies"_qs,
                    u"Safari History|Browser History|/home/ada/Library/Safari/History.db"_qs,
                    u"Chrome Cookies|Browser Cookies|/home/ada/Library/Application Support/Google/Chrome/Cookies"_qs,
                    u"Chrome History|Browser History|/home/ada/Library/Application Support/Google/Chrome/History"_qs));
}

TEST_F(BrowserServiceTest, IsHeldUpByNoCacheOnAVolumeThatAnswersNobody)
{
    install("com.apple.Safari");
    addCache("Library/Caches/com.apple.Safari", 5);
    addCache("Library/Containers/com.apple.Safari/Data/Library/Caches", 7);
    machine.files->addVolume(home.appending("Library/Containers"));
    machine.files->fallSilent(home.appending("Library/Containers"));

    EXPECT_EQ(detect().value(0).cacheSize, 5);
    EXPECT_THAT(itemPaths("com.apple.Safari"), ElementsAre(home.appending("Library/Caches/com.apple.Safari")));
    EXPECT_THAT(machine.files->heldUp(), IsEmpty());
}
