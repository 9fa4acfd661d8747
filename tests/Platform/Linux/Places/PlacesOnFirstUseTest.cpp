#include "Platform/Linux/Places/PlacesOnFirstUse.h"
#include "Fakes/PretendMachine.h"
#include "Platform/Linux/Applications/InstalledApplicationsOnFirstUse.h"

#include <gtest/gtest.h>

using namespace Quillmere;

TEST(PlacesOnFirstUseTest, AreMadeOnceAndNotBeforeSomebodyAsks)
{
    int made = 0;
    const PlacesOnFirstUse places([&] {
        ++made;
        auto answers = std::make_unique<PretendPlaces>();
        answers->addEntry(u"Mine"_qs, {u"One"_qs, FilePath("/one")});
        answers->addRow(PlaceTable::UserCache, {FilePath("/cache"), {}});
        answers->keep(FilePath("/kept"), u"For this test."_qs);
        return answers;
    });
    EXPECT_EQ(made, 0);

    EXPECT_EQ(places.entriesBehind(u"Mine"_qs).size(), 1);
    EXPECT_EQ(places.rowsBehind(PlaceTable::UserCache).size(), 1);
    EXPECT_EQ(places.reasonToKeep(FilePath("/kept")), u"For this test."_qs);
    EXPECT_EQ(places.reasonToKeep(FilePath("/other")), std::nullopt);
    EXPECT_EQ(made, 1);
}

TEST(InstalledApplicationsOnFirstUseTest, AreMadeOnceAndNotBeforeSomebodyAsks)
{
    int made = 0;
    const InstalledApplicationsOnFirstUse applications([&] {
        ++made;
        auto answers = std::make_unique<PretendInstalledApplications>();
        ListedApplication painter;
        painter.id = "painter";
        answers->add(painter, {FilePath("/leftover")});
        return answers;
    });
    EXPECT_EQ(made, 0);

    const QList<ListedApplication> found = applications.applications();
    ASSERT_EQ(found.size(), 1);
    EXPECT_EQ(applications.leftoversOf(found.first()), QList<FilePath>{FilePath("/leftover")});
    EXPECT_TRUE(applications.uninstall(found.first()));
    EXPECT_TRUE(applications.applications().isEmpty());
    EXPECT_EQ(made, 1);
}
