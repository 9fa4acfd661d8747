#include "Platform/Linux/Places/UserFolders.h"
#include "Fakes/PretendFileManager.h"

#include <gtest/gtest.h>

using namespace Quillmere;

namespace {

const FilePath config = pretendHome.appending(".config");

QHash<QByteArray, FilePath> foldersOf(const QByteArray &text)
{
    PretendFileManager disk(pretendHome);
    disk.addFile(config.appending("user-dirs.dirs"), text.size(), text);
    return UserFolders::read(disk, pretendHome, config).locations;
}

} // namespace

TEST(UserFoldersTest, TakesFoldersOfTheHomeAndElsewhere)
{
    const auto folders = foldersOf("# Written by xdg-user-dirs-update\n"
                                   "XDG_DOCUMENTS_DIR=\"$HOME/Dokumente\"\n"
                                   "XDG_VIDEOS_DIR=\"/data/films/\"\n");
    EXPECT_EQ(folders.size(), 2);
    EXPECT_EQ(folders["documents"], pretendHome.appending("Dokumente"));
    EXPECT_EQ(folders["videos"], FilePath("/data/films"));
}

TEST(UserFoldersTest, TakesTheHomeForNoFolderAtAll)
{
    const auto folders = foldersOf("XDG_DESKTOP_DIR=\"$HOME/\"\nXDG_MUSIC_DIR=\"$HOME/Music/..\"\n");
    EXPECT_TRUE(folders.isEmpty());
}

TEST(UserFoldersTest, PassesOverLinesOfAnotherShape)
{
    const auto folders = foldersOf("XDG_MUSIC_DIR=$HOME/Music\nXDG_MUSIC_DIR=\"Music\"\nXDG_MUSIC_DIR=\"\n"
                                   "XDG_SECRETS_DIR=\"$HOME/Secrets\"\n\xff\xfe\nXDG_MUSIC_DIR");
    EXPECT_TRUE(folders.isEmpty());
}

TEST(UserFoldersTest, UndoesQuotedCharacters)
{
    EXPECT_EQ(foldersOf("XDG_MUSIC_DIR=\"$HOME/Say \\\"hey\\\"\"")["music"], pretendHome.appending("Say \"hey\""));
}

TEST(UserFoldersTest, KnowsNoFolderWithoutTheFile)
{
    EXPECT_TRUE(UserFolders::read(PretendFileManager(pretendHome), pretendHome, config).locations.isEmpty());
}
