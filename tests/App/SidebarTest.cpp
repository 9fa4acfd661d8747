#include "App/ScreensFixture.h"

#include <QTest>

using namespace Quillmere;
using enum QAccessible::Role;

namespace {

const QQuickItem *find(const QQuickItem &from, const std::function<bool(const QQuickItem &)> &isMeant)
{
    if (isMeant(from))
        return &from;
    for (const QQuickItem *child : from.childItems()) {
        if (const QQuickItem *found = find(*child, isMeant))
            return found;
    }
    return nullptr;
}

class SidebarTest : public ScreensFixture
{
protected:
    [[nodiscard]] double width() const
    {
        const QQuickItem *sidebar = find(*app->mainWindow()->contentItem(), [](const QQuickItem &item) {
            return QByteArray(item.metaObject()->className()).startsWith("SidebarView");
        });
        return sidebar ? sidebar->width() : 0;
    }
    /// Whether the whole of that row can be seen now, or soon.
    [[nodiscard]] bool showsRow(const Person &person, const QString &name) const
    {
        return QTest::qWaitFor([&] {
            const QRect row = person.placeOf(ListItem, name);
            return !row.isEmpty() && row.top() >= 0 && row.bottom() < app->mainWindow()->height();
        });
    }
    void drag(const QPoint &from, const QPoint &by) const
    {
        QTest::mousePress(app->mainWindow(), Qt::LeftButton, {}, from);
        QTest::mouseMove(app->mainWindow(), from + by / 2);
        QTest::mouseMove(app->mainWindow(), from + by);
        QTest::mouseRelease(app->mainWindow(), Qt::LeftButton, {}, from + by);
    }
    /// Drags the sidebar's edge by that much.
    void drag(const Person &person, int pixels) const
    {
        drag(person.placeOf(Grip, u"Sidebar width"_qs).center(), {pixels, 0});
    }
    /// The symbol in the row of that name.
    [[nodiscard]] static QString symbolOf(const Person &person, const QString &row)
    {
        QAccessibleInterface *found = person.find(ListItem, row);
        const auto *item = found ? qobject_cast<QQuickItem *>(found->object()) : nullptr;
        const QQuickItem *symbol = item
            ? find(*item,
                   [](const QQuickItem &each) {
                       return QByteArray(each.metaObject()->className()).startsWith("Symbol") && each.isVisible();
                   })
            : nullptr;
        return symbol ? symbol->property("name").toString() : QString();
    }
};

} // namespace

TEST_F(SidebarTest, ShowsItsSectionsInTheirOrder)
{
    const Person person = open();

    int above = -1;
    for (const QString &name :
         {u"Overview"_qs, u"Cleanup"_qs, u"Analysis"_qs, u"System"_qs, u"Maintenance"_qs, u"App"_qs}) {
        const QRect header = person.placeOf(Heading, name);
        EXPECT_FALSE(header.isEmpty()) << name.toStdString();
        EXPECT_GT(header.y(), above) << name.toStdString();
        above = header.y();
    }
}

TEST_F(SidebarTest, ShowsTheIconOfEachDestination)
{
    const Person person = open();

    const std::pair<const char16_t *, const char *> icons[] = {
        {u"Dashboard", "gauge.medium"},
        {u"Safe Cleanup", "checkmark.shield"},
        {u"Professional Cleanup", "wrench.and.screwdriver"},
        {u"Large Files", "doc.text.magnifyingglass"},
        {u"Browsers", "globe"},
        {u"System Data", "internaldrive"},
        {u"Startup Items", "power"},
        {u"Applications", "square.grid.2x2"},
        {u"Tools", "hammer"},
        {u"History", "clock.arrow.circlepath"},
        {u"Settings", "gear"},
    };
    for (const auto &[row, icon] : icons)
        EXPECT_EQ(symbolOf(person, QString::fromUtf16(row)).toStdString(), icon);
}

TEST_F(SidebarTest, IsWidenedByTheArrowKeysFromItsIdealWidthWithinItsLimits)
{
    const Person person = open(SidebarTab::Tools);
    EXPECT_EQ(width(), 220);
    ASSERT_TRUE(person.tabTo(u"Sidebar width"_qs));

    for (int i = 0; i < 20; ++i)
        person.press(Qt::Key_Right);
    EXPECT_EQ(width(), 280);
    for (int i = 0; i < 20; ++i)
        person.press(Qt::Key_Left);
    EXPECT_EQ(width(), 200);
}

TEST_F(SidebarTest, IsWidenedByDraggingItsEdgeAndGetsItsIdealWidthBackByADoubleClick)
{
    const Person person = open(SidebarTab::Tools);

    drag(person, 30);
    EXPECT_NEAR(width(), 250, 1);
    drag(person, 100);
    EXPECT_EQ(width(), 280);
    drag(person, -200);
    EXPECT_EQ(width(), 200);

    QTest::mouseDClick(app->mainWindow(), Qt::LeftButton, {}, person.placeOf(Grip, u"Sidebar width"_qs).center());
    EXPECT_EQ(width(), 220);
}

TEST_F(SidebarTest, LeavesRoomAroundThePromotion)
{
    const Person person = open();

    const QString promotion = u"Farhop. "_qs + AdvertisementService::fallback(Language::English).subtitle;
    const QRect banner = person.placeOf(Button, promotion);
    const QRect above = person.placeOf(ListItem, u"Dashboard"_qs);
    const QQuickItem *below = find(*app->mainWindow()->contentItem(), [](const QQuickItem &item) {
        return QByteArray(item.metaObject()->className()).startsWith("SidebarSection")
            && item.property("title") == u"Cleanup"_qs;
    });
    ASSERT_NE(below, nullptr);

    // The list ends before the hairline at the sidebar's right edge.
    EXPECT_EQ(banner.left(), 10);
    EXPECT_EQ(banner.right() + 1, 219 - 10);
    EXPECT_EQ(banner.top() - (above.bottom() + 1), 6);
    EXPECT_EQ(below->mapToScene({}).y() - (banner.bottom() + 1), 6);
}

TEST_F(SidebarTest, KeepsTheChosenDestinationInSightInAWindowThatShrinks)
{
    const Person person = open(SidebarTab::Settings);

    app->mainWindow()->resize(900, 600);

    EXPECT_TRUE(showsRow(person, u"Settings"_qs));
}

TEST_F(SidebarTest, KeepsTheChosenDestinationInSightWhenWhatStandsAboveGrows)
{
    const Person person = open(SidebarTab::Settings);
    app->mainWindow()->resize(900, 600);
    ASSERT_TRUE(showsRow(person, u"Settings"_qs));

    app->localizer().setLanguage(Language::Russian);

    EXPECT_TRUE(showsRow(person, u"Настройки"_qs));
}

TEST_F(SidebarTest, LeavesItOutOfSightOnceTheUserHasDraggedItAwayByTheScrollBarToo)
{
    const Person person = open(SidebarTab::Settings);
    app->mainWindow()->resize(900, 600);
    ASSERT_TRUE(showsRow(person, u"Settings"_qs));
    const int bar = person.placeOf(Grip, u"Sidebar width"_qs).center().x() - 8;

    drag({bar, 500}, {0, -300});
    ASSERT_TRUE(showsRow(person, u"Dashboard"_qs));
    app->mainWindow()->resize(900, 610);

    EXPECT_FALSE(showsRow(person, u"Settings"_qs));
}

TEST_F(SidebarTest, LeavesTheChosenDestinationOutOfSightOnceTheUserHasScrolledItAway)
{
    const Person person = open(SidebarTab::Settings);
    app->mainWindow()->resize(900, 600);
    ASSERT_TRUE(showsRow(person, u"Settings"_qs));

    person.turnWheel({100, 300}, 2000);
    ASSERT_TRUE(showsRow(person, u"Dashboard"_qs));
    app->mainWindow()->resize(900, 610);

    EXPECT_FALSE(showsRow(person, u"Settings"_qs));
}
