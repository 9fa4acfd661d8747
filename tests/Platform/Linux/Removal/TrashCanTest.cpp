#include "Platform/Linux/Removal/TrashCan.h"
#include "Platform/Linux/ChildProcess.h"
#include "Platform/Linux/Removal/TrashInfo.h"
#include "Platform/Linux/TemporaryHome.h"

#include <gtest/gtest.h>

#include <latch>
#include <thread>

#include <sys/stat.h>
#include <unistd.h>

using namespace Quillmere;

namespace {

class TrashCanTest : public testing::Test
{
protected:
    Result<FilePath> trash(const FilePath &path) const { return TrashCan(home.environment()).trash(path); }

    std::optional<TrashInfo> infoOf(const QByteArray &name) const
    {
        return TrashInfo::fromText(home.contents("home/.local/share/Trash/info/" + name + ".trashinfo"));
    }
    QList<QByteArray> filesInTrash() const { return home.names("home/.local/share/Trash/files"); }
    QList<QByteArray> infosInTrash() const { return home.names("home/.local/share/Trash/info"); }

    TemporaryHome home;
};

} // namespace

TEST_F(TrashCanTest, MovesAFileIntoATrashThatItMakesForTheUserAlone)
{
    const FilePath item = home.addFile("home/.cache/a b.txt", "text");

    const auto trashed = trash(item);

    ASSERT_TRUE(trashed) << qPrintable(trashed.failure().detail);
    EXPECT_EQ(trashed.value(), home.trash().appending("files/a b.txt"));
    EXPECT_EQ(contentsOf(trashed.value()), "text");
    EXPECT_FALSE(itemExists(item));
    EXPECT_EQ(home.mode("home/.local/share/Trash"), 0700u);
    EXPECT_EQ(home.mode("home/.local/share/Trash/files"), 0700u);
    EXPECT_EQ(home.mode("home/.local/share/Trash/info"), 0700u);
    EXPECT_EQ(home.mode("home/.local/share/Trash/info/a b.txt.trashinfo"), 0600u);
}

TEST_F(TrashCanTest, RemembersTheAbsolutePathAndTheLocalTime)
{
    const FilePath item = home.addFile("home/a");
    const QDateTime before = QDateTime::currentDateTime().addSecs(-1);

    ASSERT_TRUE(trash(item));

    ASSERT_TRUE(infoOf("a"));
    EXPECT_EQ(infoOf("a")->path, item.bytes());
    EXPECT_GE(infoOf("a")->deletionDate, before);
    EXPECT_LE(infoOf("a")->deletionDate, QDateTime::currentDateTime());
}

TEST_F(TrashCanTest, MovesAWholeTreeAsOneItem)
{
    home.addFile("home/Cache/deep/er/file", "inside");

    ASSERT_TRUE(trash(home.path("home/Cache")));

    EXPECT_EQ(contentsOf(home.trash().appending("files/Cache/deep/er/file")), "inside");
    EXPECT_FALSE(home.exists("home/Cache"));
}

TEST_F(TrashCanTest, NumbersTheSecondAndThirdOfAName)
{
    for (int copy = 1; copy <= 3; ++copy)
        ASSERT_TRUE(trash(home.addFile("home/a.txt", QByteArray::number(copy))));

    EXPECT_EQ(filesInTrash(), (QList<QByteArray>{"a.2.txt", "a.3.txt", "a.txt"}));
    EXPECT_EQ(home.contents("home/.local/share/Trash/files/a.3.txt"), "3");
    EXPECT_EQ(infoOf("a.3.txt")->path, home.path("home/a.txt").bytes());
}

TEST_F(TrashCanTest, PassesOverAnItemWithoutInfoAndAnInfoWithoutItem)
{
    home.addFile("home/.local/share/Trash/files/a", "older");
    home.addFile("home/.local/share/Trash/info/a.2.trashinfo", "[Trash Info]\nPath=/gone\n");

    const auto trashed = trash(home.addFile("home/a", "newer"));

    ASSERT_TRUE(trashed);
    EXPECT_EQ(trashed.value().lastPathComponent(), "a.3");
    EXPECT_EQ(home.contents("home/.local/share/Trash/files/a"), "older");
    EXPECT_EQ(infosInTrash(), (QList<QByteArray>{"a.2.trashinfo", "a.3.trashinfo"}));
}

TEST_F(TrashCanTest, MovesALinkItselfAndNeverItsTarget)
{
    home.addFile("outside/kept", "kept");
    const FilePath toFolder = home.addLink("home/toFolder", home.path("outside").bytes());
    const FilePath toFile = home.addLink("home/toFile", home.path("outside/kept").bytes());
    const FilePath dangling = home.addLink("home/dangling", "nowhere");

    for (const FilePath &link : {toFolder, toFile, dangling})
        EXPECT_TRUE(trash(link)) << link.bytes().constData();

    EXPECT_EQ(filesInTrash(), (QList<QByteArray>{"dangling", "toFile", "toFolder"}));
    EXPECT_EQ(home.contents("outside/kept"), "kept");
    char target[64] = {};
    EXPECT_GT(::readlink(home.trash().appending("files/dangling").bytes().constData(), target, sizeof target), 0);
    EXPECT_STREQ(target, "nowhere");
}

TEST_F(TrashCanTest, RefusesAnItemBelowALink)
{
    home.addFile("outside/folder/kept", "kept");
    home.addLink("home/link", home.path("outside").bytes());

    const auto trashed = trash(home.path("home/link/folder/kept"));

    ASSERT_FALSE(trashed);
    EXPECT_EQ(trashed.failure().kind, Failure::Kind::LinkInPath);
    EXPECT_EQ(home.contents("outside/folder/kept"), "kept");
}

TEST_F(TrashCanTest, NamesWhatIsMissingAndWhatIsNoLocation)
{
    for (const FilePath &path : {home.path("home/none"), home.path("home/none/below"), FilePath(), FilePath("a"),
                                 home.path(QByteArray("home/a\0b", 8))}) {
        home.addFile("home/a");
        const auto trashed = trash(path);
        ASSERT_FALSE(trashed);
        EXPECT_EQ(trashed.failure().kind, Failure::Kind::NotFound) << path.bytes().constData();
    }
    EXPECT_TRUE(home.exists("home/a"));
}

TEST_F(TrashCanTest, TakesAHomeThatIsReachedThroughALink)
{
    home.addFile("home/a");
    home.addLink("link", home.path("home").bytes());
    UserEnvironment environment = home.environment();
    environment.home = home.path("link");
    environment.dataHome = home.path("link/.local/share");

    ASSERT_TRUE(TrashCan(environment).trash(home.path("home/a")));

    EXPECT_EQ(filesInTrash(), QList<QByteArray>{"a"});
}

class TrashedNameTest : public TrashCanTest, public testing::WithParamInterface<QByteArray>
{
};

TEST_P(TrashedNameTest, GoesToTheTrashAndIsRemembered)
{
    const FilePath item = home.addFile("home/" + GetParam(), "contents");
    ASSERT_TRUE(itemExists(item));

    const auto trashed = trash(item);

    ASSERT_TRUE(trashed) << qPrintable(trashed.failure().detail);
    EXPECT_FALSE(itemExists(item));
    EXPECT_EQ(contentsOf(trashed.value()), "contents");
    EXPECT_EQ(infoOf(trashed.value().lastPathComponent())->path, item.bytes());
}

INSTANTIATE_TEST_SUITE_P(Names, TrashedNameTest,
                         testing::Values(QByteArray("\xff\xfe not UTF-8"), QByteArray("line\nbreak"),
                                         QByteArray("100%"), QByteArray("%41"), QByteArray(255, 'x'),
                                         QByteArray(251, 'x') + ".txt", QByteArray("я").repeated(127),
                                         QByteArray("שלום.txt"), QByteArray("-rf"), QByteArray(" "), QByteArray("~"),
                                         QByteArray("*"), QByteArray("a\\b"), QByteArray("\x01\x7f")));

TEST_F(TrashCanTest, MovesAnItemWhoseLocationIsLongerThanThePathsOfTheKernel)
{
    const QByteArray name(200, 'n');
    FilePath item = home.path("home");
    ASSERT_EQ(::chdir(item.bytes().constData()), 0);
    for (int level = 0; level < 30; ++level) {
        ASSERT_EQ(::mkdir(name.constData(), 0777), 0);
        ASSERT_EQ(::chdir(name.constData()), 0);
        item = item.appending(name);
    }
    writeFile(FilePath("file"), "deep");
    ASSERT_EQ(::chdir("/"), 0);
    ASSERT_GT(item.bytes().size(), 4096);

    const auto trashed = trash(item.appending("file"));

    ASSERT_TRUE(trashed) << qPrintable(trashed.failure().detail);
    EXPECT_EQ(contentsOf(trashed.value()), "deep");
    EXPECT_EQ(infoOf("file")->path, item.appending("file").bytes());
}

TEST_F(TrashCanTest, LeavesNoInfoBehindWhenTheItemMayNotBeMoved)
{
    const FilePath item = home.addFile("home/locked/a");
    inUnprivilegedChild(home.path(), [&] {
        ::chmod(home.path("home/locked").bytes().constData(), 0500);

        const auto trashed = TrashCan(home.environment()).trash(item);

        ASSERT_FALSE(trashed);
        EXPECT_EQ(trashed.failure().kind, Failure::Kind::NoPermission);
        EXPECT_EQ(home.mode("home/locked"), 0500u);
        EXPECT_TRUE(itemExists(item));
        EXPECT_EQ(infosInTrash(), QList<QByteArray>());
    });
}

TEST_F(TrashCanTest, FailsAndUsesNoOtherTrashWhenTheHomeTrashIsNoFolder)
{
    const FilePath item = home.addFile("home/a");
    home.addFile("home/.local/share/Trash", "");

    EXPECT_FALSE(trash(item));

    EXPECT_TRUE(itemExists(item));
}

TEST_F(TrashCanTest, MovesAFolderThatItsOwnerMayNotWriteTo)
{
    home.addFile("home/module/file", "text");
    inUnprivilegedChild(home.path(), [&] {
        ::chmod(home.path("home/module").bytes().constData(), 0555);

        const auto trashed = TrashCan(home.environment()).trash(home.path("home/module"));

        ASSERT_TRUE(trashed) << qPrintable(trashed.failure().detail);
        EXPECT_FALSE(home.exists("home/module"));
        EXPECT_EQ(contentsOf(trashed.value().appending("file")), "text");
    });
}

TEST_F(TrashCanTest, LeavesAFolderAsClosedAsItWasWhenItMayNotBeMoved)
{
    home.addFile("home/locked/module/file");
    inUnprivilegedChild(home.path(), [&] {
        ::chmod(home.path("home/locked/module").bytes().constData(), 0555);
        ::chmod(home.path("home/locked").bytes().constData(), 0500);

        const auto trashed = TrashCan(home.environment()).trash(home.path("home/locked/module"));

        ASSERT_FALSE(trashed);
        EXPECT_EQ(trashed.failure().kind, Failure::Kind::NoPermission);
        EXPECT_EQ(home.mode("home/locked/module"), 0555u);
    });
}

TEST_F(TrashCanTest, GivesAnItemThatTwoWantToExactlyOne)
{
    constexpr int items = 200;
    for (int item = 0; item < items; ++item)
        home.addFile("home/" + QByteArray::number(item) + "/file");
    QList<Result<FilePath>> answers[2];
    std::latch start(2);
    const auto run = [&](QList<Result<FilePath>> &own) {
        start.arrive_and_wait();
        for (int item = 0; item < items; ++item)
            own.append(trash(home.path("home/" + QByteArray::number(item))));
    };

    {
        const std::jthread first([&] { run(answers[0]); });
        const std::jthread second([&] { run(answers[1]); });
    }

    for (int item = 0; item < items; ++item) {
        ASSERT_NE(answers[0].at(item).isOk(), answers[1].at(item).isOk()) << item;
        const auto &refused = answers[0].at(item) ? answers[1].at(item) : answers[0].at(item);
        EXPECT_EQ(refused.failure().kind, Failure::Kind::NotFound);
    }
    EXPECT_EQ(filesInTrash().size(), items);
    EXPECT_EQ(infosInTrash().size(), items);
}
