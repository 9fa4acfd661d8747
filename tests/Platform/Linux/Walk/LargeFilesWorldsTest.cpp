#include "Platform/Linux/Walk/LargeFilesWorlds.h"
#include "Fakes/InstalledLocalizer.h"
#include "Fakes/PretendWorkspace.h"
#include "Platform/Linux/System/SystemClock.h"
#include "ViewModels/LargeFilesViewModel.h"
#include "ViewModels/UnfinishedRuns.h"

#include <QCoro/QCoroCore>

#include <gmock/gmock.h>

using namespace Quillmere;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

// The number of blocks of 4,096 bytes that first reaches the threshold, and the last that does not.
constexpr qint64 enough = 50'003'968;
constexpr qint64 tooLittle = 49'999'872;

struct Machinery
{
    const char *name;
    std::unique_ptr<LargeFilesWorld> (*make)();
};

/// What holds on every machine.
class LargeFilesWorldsTest : public testing::TestWithParam<Machinery>
{
protected:
    LargeFilesWorldsTest() { SharedInstance<UnfinishedRuns>::install(&runs); }
    ~LargeFilesWorldsTest() override { SharedInstance<UnfinishedRuns>::install(nullptr); }

    /// What a scan finds, relative to the home.
    QList<QByteArray> found()
    {
        model = std::make_unique<LargeFilesViewModel>(world->files(), world->places(), workspace);
        QCoro::waitFor(model->scan());
        QList<QByteArray> paths;
        for (const FileItem &file : model->files())
            paths.append(file.path.bytes().sliced(world->home().bytes().size() + 1));
        return paths;
    }

    InstalledLocalizer localizer;
    std::shared_ptr<PretendWorkspace> workspace = std::make_shared<PretendWorkspace>();
    std::unique_ptr<LargeFilesWorld> world = GetParam().make();
    UnfinishedRuns runs{world->files(), std::make_shared<SystemClock>()};
    std::unique_ptr<LargeFilesViewModel> model;
};

} // namespace

INSTANTIATE_TEST_SUITE_P(Machines, LargeFilesWorldsTest,
                         testing::Values(Machinery{"Pretended", makePretendWorld}, Machinery{"OnDisk", makeRealWorld}),
                         [](const auto &info) { return info.param.name; });

TEST_P(LargeFilesWorldsTest, ListsAFileThatReachesTheThresholdAndNoneBelowIt)
{
    world->allocate("Downloads/enough", enough);
    world->allocate("Downloads/too little", tooLittle);

    EXPECT_THAT(found(), ElementsAre("Downloads/enough"));
    EXPECT_EQ(model->files().first().size, enough);
}

TEST_P(LargeFilesWorldsTest, JudgesASparseFileByWhatItOccupies)
{
    world->addSparse("Documents/a terabyte.img", qint64(1) << 40);
    world->allocate("Documents/full.img", enough);

    EXPECT_THAT(found(), ElementsAre("Documents/full.img"));
}

TEST_P(LargeFilesWorldsTest, FindsNothingBelowAFolderNamedLibrary)
{
    world->allocate("Documents/Library/a", enough);
    world->allocate("Documents/deep/Library/deeper/a", enough);

    EXPECT_THAT(found(), IsEmpty());
}

TEST_P(LargeFilesWorldsTest, FindsNothingHiddenAndNothingInPackages)
{
    world->allocate("Documents/.hidden", enough);
    world->allocate("Documents/.folder/a", enough);
    world->allocate("Downloads/Tool.app/Contents/a", enough);
    world->allocate("Pictures/Photos.photoslibrary/a", enough);

    EXPECT_THAT(found(), IsEmpty());
}

TEST_P(LargeFilesWorldsTest, KnowsAnApplicationOnlyByAPlainFileOfThatExtension)
{
    world->allocate("Downloads/Large.app/Contents/a", enough);
    world->allocate("Downloads/Plain.app", enough);
    EXPECT_THAT(found(), ElementsAre("Downloads/Plain.app"));

    model->setSelectedCategory(FileCategory::Applications);

    EXPECT_EQ(model->filteredFiles().size(), 1);
}

TEST_P(LargeFilesWorldsTest, TakesAFileWithoutExtensionForADocumentOfAnotherKind)
{
    world->allocate("Documents/mail export", enough);
    ASSERT_THAT(found(), ElementsAre("Documents/mail export"));

    EXPECT_EQ(model->files().first().fileType, FileType::Other);
    EXPECT_EQ(model->offeredCategories().at(int(model->files().first().category)), u"Documents"_qs);
}

TEST_P(LargeFilesWorldsTest, MindsNoCaseOfAnExtension)
{
    world->allocate("Movies/FILM.MP4", enough);
    ASSERT_THAT(found(), ElementsAre("Movies/FILM.MP4"));

    EXPECT_EQ(model->files().first().fileType, FileType::Video);
}

TEST_P(LargeFilesWorldsTest, ShowsNoughtOfACategoryWithoutFiles)
{
    world->allocate("Movies/film.mp4", enough);
    ASSERT_THAT(found(), ElementsAre("Movies/film.mp4"));

    model->setSelectedCategory(FileCategory::DiskImages);

    EXPECT_EQ(model->summary(), u"0 files (Zero KB)"_qs);
    EXPECT_THAT(model->filteredFiles(), IsEmpty());
}

TEST_P(LargeFilesWorldsTest, SurvivesNamesThatAreNoText)
{
    world->allocate("Downloads/\xff\xfe.mkv", enough);
    ASSERT_THAT(found(), ElementsAre("Downloads/\xff\xfe.mkv"));
    EXPECT_EQ(model->files().first().fileType, FileType::Video);

    QCoro::waitFor(model->trash(model->files().first()));

    EXPECT_THAT(found(), IsEmpty());
}

TEST_P(LargeFilesWorldsTest, GoesRoundInNoLoopOfLinks)
{
    world->allocate("Documents/a", enough);
    world->addLink("Documents/up", "..");
    world->addLink("Documents/self", "self");
    world->addLink("Desktop", "Desktop");
    world->addLink("Music", "Pictures");
    world->addLink("Pictures", "Music");

    EXPECT_THAT(found(), ElementsAre("Documents/a"));
}

TEST_P(LargeFilesWorldsTest, WalksVideosBehindMoviesAndWhatTheDesktopNamesBehindItsLikes)
{
    world->allocate("Videos/film", enough);
    world->allocate("Lieder/song", enough);
    world->allocate("Desktop/a", enough);
    world->write(".config/user-dirs.dirs",
                 "XDG_DESKTOP_DIR=\"$HOME/Desktop\"\nXDG_VIDEOS_DIR=\"$HOME/Videos\"\nXDG_MUSIC_DIR=\"$HOME/Lieder\"\n"
                 "XDG_DOWNLOAD_DIR=\"$HOME/\"\n");

    EXPECT_THAT(found(), ElementsAre("Desktop/a", "Videos/film", "Lieder/song"));
}

TEST_P(LargeFilesWorldsTest, WalksAFolderOnceThatIsReachedByALink)
{
    world->allocate("Videos/film", enough);
    world->addLink("Movies", "Videos");

    EXPECT_THAT(found(), ElementsAre("Videos/film"));
}

TEST_P(LargeFilesWorldsTest, MovesAFileThatWasReachedByALinkToTheTrash)
{
    world->allocate("disk/Documents/a", enough);
    world->addLink("Documents", "disk/Documents");
    ASSERT_THAT(found(), ElementsAre("disk/Documents/a"));

    QCoro::waitFor(model->trash(model->files().first()));

    EXPECT_TRUE(model->isEmpty());
    EXPECT_FALSE(world->files()->fileExists(world->home().appending("disk/Documents/a")));
}

TEST_P(LargeFilesWorldsTest, SaysInItsLineWhyAFileThatHasGoneCannotBeMoved)
{
    world->allocate("Downloads/a", enough);
    ASSERT_THAT(found(), ElementsAre("Downloads/a"));
    FileItem gone = model->files().first();
    gone.path = world->home().appending("Downloads/gone");
    testing::internal::CaptureStdout();

    QCoro::waitFor(model->trash(gone));

    const std::string line = testing::internal::GetCapturedStdout();
    EXPECT_THAT(line, testing::StartsWith("Failed to trash file: "));
    EXPECT_THAT(line, testing::EndsWith("/Downloads/gone)\n"));
    EXPECT_FALSE(model->isEmpty());
}
