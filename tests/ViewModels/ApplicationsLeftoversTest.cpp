#include "ViewModels/ApplicationsFixture.h"

#include <gmock/gmock.h>

using namespace Quillmere;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class ApplicationsLeftoversTest : public ApplicationsFixture
{
};

} // namespace

TEST_F(ApplicationsLeftoversTest, AddsTheLeftoversToTheSizeInTheOrderOfTheirFolders)
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

TEST_F(ApplicationsLeftoversTest, FindsNothingOnAVolumeThatAnswersNobody)
{
    addPainter();
    silenceVolumeAt(library("Caches"));

    scan();

    EXPECT_THAT(app().relatedFiles,
                ElementsAre(library("Application Support/Painter"), library("Preferences/com.example.painter.plist"),
                            library("Containers/com.example.painter")));
    EXPECT_THAT(machine.files->heldUp(), IsEmpty());
}

TEST_F(ApplicationsLeftoversTest, LooksOnlyInApplicationSupportWhereThereIsNoIdentifier)
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

TEST_F(ApplicationsLeftoversTest, TakesAFolderOfTheVeryNameBeforeTheListOfPreferences)
{
    addBundle("/Applications/A.app", 1, u"org.example.a"_qs);
    machine.files->addFile(library("Preferences/org.example.a.plist"), 5);
    addLeftover("Preferences/org.example.a", 7);

    scan();

    EXPECT_THAT(app().relatedFiles, ElementsAre(library("Preferences/org.example.a")));
    EXPECT_EQ(app().size, 8);
}

TEST_F(ApplicationsLeftoversTest, FindsCachesAndContainersAsPropertyListsToo)
{
    addBundle("/Applications/A.app", 1, u"org.example.a"_qs);
    machine.files->addFile(library("Caches/org.example.a.plist"), 5);
    machine.files->addFile(library("Containers/org.example.a.plist"), 5);
    machine.files->addFile(library("Application Support/A.plist"), 5);

    scan();

    EXPECT_THAT(app().relatedFiles,
                ElementsAre(library("Caches/org.example.a.plist"), library("Containers/org.example.a.plist")));
}

TEST_F(ApplicationsLeftoversTest, MatchesNamesExactly)
{
    addBundle("/Applications/A.app", 1, u"org.example.a"_qs);
    addLeftover("Caches/org.example.a.helper", 5);
    addLeftover("Caches/org.example", 5);
    addLeftover("Caches/Org.Example.A", 5);
    addLeftover("Application Support/A Helper", 5);

    scan();

    EXPECT_THAT(app().relatedFiles, IsEmpty());
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

TEST_F(ApplicationsLeftoversTest, TakesEncodedSlashesInANameAsTheyStand)
{
    machine.files->addFile(FilePath("/home/ada/Documents/thesis"), 5);
    addBundle("/Applications/Notes%2F..%2FDocuments.app", 1, u"..%2f..%2fDocuments"_qs);

    scan();

    EXPECT_EQ(app().name, u"Notes%2F..%2FDocuments"_qs);
    EXPECT_THAT(app().relatedFiles, IsEmpty());
}

TEST_F(ApplicationsLeftoversTest, FindsTheLeftoversOfANameThatIsNotUtf8)
{
    addBundle("/Applications/Caf\xe9.app", 1);
    const FilePath support = addLeftover("Application Support/Caf\xe9", 5);

    scan();

    EXPECT_THAT(app().relatedFiles, ElementsAre(support));
    EXPECT_EQ(app().size, 6);
}
