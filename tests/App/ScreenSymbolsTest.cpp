#include "App/ScreensFixture.h"

using namespace Quillmere;
using enum QAccessible::Role;

namespace {

struct SymbolCase
{
    const char *name;
    SidebarTab tab;
    QString sentence; ///< What stands beside it.
    QString symbol;
};

class EmptyScreenTest : public ScreensFixture, public testing::WithParamInterface<SymbolCase>
{
};

} // namespace

TEST_P(EmptyScreenTest, ShowsItsSymbol)
{
    const Person person = open(GetParam().tab);

    ASSERT_TRUE(person.reads(GetParam().sentence));
    EXPECT_TRUE(showsSymbolOnScreen(GetParam().symbol));
    EXPECT_FALSE(showsSymbolOnScreen(u"trash"_qs));
}

INSTANTIATE_TEST_SUITE_P(
    Screens, EmptyScreenTest,
    testing::Values(
        SymbolCase{"SafeCleanup", SidebarTab::SafeCleanup, u"Find and safely remove cache files and logs."_qs,
                   u"checkmark.shield"_qs},
        SymbolCase{"History", SidebarTab::History, u"No history available"_qs, u"clock.arrow.circlepath"_qs},
        SymbolCase{"ProfessionalCleanup", SidebarTab::ProfessionalCleanup,
                   u"Scan advanced user caches, Xcode derived data, and system logs."_qs, u"wrench.and.screwdriver"_qs},
        SymbolCase{"ProfessionalCleanupWarning", SidebarTab::ProfessionalCleanup, u"Scan advanced user caches"_qs,
                   u"exclamationmark.triangle.fill"_qs},
        SymbolCase{"LargeFiles", SidebarTab::LargeFiles, u"Find files larger than 50 MB on your disk."_qs,
                   u"doc.text.magnifyingglass"_qs},
        SymbolCase{"Browsers", SidebarTab::Browsers, u"No browsers detected"_qs, u"globe"_qs},
        SymbolCase{"Applications", SidebarTab::Applications, u"No applications scanned"_qs, u"square.grid.2x2"_qs},
        SymbolCase{"Startup", SidebarTab::Startup, u"No startup items found"_qs, u"power"_qs},
        SymbolCase{"StartupWarning", SidebarTab::Startup, u"System Integrity Warning"_qs,
                   u"exclamationmark.triangle.fill"_qs}),
    [](const auto &info) { return info.param.name; });
