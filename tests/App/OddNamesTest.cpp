#include "App/ScreensFixture.h"
#include "Fakes/Gate.h"

#include <QQuickItem>
#include <QTest>

using namespace Quillmere;
using enum QAccessible::Role;

namespace {

struct OddName
{
    const char *title;
    QByteArray bytes;
    QString shown;
};

/// Everything below @p item that shows @p text, or a text with it inside.
QList<QQuickItem *> itemsShowing(QQuickItem *item, const QString &text)
{
    QList<QQuickItem *> found;
    if (!item->isVisible())
        return found;
    if (item->property("textFormat").isValid() && item->property("text").toString().contains(text))
        found.append(item);
    for (QQuickItem *child : item->childItems())
        found += itemsShowing(child, text);
    return found;
}

/// One item of this name among the caches of the pretend home.
class OddNameTest : public ScreensFixture, public testing::WithParamInterface<OddName>
{
protected:
    OddNameTest() { machine.files->addFile(item().appending("data"), 1000); }

    static FilePath item() { return FilePath("/home/ada/Library/Caches").appending(GetParam().bytes); }

    Person openScanned()
    {
        Person person = open(SidebarTab::SafeCleanup);
        EXPECT_TRUE(person.click(Button, u"Start Scan"_qs));
        EXPECT_TRUE(person.sees(Button, u"Clean"_qs));
        return person;
    }

    /// Text without any mark-up, on so many lines at most, nowhere beyond what holds it.
    void expectPlainLines(const QString &text, int mostLines) const
    {
        const QList<QQuickItem *> items = itemsShowing(app->mainWindow()->contentItem(), text);
        EXPECT_FALSE(items.isEmpty()) << text.toStdString();
        for (const QQuickItem *shown : items) {
            EXPECT_EQ(shown->property("textFormat").toInt(), int(Qt::PlainText));
            EXPECT_LE(shown->property("lineCount").toInt(), mostLines);
            EXPECT_LE(shown->property("paintedWidth").toReal(), shown->width());
            EXPECT_LE(shown->mapToScene({shown->width(), 0}).x(), app->mainWindow()->width());
            EXPECT_LE(shown->property("paintedHeight").toReal(), shown->height());
        }
    }
};

} // namespace

TEST_P(OddNameTest, IsOnePlainLineInAnOpenCategory)
{
    const Person person = openScanned();

    ASSERT_TRUE(person.click(ListItem, u"User Cache, Application caches in your user folder, 1 items, 1 KB, Safe"_qs));

    ASSERT_TRUE(person.sees(StaticText, GetParam().shown));
    expectPlainLines(GetParam().shown, 1);
}

TEST_P(OddNameTest, IsOnePlainLineInTheOverlayOfAScan)
{
    const Gate gate;
    machine.files->onMeasure([gate](const FilePath &) { gate.wait(); });
    const Person person = open(SidebarTab::SafeCleanup);

    EXPECT_TRUE(person.click(Button, u"Start Scan"_qs));

    EXPECT_TRUE(person.sees(StaticText, GetParam().shown));
    expectPlainLines(GetParam().shown, 1);
    gate.open();
    EXPECT_TRUE(person.sees(Button, u"Clean"_qs));
}

TEST_P(OddNameTest, IsOnePlainLineAmongTheErrorsOfAReport)
{
    machine.files->refuse(item(), Failure::Kind::NoPermission);
    const Person person = openScanned();

    ASSERT_TRUE(person.click(Button, u"Clean"_qs));

    const QString line = u"Failed to clean "_qs + GetParam().shown + u": Permission denied"_qs;
    ASSERT_TRUE(person.sees(StaticText, line));
    expectPlainLines(line, 1);
}

TEST_P(OddNameTest, IsPlainTextAmongTheErrorsOfTheHistory)
{
    machine.files->refuse(item(), Failure::Kind::NoPermission);
    const Person person = openScanned();
    ASSERT_TRUE(person.click(Button, u"Clean"_qs));
    ASSERT_TRUE(person.click(Button, u"Done"_qs));
    ASSERT_TRUE(person.readsNo(u"Cleanup Report"_qs));
    ASSERT_TRUE(person.click(ListItem, u"History"_qs));
    ASSERT_TRUE(person.reads(u"Completed"_qs));
    ASSERT_TRUE(person.tabToWhatHolds(u"Completed"_qs));

    person.press(Qt::Key_Space);

    const QString line = u"Failed to clean "_qs + GetParam().shown + u": Permission denied"_qs;
    ASSERT_TRUE(person.sees(StaticText, line));
    // Here the whole name can be read: what is long takes up more lines.
    expectPlainLines(line, GetParam().bytes.size() > 200 ? 3 : 1);
}

INSTANTIATE_TEST_SUITE_P(
    Names, OddNameTest,
    testing::Values(OddName{"MarkUp", "<b>x<br>y", u"<b>x<br>y"_qs},
                    OddName{"Picture", "<img src='data:x' width=900>", u"<img src='data:x' width=900>"_qs},
                    OddName{"Entity", "a&lt;b&amp;c", u"a&lt;b&amp;c"_qs},
                    OddName{"LineBreak", "line\nbreak", u"line\uFFFDbreak"_qs},
                    OddName{"ParagraphSeparator", "two\xE2\x80\xA9paragraphs", u"two\uFFFDparagraphs"_qs},
                    OddName{"NotUtf8", "not utf-8 \xFF\xFE", u"not utf-8 \uFFFD\uFFFD"_qs},
                    OddName{"RightToLeftMark", "mark\xE2\x80\x8Fgnp.exe", u"mark\uFFFDgnp.exe"_qs},
                    OddName{"RightToLeftOverride", "over\xE2\x80\xAEgnp.exe", u"over\uFFFDgnp.exe"_qs},
                    OddName{"LongestName", QByteArray(255, 'l'), QString(255, u'l')}),
    [](const auto &info) { return info.param.title; });
