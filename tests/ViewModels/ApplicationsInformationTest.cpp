#include "ViewModels/ApplicationsFixture.h"

#include <gmock/gmock.h>

using namespace Quillmere;

namespace {

class ApplicationsInformationTest : public ApplicationsFixture
{
};

} // namespace

TEST_F(ApplicationsInformationTest, ReadsWhatABundleSaysOfItself)
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

TEST_F(ApplicationsInformationTest, TakesInformationThatIsNoListOrOfAnotherTypeAsNothing)
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

TEST_F(ApplicationsInformationTest, DoesNotReadInformationThatIsTooLarge)
{
    const FilePath bundle = addBundle("/Applications/A.app", 1);
    PropertyList information;
    information.setString(u"CFBundleIdentifier"_qs, u"org.example.a"_qs);
    machine.files->addFile(bundle.appending("Contents/Info.plist"), 9,
                           information.written(PropertyList::Form::Xml) + QByteArray(17 * 1024 * 1024, ' '));

    scan();

    EXPECT_EQ(app().bundleIdentifier, QString());
}

TEST_F(ApplicationsInformationTest, TakesThePictureOfABundleFromItsResourcesAndNowhereElse)
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

TEST_F(ApplicationsInformationTest, ShowsAnEmptyTextForAVersionThatIsNotTold)
{
    addBundle("/Applications/A.app", 1);
    scan();
    model->select(0);

    EXPECT_EQ(model->selected().versionText(), u"Version: "_qs);
    localizer->setLanguage(Language::Russian);
    EXPECT_EQ(model->selected().versionText(), u"Версия: "_qs);
}

TEST_F(ApplicationsInformationTest, SaysUnknownForNoVersionAtAll)
{
    AppItem without;
    without.name = u"A"_qs;
    model->apps()->setApps({FoundApplication{without, {}}});
    model->select(0);

    EXPECT_EQ(model->selected().versionText(), u"Version: Unknown"_qs);
}
