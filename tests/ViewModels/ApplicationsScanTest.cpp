#include "Fakes/Gate.h"
#include "ViewModels/ApplicationsFixture.h"

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

TEST_F(ApplicationsScanTest, CountsABundleThatVanishesWhileItIsMeasuredAsNothing)
{
    addBundle("/Applications/Gone.app", 100, u"org.example.gone"_qs);
    addBundle("/Applications/Stays.app", 5);
    machine.files->onMeasure([this](const FilePath &path) {
        if (path.isWithin(FilePath("/Applications/Gone.app")))
            machine.files->vanish(FilePath("/Applications/Gone.app/Contents/MacOS/program"));
    });

    scan();

    ASSERT_THAT(names(), ElementsAre(u"Stays"_qs, u"Gone"_qs));
    // Of what has gone, the information alone was there to be measured.
    EXPECT_LT(app(1).size, app(0).size);
    EXPECT_EQ(app(1).bundleIdentifier, u"org.example.gone"_qs);
}

TEST_F(ApplicationsScanTest, KeepsTheRowOfABundleThatVanishesBehindTheListing)
{
    addBundle("/Applications/Gone.app", 100, u"org.example.gone"_qs, u"1"_qs);
    machine.applications->onListing([this] { machine.files->vanish(FilePath("/Applications/Gone.app")); });

    scan();

    ASSERT_THAT(names(), ElementsAre(u"Gone"_qs));
    EXPECT_EQ(app().size, 0);
    EXPECT_EQ(app().bundleIdentifier, QString());
    EXPECT_EQ(app().version, QString());
}

TEST_F(ApplicationsScanTest, NamesABundleOnceWhereOneRootIsALinkToTheOther)
{
    addBundle("/Applications/Painter.app", 10);
    machine.files->addLink(FilePath("/home/ada/Applications"), FilePath("/Applications"));

    scan();

    EXPECT_THAT(names(), ElementsAre(u"Painter"_qs));
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
    EXPECT_TRUE(model->selected().canBeUninstalled());
    model->select(2);
    EXPECT_FALSE(model->selected().canBeUninstalled());
    EXPECT_EQ(model->selected().sizeText(), u"40 bytes"_qs);
}

TEST_F(ApplicationsScanTest, IsHeldUpByNoFolderOfAVolumeThatAnswersNobody)
{
    addBundle("/Applications/Painter.app", 5);
    silenceVolumeAt(FilePath("/Applications"));
    addBundle("/home/ada/Applications/Editor.app", 3);

    scan();

    EXPECT_THAT(names(), ElementsAre(u"Editor"_qs));
    EXPECT_THAT(machine.files->heldUp(), IsEmpty());
}
