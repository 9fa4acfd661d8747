#include "Platform/Linux/ChildProcess.h"
#include "Platform/Linux/Files/LinuxFileManager.h"
#include "Platform/Linux/Removal/TracedProgram.h"
#include "Platform/Linux/Removal/TrashInfo.h"
#include "Platform/Linux/TemporaryHome.h"

#include <gtest/gtest.h>

using namespace Quillmere;

namespace {

const QByteArray filesInTrash = "home/.local/share/Trash/files";
const QByteArray infosInTrash = "home/.local/share/Trash/info";

/// In the normal run some calls are passed over, others in each of its kinds.
int stepBetweenKills(int usual)
{
    return qEnvironmentVariableIsSet("QUILLMERE_LONG_TESTS") ? 1 : usual;
}

class RemovalKillTest : public testing::Test
{
protected:
    FilePath addItem(const QByteArray &relative) const
    {
        home.addFile(relative + "/a", "first");
        home.addFile(relative + "/folder/b", "second");
        home.addLink(relative + "/link", "folder/b");
        return home.path(relative);
    }

    bool isComplete(const QByteArray &relative) const
    {
        return home.names(relative) == QList<QByteArray>{"a", "folder", "link"}
        && home.contents(relative + "/a") == "first" && home.contents(relative + "/link") == "second";
    }

    /// How many whole items of that origin lie in the trash. Everything in there must have a whole info file.
    int completeInTrash(const FilePath &origin) const
    {
        int complete = 0;
        for (const QByteArray &name : home.names(filesInTrash)) {
            const auto info = TrashInfo::fromText(home.contents(infosInTrash + '/' + name + ".trashinfo"));
            EXPECT_TRUE(info && info->path == origin.bytes() && info->deletionDate.isValid()) << name.constData();
            complete += isComplete(filesInTrash + '/' + name) ? 1 : 0;
        }
        return complete;
    }

    void emptyTrash() const
    {
        const LinuxFileManager files(home.environment());
        for (const QByteArray &folder : {filesInTrash, infosInTrash}) {
            for (const QByteArray &name : home.names(folder))
                ASSERT_TRUE(files.removeItem(home.path(folder + '/' + name)));
        }
    }

    /// True when the program ended by itself before it came to that call.
    bool survivesUntil(int call, const QList<QByteArray> &arguments) const
    {
        return runHeld(home, arguments, [&](int reached, long) { return reached != call; }) != Ending::Killed;
    }
    bool runsToTheEnd(const QList<QByteArray> &arguments) const
    {
        return runHeld(home, arguments, [](int, long) { return true; }) == Ending::Succeeded;
    }

    TemporaryHome home;
};

} // namespace

TEST_F(RemovalKillTest, FindsTheItemInItsPlaceOrWholeInTheTrashWhereverTheTrashingWasKilled)
{
    int kills = 0;
    for (int call = 1;; call += stepBetweenKills(3), ++kills) {
        const FilePath item = addItem("home/item");
        if (survivesUntil(call, {"trash", item.bytes()}))
            break;

        ASSERT_EQ((isComplete("home/item") ? 1 : 0) + completeInTrash(item), 1) << "killed at call " << call;
        if (itemExists(item)) {
            ASSERT_TRUE(runsToTheEnd({"trash", item.bytes()})) << "after a kill at call " << call;
        }
        ASSERT_FALSE(itemExists(item));
        ASSERT_EQ(completeInTrash(item), 1) << "after a kill at call " << call;
        emptyTrash();
    }
    EXPECT_GT(kills, 10);
}

TEST_F(RemovalKillTest, LosesNothingWhereverTheTrashingFromAnotherVolumeWasKilled)
{
    QUILLMERE_NEED(whyNoMountNamespace());
    inMountNamespace([&] {
        ASSERT_TRUE(mountTmpfs(home.path("memory"), "size=8m"));
        int kills = 0;
        for (int call = 1;; call += stepBetweenKills(5), ++kills) {
            const FilePath item = addItem("memory/item");
            if (survivesUntil(call, {"trash", item.bytes()}))
                break;

            ASSERT_GE((isComplete("memory/item") ? 1 : 0) + completeInTrash(item), 1) << "killed at call " << call;
            ASSERT_EQ(completeInTrash(item), home.names(filesInTrash).size()) << "killed at call " << call;
            if (itemExists(item)) {
                ASSERT_TRUE(runsToTheEnd({"trash", item.bytes()})) << "after a kill at call " << call;
            }
            ASSERT_FALSE(itemExists(item));
            ASSERT_GE(completeInTrash(item), 1);
            emptyTrash();
        }
        EXPECT_GT(kills, 10);
        EXPECT_FALSE(home.exists("home/.local/share/Trash/quillmere-incoming"));
    });
}

TEST_F(RemovalKillTest, RemovesTheRestInASecondRunWhereverTheFirstWasKilled)
{
    home.addFile("home/beside");
    int kills = 0;
    for (int call = 1;; call += stepBetweenKills(3), ++kills) {
        const FilePath item = addItem("home/item");
        if (survivesUntil(call, {"remove", item.bytes()}))
            break;

        if (itemExists(item)) {
            ASSERT_TRUE(runsToTheEnd({"remove", item.bytes()})) << "after a kill at call " << call;
        }
        ASSERT_EQ(home.names("home"), QList<QByteArray>{"beside"});
    }
    EXPECT_GT(kills, 5);
}

TEST_F(RemovalKillTest, FindsTheOldBundleTheNewOneOrNoneWhereverTheReplacementWasKilled)
{
    const FilePath from = home.addFile("home/from/program", "new").deletingLastPathComponent();
    home.addFile("home/from/folder/data", "new data");
    const QByteArray bundle = "home/Applications/Quillmere.app";
    const QList<QByteArray> replace = {"replace", from.bytes(), home.path(bundle).bytes()};
    const auto isNew = [&] {
        return home.names(bundle) == QList<QByteArray>{"folder", "program"}
        && home.contents(bundle + "/program") == "new" && home.contents(bundle + "/folder/data") == "new data";
    };
    int timesOld = 0;
    int timesNone = 0;
    for (int call = 1;; call += stepBetweenKills(5)) {
        addItem(bundle);
        if (survivesUntil(call, replace))
            break;

        const bool isNone = !itemExists(home.path(bundle));
        ASSERT_TRUE(isNone || isNew() || isComplete(bundle)) << "killed at call " << call;
        timesOld += isComplete(bundle) ? 1 : 0;
        timesNone += isNone ? 1 : 0;
        ASSERT_TRUE(runsToTheEnd(replace)) << "after a kill at call " << call;
        ASSERT_TRUE(isNew()) << "after a kill at call " << call;
        ASSERT_EQ(home.names("home/Applications"), QList<QByteArray>{"Quillmere.app"});
        ASSERT_TRUE(runsToTheEnd({"remove", home.path(bundle).bytes()}));
    }
    EXPECT_TRUE(isNew());
    EXPECT_GT(timesOld, 5);
    EXPECT_GT(timesNone, 10);
}
