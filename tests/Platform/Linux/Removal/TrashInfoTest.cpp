#include "Platform/Linux/Removal/TrashInfo.h"

#include <gtest/gtest.h>

using namespace Quillmere;

namespace {

constexpr qsizetype longest = 255;

QByteArray repeated(const char *text, qsizetype times)
{
    return QByteArray(text).repeated(times);
}

} // namespace

TEST(TrashInfoTest, WritesTheGroupTheEncodedPathAndTheLocalDate)
{
    const TrashInfo info = {"/home/ada/a b", QDateTime(QDate(2026, 3, 4), QTime(5, 6, 7))};

    EXPECT_EQ(info.toText(), "[Trash Info]\nPath=/home/ada/a%20b\nDeletionDate=2026-03-04T05:06:07\n");
}

TEST(TrashInfoTest, EncodesEveryByteThatCouldBreakTheLineOrIsNotAscii)
{
    const TrashInfo info = {QByteArray("/x/%=\n\xff\xd7\xa9-_.~"), QDateTime::currentDateTime()};

    EXPECT_TRUE(info.toText().contains("\nPath=/x/%25%3D%0A%FF%D7%A9-_.~\n")) << info.toText().constData();
}

TEST(TrashInfoTest, ReadsWhatItWrote)
{
    QByteArray path = "/";
    for (int byte = 1; byte < 256; ++byte)
        path.append(static_cast<char>(byte));
    const TrashInfo info = {path, QDateTime(QDate(2026, 11, 21), QTime(23, 59, 58))};

    EXPECT_EQ(TrashInfo::fromText(info.toText()), info);
}

TEST(TrashInfoTest, TakesTheFirstOfSeveralPathsAndNoOtherText)
{
    EXPECT_EQ(TrashInfo::fromText("[Trash Info]\nPath=/a\nPath=/b\n")->path, "/a");
    EXPECT_FALSE(TrashInfo::fromText("Path=/a\n").has_value());
    EXPECT_FALSE(TrashInfo::fromText("[Trash Info]\nDeletionDate=2026-01-01T00:00:00\n").has_value());
    EXPECT_FALSE(TrashInfo::fromText("").has_value());
}

struct NameCase
{
    const char *name;
    QByteArray item;
    int number;
    QByteArray expected;
};

class NameInTrashTest : public testing::TestWithParam<NameCase>
{
};

TEST_P(NameInTrashTest, KeepsTheNameAndStaysShortEnoughForItsInfoFile)
{
    const QByteArray name = nameInTrash(GetParam().item, GetParam().number, longest);

    EXPECT_EQ(name, GetParam().expected);
    EXPECT_LE(name.size() + qsizetype(qstrlen(".trashinfo")), longest);
}

INSTANTIATE_TEST_SUITE_P(
    Names, NameInTrashTest,
    testing::Values(NameCase{"First", "a.txt", 1, "a.txt"}, NameCase{"Second", "a.txt", 2, "a.2.txt"},
                    NameCase{"NoExtension", "Cache", 3, "Cache.3"}, NameCase{"Hidden", ".profile", 2, ".profile.2"},
                    NameCase{"FinalPoint", "a.", 2, "a..2"}, NameCase{"LeadingDash", "-rf", 1, "-rf"},
                    NameCase{"LongestThatFits", repeated("x", 245), 1, repeated("x", 245)},
                    NameCase{"OneByteTooLong", repeated("x", 246), 1, repeated("x", 245)},
                    NameCase{"LongWithExtension", repeated("x", 251) + ".txt", 1, repeated("x", 241) + ".txt"},
                    NameCase{"LongSecond", repeated("x", 251) + ".txt", 2, repeated("x", 239) + ".2.txt"},
                    NameCase{"LongExtension", "a." + repeated("x", 253), 2, "a." + repeated("x", 241) + ".2"},
                    NameCase{"LongCyrillic", repeated("я", 127), 1, repeated("я", 122)},
                    NameCase{"LongNotUtf8", repeated("\x80", 255), 1, repeated("\x80", 245)}),
    [](const auto &info) { return info.param.name; });

TEST(NameInTrashTest, KeepsToTheShorterNamesOfSomeFileSystems)
{
    EXPECT_EQ(nameInTrash(repeated("x", 143), 1, 143), repeated("x", 133));
}
