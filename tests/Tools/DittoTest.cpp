#include "Tools/Ditto.h"

#include "Platform/Linux/TemporaryHome.h"
#include "Tools/HeldWork.h"

#include <QFile>

#include <gtest/gtest.h>

using namespace Quillmere;

namespace {

class DittoTest : public testing::Test
{
protected:
    void SetUp() override
    {
        home.addFile("from/folder/file", "contents");
        home.addLink("from/link", "folder/file");
    }

    [[nodiscard]] QString text(const QByteArray &name) const { return QFile::decodeName(home.path(name).bytes()); }
    [[nodiscard]] ToolEnd copy(const QByteArray &from, const QByteArray &to) const
    {
        return runDitto({text(from), text(to)});
    }
    [[nodiscard]] bool isWhole(const QByteArray &name) const
    {
        return home.contents(name + "/folder/file") == "contents" && home.contents(name + "/link") == "contents";
    }

    TemporaryHome home;
};

} // namespace

TEST_F(DittoTest, CopiesATree)
{
    EXPECT_EQ(copy("from", "to"), ToolEnd());

    EXPECT_TRUE(isWhole("to"));
    EXPECT_TRUE(isWhole("from"));
    EXPECT_EQ(home.names(""), (QList<QByteArray>{"from", "home", "to"}));
}

TEST_F(DittoTest, NeitherMergesNorOverwrites)
{
    home.addFile("to/kept");

    EXPECT_EQ(copy("from", "to").status, 1);
    EXPECT_EQ(home.names("to"), QList<QByteArray>{"kept"});
}

TEST_F(DittoTest, FailsForWhatIsMissingAndForAPlaceInsideOfItself)
{
    EXPECT_EQ(copy("missing", "to"), (ToolEnd{1, u"ditto: %1: No such file or directory"_qs.arg(text("missing"))}));
    EXPECT_EQ(copy("from", "missing/to").status, 1);
    EXPECT_EQ(copy("from", "from/folder/to").status, 1);
    EXPECT_EQ(home.names(""), (QList<QByteArray>{"from", "home"}));
    EXPECT_EQ(home.names("from/folder"), QList<QByteArray>{"file"});
}

TEST_F(DittoTest, TakesTwoLocations)
{
    EXPECT_EQ(runDitto({}).status, 64);
    EXPECT_EQ(runDitto({text("from")}).status, 64);
    EXPECT_EQ(runDitto({text("from"), QString()}).status, 64);
    EXPECT_EQ(runDitto({u"-V"_qs, text("from"), text("to")}).status, 64);
}

TEST_F(DittoTest, LeavesAllOrNothingWhereverItIsKilled)
{
    int kills = 0;
    for (int call = 1;; call += 3, ++kills) {
        const WorkEnding ending = doAndKillAt(call, [this] { return copy("from", "to").status == 0; });
        ASSERT_NE(ending, WorkEnding::Failed) << "at call " << call;
        if (ending == WorkEnding::Done)
            break;

        ASSERT_TRUE(!home.exists("to") || isWhole("to")) << "at call " << call;
        if (home.exists("to")) {
            const QByteArray aside = home.path("whole" + QByteArray::number(call)).bytes();
            ASSERT_EQ(::rename(home.path("to").bytes().constData(), aside.constData()), 0);
        }
    }
    EXPECT_TRUE(isWhole("to"));
    EXPECT_GT(kills, 10);
    EXPECT_FALSE(home.exists(".quillmere-installing"));
}
