#include "Fakes/Gate.h"
#include "ViewModels/ApplicationsFixture.h"

#include <QSignalSpy>
#include <QTest>

#include <gmock/gmock.h>

using namespace Quillmere;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class ApplicationsScanTest : public ApplicationsFixture
{
};

} // namespace

TEST_F(ApplicationsScanTest, StartsWithNothing)
{
    EXPECT_THAT(apps(), IsEmpty());
    EXPECT_FALSE(model->isScanning());
    EXPECT_FALSE(model->isUninstalling());
    EXPECT_EQ(model->scanProgress(), 0);
    EXPECT_EQ(model->currentScanningApp(), QString());
    EXPECT_FALSE(model->selectedApp().has_value());
    EXPECT_FALSE(model->trafficErrorMessage().has_value());
}

TEST_F(ApplicationsScanTest, RaisesTheOverlayAtOnceAndSaysThatItLists)
{
    addPainter();
    const Gate gate;
    machine.files->onMeasure([gate](const FilePath &) { gate.wait(); });
    QStringList said;
    QObject::connect(model.get(), &ApplicationsViewModel::progressChanged, model.get(),
                     [&] { said.append(model->currentScanningApp()); });
    const auto scanning = model->scanApplications();

    EXPECT_TRUE(model->isScanning());
    EXPECT_EQ(model->scanProgress(), 0);
    ASSERT_FALSE(said.isEmpty());
    EXPECT_EQ(said.first(), u"Listing applications..."_qs);
    gate.open();
    QCoro::waitFor(scanning);
    EXPECT_FALSE(model->isScanning());
}

TEST_F(ApplicationsScanTest, TellsWhichApplicationItIsAtAndHowFarItHasCome)
{
    addBundle("/Applications/A.app", 1);
    addBundle("/Applications/B.app", 1);
    addBundle("/Applications/C.app", 1);
    addBundle("/home/ada/Applications/D.app", 1);
    QStringList told;
    QObject::connect(model.get(), &ApplicationsViewModel::progressChanged, model.get(),
                     [&] { told.append(model->currentScanningApp() + u' ' + QString::number(model->scanProgress())); });

    scan();

    EXPECT_THAT(told, ElementsAre(u"Listing applications... 0"_qs, u"A 0"_qs, u"B 0.25"_qs, u"C 0.5"_qs, u"D 0.75"_qs));
}

TEST_F(ApplicationsScanTest, ReadsWhatABundleSaysOfItself)
{
    addPainter();

    scan();

    EXPECT_EQ(app().name, u"Painter"_qs);
    EXPECT_EQ(app().bundleIdentifier, u"com.example.painter"_qs);
    EXPECT_EQ(app().version, u"4.2"_qs);
    EXPECT_EQ(app().path, FilePath("/Applications/Painter.app"));
    EXPECT_EQ(app().architecture, Architecture::Unknown);
    EXPECT_EQ(app().signedStatus, SignedStatus::Unknown);
    EXPECT_FALSE(app().developer.has_value());
}

TEST_F(ApplicationsScanTest, AddsTheLeftoversToTheSizeInTheOrderOfTheirFolders)
{
    addPainter();

    scan();

    EXPECT_THAT(app().relatedFiles,
                ElementsAre(library("Application Support/Painter"), library("Caches/com.example.painter"),
                            library("Preferences/com.example.painter.plist"),
                            library("Containers/com.example.painter")));
    // A measured folder adds up what is in it, so that a list of preferences by itself adds nothing.
    EXPECT_EQ(app().size, 1000 + 10 + 20 + 40);
}

TEST_F(ApplicationsScanTest, ShowsTheSameNameInBothRootsTwice)
{
    addBundle("/Applications/Painter.app", 10);
    addBundle("/home/ada/Applications/Painter.app", 20);

    scan();

    EXPECT_THAT(names(), ElementsAre(u"Painter"_qs, u"Painter"_qs));
    EXPECT_EQ(app(0).path, FilePath("/home/ada/Applications/Painter.app"));
    EXPECT_NE(app(0).id, app(1).id);
}

TEST_F(ApplicationsScanTest, ShowsABundleOnceWhenOneRootIsALinkToTheOther)
{
    addBundle("/Applications/Painter.app", 10);
    machine.files->addLink(FilePath("/home/ada/Applications"), FilePath("/Applications"));

    scan();

    EXPECT_THAT(names(), ElementsAre(u"Painter"_qs));
}

TEST_F(ApplicationsScanTest, FindsNoBundleWhoseExtensionIsInUpperCase)
{
    addBundle("/Applications/Loud.APP", 10);
    addBundle("/Applications/Proper.App", 10);
    addBundle("/Applications/Quiet.app", 10);

    scan();

    EXPECT_THAT(names(), ElementsAre(u"Quiet"_qs));
}

TEST_F(ApplicationsScanTest, PassesOverWhatIsHiddenNestedOrNoBundle)
{
    addBundle("/Applications/.Hidden.app", 10);
    addBundle("/Applications/...app", 10);
    addBundle("/Applications/Games/Nested.app", 10);
    machine.files->addFile(FilePath("/Applications/Read me.txt"), 10);

    scan();

    EXPECT_THAT(names(), IsEmpty());
    EXPECT_FALSE(model->isScanning());
}

TEST_F(ApplicationsScanTest, PassesOverARootThatCannotBeListed)
{
    addBundle("/Applications/Closed.app", 10);
    machine.files->lock(FilePath("/Applications"));
    addBundle("/home/ada/Applications/Open.app", 10);

    scan();

    EXPECT_THAT(names(), ElementsAre(u"Open"_qs));
}

TEST_F(ApplicationsScanTest, LooksOnlyInApplicationSupportWhereThereIsNoIdentifier)
{
    addBundle("/Applications/Nameless.app", 100);
    addLeftover("Application Support/Nameless", 5);
    addLeftover("Caches/Nameless", 5);
    machine.files->addFile(library("Caches/.plist"), 5);

    scan();

    EXPECT_EQ(app().bundleIdentifier, QString());
    EXPECT_EQ(app().version, QString());
    EXPECT_TRUE(app().version.has_value());
    EXPECT_THAT(app().relatedFiles, ElementsAre(library("Application Support/Nameless")));
}

TEST_F(ApplicationsScanTest, TakesAFolderOfTheVeryNameBeforeTheListOfPreferences)
{
    addBundle("/Applications/A.app", 1, u"org.example.a"_qs);
    machine.files->addFile(library("Preferences/org.example.a.plist"), 5);
    addLeftover("Preferences/org.example.a", 7);

    scan();

    EXPECT_THAT(app().relatedFiles, ElementsAre(library("Preferences/org.example.a")));
    EXPECT_EQ(app().size, 8);
}

TEST_F(ApplicationsScanTest, FindsCachesAndContainersAsPropertyListsToo)
{
    addBundle("/Applications/A.app", 1, u"org.example.a"_qs);
    machine.files->addFile(library("Caches/org.example.a.plist"), 5);
    machine.files->addFile(library("Containers/org.example.a.plist"), 5);
    machine.files->addFile(library("Application Support/A.plist"), 5);

    scan();

    EXPECT_THAT(app().relatedFiles,
                ElementsAre(library("Caches/org.example.a.plist"), library("Containers/org.example.a.plist")));
}

TEST_F(ApplicationsScanTest, MatchesNamesExactly)
{
    addBundle("/Applications/A.app", 1, u"org.example.a"_qs);
    addLeftover("Caches/org.example.a.helper", 5);
    addLeftover("Caches/org.example", 5);
    addLeftover("Caches/Org.Example.A", 5);
    addLeftover("Application Support/A Helper", 5);

    scan();

    EXPECT_THAT(app().relatedFiles, IsEmpty());
}

TEST_F(ApplicationsScanTest, ListsTheLargestFirstAndKeepsTheOrderOfTheListingWhereSizesTie)
{
    addBundle("/Applications/Second.app", 50);
    addBundle("/Applications/First.app", 50);
    addBundle("/Applications/Small.app", 1);
    addBundle("/home/ada/Applications/Large.app", 900);
    addBundle("/home/ada/Applications/Third.app", 50);

    scan();

    EXPECT_THAT(names(), ElementsAre(u"Large"_qs, u"Second"_qs, u"First"_qs, u"Third"_qs, u"Small"_qs));
}

struct CancelCase
{
    const char *name;
    const char *at; ///< The item whose measuring is under way when the scan is cancelled.
};

class ApplicationsCancelTest : public ApplicationsFixture, public testing::WithParamInterface<CancelCase>
{
};

TEST_P(ApplicationsCancelTest, LeavesTheListEmptyAndInvitesAgain)
{
    addPainter();
    addBundle("/Applications/Other.app", 10);
    machine.files->onMeasure([this](const FilePath &path) {
        if (path == FilePath(GetParam().at))
            model->cancelScan();
    });

    scan();

    EXPECT_THAT(apps(), IsEmpty());
    EXPECT_FALSE(model->isScanning());
    EXPECT_TRUE(scanner->isCancelled());
    machine.files->onMeasure({});
    scan();
    EXPECT_EQ(apps().size(), 2);
}

INSTANTIATE_TEST_SUITE_P(
    Moments, ApplicationsCancelTest,
    testing::Values(CancelCase{"InTheFirstBundle", "/Applications/Painter.app/Contents"},
                    CancelCase{"InALeftover", "/home/ada/Library/Caches/com.example.painter/data"},
                    CancelCase{"InTheLastLeftover", "/home/ada/Library/Containers/com.example.painter/data"},
                    CancelCase{"InTheLastBundle", "/Applications/Other.app/Contents/MacOS/program"}),
    [](const auto &info) { return info.param.name; });

TEST_F(ApplicationsScanTest, IsCancelledWhileItLists)
{
    addPainter();
    const auto scanning = model->scanApplications();
    model->cancelScan();

    QCoro::waitFor(scanning);

    EXPECT_THAT(apps(), IsEmpty());
    EXPECT_FALSE(model->isScanning());
}

TEST_F(ApplicationsScanTest, IsCancelledThroughItsScannerAlone)
{
    addPainter();
    machine.files->onMeasure([this](const FilePath &) { scanner->cancelScan(); });

    scan();

    EXPECT_THAT(apps(), IsEmpty());
    EXPECT_FALSE(model->isScanning());
}

TEST_F(ApplicationsScanTest, KeepsAListThatIsThereWhenTheScreenComesUp)
{
    addPainter();
    scan();
    const QUuid before = app().id;

    model->scanIfEmpty();

    EXPECT_FALSE(model->isScanning());
    EXPECT_EQ(app().id, before);
}

TEST_F(ApplicationsScanTest, LetsALaterScanTakeThePlaceOfAnEarlierOne)
{
    addPainter();
    const Gate gate;
    machine.files->onMeasure([gate](const FilePath &) { gate.wait(); });
    const auto earlier = model->scanApplications();
    const auto later = model->scanApplications();
    gate.open();

    QCoro::waitFor(earlier);
    QCoro::waitFor(later);

    EXPECT_THAT(names(), ElementsAre(u"Painter"_qs));
    EXPECT_FALSE(model->isScanning());
}

TEST_F(ApplicationsScanTest, OutlivesNoScreen)
{
    addPainter();
    const Gate gate;
    machine.files->onMeasure([gate](const FilePath &) { gate.wait(); });
    const auto scanning = model->scanApplications();

    model.reset();
    gate.open();

    QCoro::waitFor(scanning);
    EXPECT_FALSE(scanner->isCancelled());
}

TEST_F(ApplicationsScanTest, KeepsWhatIsChosenOverANewScanByWhatIsThenKnown)
{
    addPainter();
    scan();
    model->select(0);
    machine.files->vanish(library("Caches/com.example.painter"));

    scan();

    EXPECT_EQ(model->selectedRow(), 0);
    EXPECT_EQ(model->selectedApp()->id, app().id);
    EXPECT_EQ(model->selectedApp()->relatedFiles.size(), 3);
}

struct HostileCase
{
    const char *name;
    const char *identifier;
};

class HostileIdentifierTest : public ApplicationsFixture, public testing::WithParamInterface<HostileCase>
{
};

TEST_P(HostileIdentifierTest, ReachesNothingOutsideTheFoldersOfLeftovers)
{
    machine.files->addFile(FilePath("/home/ada/Documents/thesis"), 5);
    machine.files->addFile(FilePath("/home/ada/Documents.plist"), 5);
    addLeftover("Caches/other", 5);
    addBundle("/Applications/Evil.app", 1, QString::fromUtf8(GetParam().identifier));

    scan();

    EXPECT_THAT(app().relatedFiles, IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Identifiers, HostileIdentifierTest,
                         testing::Values(HostileCase{"FolderAbove", ".."}, HostileCase{"FolderItself", "."},
                                         HostileCase{"Document", "../../Documents"}, HostileCase{"Below", "other/data"},
                                         HostileCase{"Absolute", "/home/ada/Documents"}, HostileCase{"Slash", "/"},
                                         HostileCase{"DotsAndSlash", "../"}, HostileCase{"Hidden", "./other"}),
                         [](const auto &info) { return info.param.name; });

TEST_F(ApplicationsScanTest, TakesEncodedSlashesInANameAsTheyStand)
{
    machine.files->addFile(FilePath("/home/ada/Documents/thesis"), 5);
    addBundle("/Applications/Notes%2F..%2FDocuments.app", 1, u"..%2f..%2fDocuments"_qs);

    scan();

    EXPECT_EQ(app().name, u"Notes%2F..%2FDocuments"_qs);
    EXPECT_THAT(app().relatedFiles, IsEmpty());
}

TEST_F(ApplicationsScanTest, FindsTheLeftoversOfANameThatIsNotUtf8)
{
    addBundle("/Applications/Caf\xe9.app", 1);
    const FilePath support = addLeftover("Application Support/Caf\xe9", 5);

    scan();

    EXPECT_THAT(app().relatedFiles, ElementsAre(support));
    EXPECT_EQ(app().size, 6);
}

TEST_F(ApplicationsScanTest, TakesInformationThatIsNoListOrOfAnotherTypeAsNothing)
{
    for (const char *name : {"/Applications/Folder.app", "/Applications/Rubbish.app", "/Applications/Types.app"})
        machine.files->addFile(FilePath(name).appending("program"), 1);
    machine.files->addFolder(FilePath("/Applications/Folder.app/Contents/Info.plist"));
    machine.files->addFile(FilePath("/Applications/Rubbish.app/Contents/Info.plist"), 9, "<plist><dict");
    PropertyList types;
    types.setInteger(u"CFBundleIdentifier"_qs, 5);
    types.setBoolean(u"CFBundleShortVersionString"_qs, true);
    machine.files->addFile(FilePath("/Applications/Types.app/Contents/Info.plist"), 9,
                           types.written(PropertyList::Form::Binary));

    scan();

    ASSERT_EQ(apps().size(), 3);
    for (const AppItem &each : apps()) {
        EXPECT_EQ(each.bundleIdentifier, QString());
        EXPECT_EQ(each.version, QString());
    }
}

TEST_F(ApplicationsScanTest, DoesNotReadInformationThatIsTooLarge)
{
    const FilePath bundle = addBundle("/Applications/A.app", 1);
    PropertyList information;
    information.setString(u"CFBundleIdentifier"_qs, u"org.example.a"_qs);
    machine.files->addFile(bundle.appending("Contents/Info.plist"), 9,
                           information.written(PropertyList::Form::Xml) + QByteArray(17 * 1024 * 1024, ' '));

    scan();

    EXPECT_EQ(app().bundleIdentifier, QString());
}

TEST_F(ApplicationsScanTest, TakesThePictureOfABundleFromItsResourcesAndNowhereElse)
{
    const auto addWithIcon = [this](const QByteArray &name, const QString &icon) {
        PropertyList information;
        information.setString(u"CFBundleIconFile"_qs, icon);
        machine.files->addFile(FilePath("/Applications").appending(name).appending("Contents/Info.plist"), 1,
                               information.written(PropertyList::Form::Xml));
    };
    addWithIcon("A.app", u"logo"_qs);
    machine.files->addFile(FilePath("/Applications/A.app/Contents/Resources/logo.png"), 1);
    addWithIcon("B.app", u"missing"_qs);
    addWithIcon("C.app", u"../../../A.app/Contents/Resources/logo.png"_qs);

    scan();

    EXPECT_EQ(app(0).icon, u"/Applications/A.app/Contents/Resources/logo.png"_qs);
    EXPECT_EQ(app(1).icon, QString());
    EXPECT_EQ(app(2).icon, QString());
}

TEST_F(ApplicationsScanTest, CountsABundleThatVanishesWhileItIsMeasuredAsNothing)
{
    addBundle("/Applications/Gone.app", 100, u"org.example.gone"_qs);
    addBundle("/Applications/Stays.app", 5);
    machine.files->onMeasure([this](const FilePath &path) {
        if (path.isWithin(FilePath("/Applications/Stays.app")))
            return;
        machine.files->vanish(FilePath("/Applications/Gone.app/Contents/MacOS/program"));
    });

    scan();

    EXPECT_EQ(apps().size(), 2);
}

TEST_F(ApplicationsScanTest, ListsWhatThePlatformAddsBehindTheBundles)
{
    addBundle("/Applications/Bundle.app", 50);
    ListedApplication listed;
    listed.id = "org.example.listed";
    listed.name = u"Listed"_qs;
    listed.identifier = u"org.example.Listed"_qs;
    listed.version = u"2"_qs;
    listed.icon = u"brush"_qs;
    listed.location = FilePath("/home/ada/Applications/listed.AppImage");
    listed.parts = {listed.location, FilePath("/home/ada/.local/opt/listed")};
    machine.files->addFile(listed.location, 20);
    machine.files->addFile(FilePath("/home/ada/.local/opt/listed/program"), 30);
    const FilePath leftover("/home/ada/.config/org.example.listed");
    machine.files->addFile(leftover.appending("data"), 7);
    machine.applications->add(listed, {leftover});
    ListedApplication system;
    system.id = "system";
    system.name = u"System"_qs;
    system.location = FilePath("/usr/share/applications/system.desktop");
    system.size = 40;
    system.removal = ApplicationRemoval::System;
    machine.applications->add(system);

    scan();

    EXPECT_THAT(names(), ElementsAre(u"Listed"_qs, u"Bundle"_qs, u"System"_qs));
    EXPECT_EQ(app().size, 57);
    EXPECT_EQ(app().version, u"2"_qs);
    EXPECT_EQ(app().icon, u"brush"_qs);
    EXPECT_EQ(app().bundleIdentifier, u"org.example.Listed"_qs);
    EXPECT_THAT(app().relatedFiles, ElementsAre(leftover));
    model->select(0);
    EXPECT_TRUE(model->canUninstallSelected());
    model->select(2);
    EXPECT_FALSE(model->canUninstallSelected());
    EXPECT_EQ(model->selectedSizeText(), u"40 bytes"_qs);
}
