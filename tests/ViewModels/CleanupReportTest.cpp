#include "ViewModels/CleanupReport.h"

#include "Fakes/InstalledLocalizer.h"

#include <gmock/gmock.h>

using namespace Quillmere;
using testing::ElementsAre;

TEST(CleanupReportTest, ShowsSkippedFilesOnlyWhenThereAreAny)
{
    const InstalledLocalizer localizer;

    EXPECT_EQ(CleanupReport(CleanupResult{203, 4'610'000'000, 0, {}}).filesSkipped(), QString());
    EXPECT_EQ(CleanupReport(CleanupResult{203, 4'610'000'000, 1, {}}).filesSkipped(), u"1"_qs);
    EXPECT_EQ(CleanupReport(CleanupResult{203, 4'610'000'000, 1, {}}).spaceFreed(), u"4.61 GB"_qs);
    EXPECT_EQ(CleanupReport(CleanupResult{203, 4'610'000'000, 1, {}}).filesRemoved(), u"203"_qs);
}

TEST(CleanupReportTest, ShowsTheFirstFiveErrors)
{
    const QStringList lines = {u"1"_qs, u"2"_qs, u"3"_qs, u"4"_qs, u"5"_qs, u"6"_qs};

    EXPECT_EQ(CleanupReport(CleanupResult{0, 0, 6, lines}).errors(), lines.first(5));
    EXPECT_EQ(CleanupReport(CleanupResult{0, 0, 2, lines.first(2)}).errors(), lines.first(2));
}
