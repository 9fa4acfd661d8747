#include "Platform/Linux/Files/FolderListing.h"
#include "Platform/Linux/RestrictedThread.h"
#include "Platform/Linux/TemporaryTree.h"

#include <QProcess>

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <algorithm>

using namespace Quillmere;

namespace {

QList<DirectoryEntry> sortedContents(const FilePath &folder, HiddenFiles hidden)
{
    QList<DirectoryEntry> entries = contentsOfDirectory(folder, hidden).valueOr({{FilePath("failed"), {}}});
    std::sort(entries.begin(), entries.end(), [](const auto &a, const auto &b) { return a.path < b.path; });
    return entries;
}

Failure::Kind kindOfFailure(const FilePath &folder)
{
    const Result<QList<DirectoryEntry>> result = contentsOfDirectory(folder, HiddenFiles::Include);
    return result ? Failure::Kind::Other : result.failure().kind;
}

} // namespace

TEST(FolderListingTest, NamesEveryKindAndFollowsNoLink)
{
    TemporaryTree tree;
    tree.addFile("file");
    tree.addFile("folder/inside");
    tree.addLink("link", "folder");
    ASSERT_EQ(::mkfifo(tree.path("pipe").bytes().constData(), 0600), 0);

    const QList<DirectoryEntry> expected = {
        {tree.path("file"), EntryKind::Regular},
        {tree.path("folder"), EntryKind::Directory},
        {tree.path("link"), EntryKind::SymbolicLink},
        {tree.path("pipe"), EntryKind::Other},
    };
    EXPECT_EQ(sortedContents(tree.path(), HiddenFiles::Include), expected);
}

TEST(FolderListingTest, LeavesOutHiddenNamesOnlyWhenToldTo)
{
    TemporaryTree tree;
    tree.addFile(".hidden");
    tree.addFile("..also hidden");
    tree.addFolder(".folder");
    tree.addFile("shown.");

    EXPECT_EQ(sortedContents(tree.path(), HiddenFiles::Skip),
              (QList<DirectoryEntry>{{tree.path("shown."), EntryKind::Regular}}));
    EXPECT_EQ(sortedContents(tree.path(), HiddenFiles::Include).size(), 4);
}

TEST(FolderListingTest, KeepsTheOrderOfTheFileSystem)
{
    TemporaryTree tree;
    for (int i = 0; i < 3'000; ++i)
        tree.addFile("a file with a longer name, number " + QByteArray::number(i), 0);
    QProcess find;
    find.start(u"find"_qs, {QString::fromUtf8(tree.path().bytes()), u"-mindepth"_qs, u"1"_qs});
    ASSERT_TRUE(find.waitForFinished(-1));

    QByteArray listed;
    for (const DirectoryEntry &entry : contentsOfDirectory(tree.path(), HiddenFiles::Include).valueOr({}))
        listed += entry.path.bytes() + '\n';

    EXPECT_EQ(listed, find.readAllStandardOutput());
}

TEST(FolderListingTest, FindsAnEmptyFolderEmpty)
{
    const TemporaryTree tree;

    const Result<QList<DirectoryEntry>> result = contentsOfDirectory(tree.path(), HiddenFiles::Include);

    ASSERT_TRUE(result);
    EXPECT_TRUE(result.value().isEmpty());
}

TEST(FolderListingTest, TakesNamesOfAnyBytes)
{
    TemporaryTree tree;
    const QByteArray name = "\xff\n\x80" + QByteArray(252, 'n');
    tree.addFile(name + "/inside");

    EXPECT_EQ(sortedContents(tree.path(), HiddenFiles::Skip),
              (QList<DirectoryEntry>{{tree.path(name), EntryKind::Directory}}));
    EXPECT_EQ(sortedContents(tree.path(name), HiddenFiles::Skip).size(), 1);
}

TEST(FolderListingTest, ListsWhatALinkToAFolderLeadsTo)
{
    TemporaryTree tree;
    tree.addFile("folder/file");
    tree.addLink("link", "folder");

    EXPECT_EQ(sortedContents(tree.path("link"), HiddenFiles::Include),
              (QList<DirectoryEntry>{{tree.path("link/file"), EntryKind::Regular}}));
}

TEST(FolderListingTest, TellsMissingFromUnreadable)
{
    TemporaryTree tree;
    tree.addFile("locked/file");
    tree.addFile("file");
    tree.addLink("dangling", "nowhere");
    tree.addLink("loop", "loop");
    ASSERT_EQ(::mkfifo(tree.path("pipe").bytes().constData(), 0600), 0);
    ASSERT_EQ(::chmod(tree.path("locked").bytes().constData(), 0000), 0);

    for (const char *name : {"missing", "file", "file/below", "pipe", "dangling", "loop"})
        EXPECT_EQ(kindOfFailure(tree.path(name)), Failure::Kind::NotFound) << name;
    EXPECT_EQ(kindOfFailure(FilePath()), Failure::Kind::NotFound);
    withoutOverridingModes([&] { EXPECT_EQ(kindOfFailure(tree.path("locked")), Failure::Kind::NoPermission); });
    EXPECT_EQ(contentsOfDirectory(tree.path("missing"), HiddenFiles::Include).failure().path, tree.path("missing"));
}
