#include "Platform/Linux/Applications/DesktopEntryText.h"

#include <gtest/gtest.h>

using namespace Quillmere;

namespace {

const QByteArray entry = "# A comment\n"
                         "\n"
                         "[Desktop Entry]\n"
                         "Type=Application\n"
                         "Name = Clock \n"
                         "Name[de]=Uhr\n"
                         "Name[pt_BR]=Relógio\n"
                         "# Another\n"
                         "X-Odd=a\\sb\\;c\\q\n"
                         "OnlyShowIn=GNOME;Unity\\;X;;\n"
                         "\n"
                         "[Desktop Action quit]\n"
                         "Name=Quit\n"
                         "Hidden=true\n";

QByteArray switchedOff(const QByteArray &text)
{
    DesktopEntryText changed(text);
    changed.setBoolean("Hidden", true);
    return changed.text();
}

} // namespace

TEST(DesktopEntryTextTest, ReadsTheMainGroupAlone)
{
    const DesktopEntryText text(entry);

    EXPECT_TRUE(text.isSound());
    EXPECT_EQ(text.value("Name"), "Clock");
    EXPECT_EQ(text.value("X-Odd"), "a b;c\\q");
    EXPECT_EQ(text.value("Hidden"), std::nullopt);
    EXPECT_EQ(text.value("name"), std::nullopt);
    EXPECT_EQ(text.list("OnlyShowIn"), (QList<QByteArray>{"GNOME", "Unity;X"}));
    EXPECT_TRUE(text.list("NotShowIn").isEmpty());
}

TEST(DesktopEntryTextTest, ReadsAValueInTheDearestLanguageThatItHas)
{
    const DesktopEntryText text(entry);

    EXPECT_EQ(text.value("Name", {"pt_BR", "pt"}), "Relógio");
    EXPECT_EQ(text.value("Name", {"fr", "de"}), "Uhr");
    EXPECT_EQ(text.value("Name", {"fr"}), "Clock");
    EXPECT_EQ(text.value("Comment", {"de"}), std::nullopt);
}

TEST(DesktopEntryTextTest, TakesTruthValuesAndNothingElse)
{
    const DesktopEntryText text("[Desktop Entry]\na=true\nb=false\nc=1\nd=0\ne=True\nf=yes\ng=\na=false\n");

    EXPECT_EQ(text.boolean("a"), false);
    EXPECT_EQ(text.boolean("b"), false);
    EXPECT_EQ(text.boolean("c"), true);
    EXPECT_EQ(text.boolean("d"), false);
    for (const char *key : {"e", "f", "g", "h"})
        EXPECT_EQ(text.boolean(key), std::nullopt) << key;
}

TEST(DesktopEntryTextTest, PutsANewValueBehindTheLastOfItsGroupAndChangesNothingElse)
{
    QByteArray expected = entry;
    expected.replace("Unity\\;X;;\n", "Unity\\;X;;\nHidden=true\n");

    EXPECT_EQ(switchedOff(entry), expected);
}

TEST(DesktopEntryTextTest, ChangesAValueInItsPlace)
{
    EXPECT_EQ(switchedOff("[Desktop Entry]\nHidden = false\nName=a\nHidden=0\n"),
              "[Desktop Entry]\nHidden = true\nName=a\nHidden=true\n");
}

TEST(DesktopEntryTextTest, KeepsTheEndsOfLinesAsTheyAre)
{
    EXPECT_EQ(switchedOff("[Desktop Entry]\r\nName=a\r\n"), "[Desktop Entry]\r\nName=a\r\nHidden=true\r\n");
    EXPECT_EQ(switchedOff("[Desktop Entry]\r\nHidden=false\r\nName=a\r\n"),
              "[Desktop Entry]\r\nHidden=true\r\nName=a\r\n");
    EXPECT_EQ(switchedOff("[Desktop Entry]\nName=a"), "[Desktop Entry]\nName=a\nHidden=true\n");
    EXPECT_EQ(switchedOff("[Desktop Entry]"), "[Desktop Entry]\nHidden=true\n");
    EXPECT_EQ(switchedOff("[Desktop Entry]\nName=a\n\n\n# end\n"), "[Desktop Entry]\nName=a\nHidden=true\n\n\n# end\n");
}

TEST(DesktopEntryTextTest, BringsEveryByteBackThatIsNotSet)
{
    for (const QByteArray &text : {QByteArray(), QByteArray("\n\n"), QByteArray("\xFF\0\r[x", 5), entry})
        EXPECT_EQ(DesktopEntryText(text).text(), text);
    EXPECT_FALSE(DesktopEntryText("Name=a\n[Desktop Action a]\n").isSound());
}
