#include "Fakes/Gate.h"
#include "Utilities/BackgroundWork.h"
#include "ViewModels/LargeFilesFixture.h"

#include <QSignalSpy>
#include <QTest>

#include <gmock/gmock.h>

#include <atomic>

using namespace Quillmere;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class LargeFilesScanTest : public LargeFilesFixture
{
protected:
    /// Has the walk wait before the item of that number, and says so.
    struct Stop
    {
        Gate reached;
        Gate goOn;
        std::shared_ptr<std::atomic<int>> items = std::make_shared<std::atomic<int>>(0);
    };

    Stop stopBefore(int item)
    {
        const Stop stop;
        machine.files->onMeasure([stop, item](const FilePath &) {
            if (++*stop.items != item)
                return;
            stop.reached.open();
            stop.goOn.wait();
        });
        return stop;
    }

    void addItems(const QByteArray &folder, int count)
    {
        for (int i = 0; i < count; ++i)
            addFile(folder + '/' + QByteArray::number(i / 1000) + '/' + QByteArray::number(i), 1);
    }

    /// The progress that was shown, each time with its text.
    struct Shown
    {
        double fraction;
        QString text;
    };
    std::shared_ptr<QList<Shown>> watchProgress()
    {
        auto seen = std::make_shared<QList<Shown>>();
        QObject::connect(model.get(), &LargeFilesViewModel::progressChanged, model.get(), [this, seen] {
            seen->append({model->scanProgress(), model->currentScanningPath()});
        });
        return seen;
    }
};

} // namespace

TEST_F(LargeFilesScanTest, BeginsWithNothingFoundAndTheLargestFirst)
{
    EXPECT_THAT(model->files(), IsEmpty());
    EXPECT_FALSE(model->isScanning());
    EXPECT_EQ(model->scanProgress(), 0);
    EXPECT_EQ(model->currentScanningPath(), QString());
    EXPECT_EQ(model->selectedCategory(), FileCategory::All);
    EXPECT_FALSE(model->isCancelled());
    EXPECT_EQ(model->sortField(), SortField::Size);
    EXPECT_FALSE(model->sortAscending());
}

TEST_F(LargeFilesScanTest, RaisesTheOverlayAtOnceAndEmptiesTheList)
{
    addFile("Downloads/a");
    scan();
    ASSERT_THAT(found(), ElementsAre(u"a"_qs));
    const Stop stop = stopBefore(1);

    const auto scanning = model->scan();

    EXPECT_TRUE(model->isScanning());
    EXPECT_FALSE(model->isCancelled());
    EXPECT_EQ(model->scanProgress(), 0);
    EXPECT_EQ(model->currentScanningPath(), u"Starting scan..."_qs);
    EXPECT_THAT(model->files(), IsEmpty());
    EXPECT_THAT(model->filteredFiles(), IsEmpty());
    stop.goOn.open();
    QCoro::waitFor(scanning);
    EXPECT_FALSE(model->isScanning());
    EXPECT_THAT(found(), ElementsAre(u"a"_qs));
}

TEST_F(LargeFilesScanTest, TellsOfItsStepsInTheirOrder)
{
    addFile("Downloads/a");
    QStringList steps;
    QObject::connect(model.get(), &LargeFilesViewModel::isScanningChanged, model.get(),
                     [&] { steps.append(model->isScanning() ? u"scanning"_qs : u"done"_qs); });
    QObject::connect(model.get(), &LargeFilesViewModel::progressChanged, model.get(),
                     [&] { steps.append(model->currentScanningPath()); });
    QObject::connect(model.get(), &LargeFilesViewModel::filesChanged, model.get(),
                     [&] { steps.append(QString::number(model->files().size())); });

    scan();

    EXPECT_THAT(steps, ElementsAre(u"scanning"_qs, u"Starting scan..."_qs, u"0"_qs, u"1"_qs, u"done"_qs));
}

TEST_F(LargeFilesScanTest, WalksSixFoldersInTheirOrderAndNothingElse)
{
    for (const char *folder : {"Pictures", "Music", "Movies", "Desktop", "Documents", "Downloads", "Public", "work"})
        addFile(QByteArray(folder) + "/in " + folder);
    addFile("in the home");
    machine.files->addFile(FilePath("/srv/outside"), least);

    scan();

    EXPECT_THAT(found(),
                ElementsAre(u"in Downloads"_qs, u"in Documents"_qs, u"in Desktop"_qs, u"in Movies"_qs, u"in Music"_qs,
                            u"in Pictures"_qs));
}

TEST_F(LargeFilesScanTest, TakesAFileOfExactlyFiftyMillionAllocatedBytesAndNoneOfOneLess)
{
    addFile("Downloads/exact", 50'000'000);
    addFile("Downloads/less", 49'999'999);
    machine.files->addSparseFile(inHome("Downloads/long"), qint64(1) << 40, 49'999'999);
    machine.files->addSparseFile(inHome("Downloads/short"), 1, 50'000'000);

    scan();

    EXPECT_THAT(found(), ElementsAre(u"exact"_qs, u"short"_qs));
}

TEST_F(LargeFilesScanTest, KnowsOfAFileWhatTheDiskTells)
{
    const QDateTime opened({2026, 5, 1}, {10, 0}, Qt::UTC);
    const QDateTime changed({2025, 4, 3}, {2, 1}, Qt::UTC);
    addFile("Movies/deep/Film.MKV", least + 1);
    machine.files->setTimes(inHome("Movies/deep/Film.MKV"), opened, changed);

    scan();

    FileItem expected;
    expected.id = model->files().value(0).id;
    expected.name = u"Film.MKV"_qs;
    expected.path = inHome("Movies/deep/Film.MKV");
    expected.size = least + 1;
    expected.fileType = FileType::Video;
    expected.category = FileCategory::Media;
    expected.lastOpened = opened;
    expected.lastModified = changed;
    EXPECT_THAT(model->files(), ElementsAre(expected));
    EXPECT_FALSE(expected.id.isNull());
}

TEST_F(LargeFilesScanTest, ShowsEveryHundredthItemAsAPartOfItsFoldersBand)
{
    addItems("Desktop", 249); // With the folder around them, 250.
    const auto seen = watchProgress();

    scan();

    ASSERT_FALSE(seen->isEmpty());
    EXPECT_DOUBLE_EQ(seen->last().fraction, 2.0 / 6 + 1.0 / 6 * 0.02);
    EXPECT_EQ(seen->last().text, u"198"_qs);
}

TEST_F(LargeFilesScanTest, ShowsNothingOfLessThanAHundredItems)
{
    addItems("Desktop", 98);
    const auto seen = watchProgress();

    scan();

    EXPECT_EQ(seen->size(), 1);
    EXPECT_EQ(seen->last().text, u"Starting scan..."_qs);
}

TEST_F(LargeFilesScanTest, StaysBelowTheEndOfABandHoweverManyItemsItHolds)
{
    addItems("Downloads", 10'200);
    const auto seen = watchProgress();

    scan();

    EXPECT_DOUBLE_EQ(seen->last().fraction, 1.0 / 6 * 0.99);
}

TEST_F(LargeFilesScanTest, IsEmptyAfterBeingCancelledAmongThousandsOfFiles)
{
    for (int i = 0; i < 100; ++i)
        addFile("Downloads/" + QByteArray::number(i));
    addItems("Documents", 3000);
    addFile("Pictures/a");
    const Stop stop = stopBefore(2500);
    const auto scanning = model->scan();
    stop.reached.wait();

    model->cancelScan();

    EXPECT_FALSE(model->isScanning());
    EXPECT_TRUE(model->isCancelled());
    stop.goOn.open();
    QCoro::waitFor(scanning);
    EXPECT_TRUE(QTest::qWaitFor([] { return backgroundPool().activeThreadCount() == 0; }));
    EXPECT_EQ(*stop.items, 2500) << "It stops at the next item.";
    EXPECT_THAT(model->files(), IsEmpty());
    EXPECT_FALSE(model->isScanning());
}

TEST_F(LargeFilesScanTest, IsNotDisturbedByACancelledScanThatEndsLate)
{
    addFile("Downloads/a");
    const Stop stop = stopBefore(1);
    const auto cancelled = model->scan();
    stop.reached.wait();
    model->cancelScan();

    const auto second = model->scan();
    stop.goOn.open();
    QCoro::waitFor(cancelled);
    QCoro::waitFor(second);

    EXPECT_THAT(found(), ElementsAre(u"a"_qs));
    EXPECT_FALSE(model->isScanning());
    EXPECT_FALSE(model->isCancelled());
}

TEST_F(LargeFilesScanTest, EndsWithItsScreen)
{
    addItems("Downloads", 50);
    const Stop stop = stopBefore(10);
    const auto scanning = model->scan();
    stop.reached.wait();

    model.reset();

    stop.goOn.open();
    QCoro::waitFor(scanning);
    EXPECT_EQ(*stop.items, 10);
}

TEST_F(LargeFilesScanTest, PassesOverWhatCannotBeReadOrVanishes)
{
    addFile("Downloads/locked/a");
    addFile("Downloads/seen");
    addFile("Downloads/vanishing");
    machine.files->lock(inHome("Downloads/locked"));
    machine.files->onMeasure([this](const FilePath &path) {
        if (path == inHome("Downloads/vanishing"))
            machine.files->vanish(path);
    });

    scan();

    EXPECT_THAT(found(), ElementsAre(u"seen"_qs));
}

TEST_F(LargeFilesScanTest, WalksWhatThePlatformHasBehindAFolderInThatFoldersBand)
{
    addFile("Movies/own", least);
    addFile("Videos/film", least);
    addItems("Videos", 99); // With the film and the folder around them, 101.
    addFile("Music/song", least);
    machine.places->addEntry(u"Large Files: Movies"_qs, {QString(), inHome("Videos")});
    const auto seen = watchProgress();

    scan();

    EXPECT_THAT(found(), ElementsAre(u"own"_qs, u"film"_qs, u"song"_qs));
    // The second of two halves of the fourth sixth.
    EXPECT_DOUBLE_EQ(seen->last().fraction, 3.5 / 6 + 0.5 / 6 * 0.01);
}

TEST_F(LargeFilesScanTest, GivesAFolderBehindTheWholeBandWhereThereIsNoOther)
{
    addItems("Videos", 99);
    machine.places->addEntry(u"Large Files: Movies"_qs, {QString(), inHome("Videos")});
    const auto seen = watchProgress();

    scan();

    EXPECT_DOUBLE_EQ(seen->last().fraction, 3.0 / 6 + 1.0 / 6 * 0.01);
}

TEST_F(LargeFilesScanTest, FindsAFileOnceHoweverManyWaysLeadToIt)
{
    addFile("Videos/film");
    addFile("Documents/scores/score");
    addFile("Documents/letter");
    machine.files->addLink(inHome("Movies"), FilePath("Videos"));
    machine.places->addEntry(u"Large Files: Movies"_qs, {QString(), inHome("Videos")});
    machine.places->addEntry(u"Large Files: Music"_qs, {QString(), inHome("Documents/scores")});
    addFile("work/Pictures/photo");
    machine.files->addLink(inHome("Pictures"), FilePath("work/Pictures"));
    machine.places->addEntry(u"Large Files: Pictures"_qs, {QString(), inHome("work")});

    scan();

    EXPECT_THAT(found(), ElementsAre(u"letter"_qs, u"score"_qs, u"film"_qs, u"photo"_qs));
    EXPECT_EQ(model->files().at(2).path, inHome("Videos/film")) << "where it truly is, so that it can be moved";
}

TEST_F(LargeFilesScanTest, NeverWalksTheHomeItselfOrWhatHoldsIt)
{
    addFile("secret");
    machine.files->addLink(inHome("Downloads"), FilePath("."));
    machine.files->addLink(inHome("Desktop"), FilePath("/home"));
    machine.places->addEntry(u"Large Files: Music"_qs, {QString(), inHome("")});
    machine.places->addEntry(u"Large Files: Music"_qs, {QString(), FilePath("/")});

    scan();

    EXPECT_THAT(found(), IsEmpty());
}

TEST_F(LargeFilesScanTest, FindsNothingInAHomeBelowAFolderNamedLibrary)
{
    const auto disk = std::make_shared<PretendFileManager>(FilePath("/Library/home"));
    disk->addFile(FilePath("/Library/home/Downloads/a"), least);
    LargeFilesViewModel other(disk, machine.places, machine.workspace);

    QCoro::waitFor(other.scan());

    EXPECT_THAT(other.files(), IsEmpty());
}

TEST_F(LargeFilesScanTest, IsHeldUpByNoFolderOfAVolumeThatAnswersNobody)
{
    addFile("Downloads/film.mp4");
    addFile("Documents/report.pdf");
    machine.files->addVolume(inHome("Documents"));
    machine.files->addFile(FilePath("/mnt/nas/song.mp3"), least);
    machine.files->addVolume(FilePath("/mnt/nas"));
    machine.files->addLink(inHome("Music"), FilePath("/mnt/nas"));
    machine.files->fallSilent(inHome("Documents"));
    machine.files->fallSilent(FilePath("/mnt/nas"));

    scan();

    EXPECT_THAT(found(), ElementsAre(u"film.mp4"_qs));
    EXPECT_THAT(machine.files->heldUp(), IsEmpty());
}
