#include "Fakes/Gate.h"
#include "ViewModels/LargeFilesFixture.h"

#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>

#include <gmock/gmock.h>

using namespace Quillmere;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class LargeFilesListTest : public LargeFilesFixture
{
protected:
    FileItem fileNamed(const QString &name) const
    {
        for (const FileItem &file : model->files()) {
            if (file.name == name)
                return file;
        }
        ADD_FAILURE() << "There is no " << name.toStdString();
        return {};
    }
};

const QDateTime day({2026, 3, 4}, {12, 0}, Qt::UTC);

} // namespace

TEST_F(LargeFilesListTest, SortsBySizeAndTurnsTheOrderRoundOnASecondClick)
{
    addFile("Downloads/middle", least + 2);
    addFile("Downloads/small", least);
    addFile("Downloads/large", least + 3);
    scan();
    EXPECT_THAT(shown(), ElementsAre(u"large"_qs, u"middle"_qs, u"small"_qs));

    model->toggleSort(SortField::Size);

    EXPECT_THAT(shown(), ElementsAre(u"small"_qs, u"middle"_qs, u"large"_qs));
    EXPECT_TRUE(model->sortAscending());
    EXPECT_THAT(found(), ElementsAre(u"large"_qs, u"middle"_qs, u"small"_qs)) << "files() stay in the order of paths.";
}

TEST_F(LargeFilesListTest, SortsNamesDescendingAtTheFirstClickAndNumbersByTheirValue)
{
    for (const char *name : {"Mix 10", "mix 2", "Mix 2", "Álbum", "Zoo", "album 3", "2", "10"})
        addFile(QByteArray("Music/") + name);
    scan();

    model->toggleSort(SortField::Name);

    EXPECT_FALSE(model->sortAscending());
    EXPECT_THAT(
        shown(),
        ElementsAre(u"Zoo"_qs, u"Mix 10"_qs, u"Mix 2"_qs, u"mix 2"_qs, u"album 3"_qs, u"Álbum"_qs, u"10"_qs, u"2"_qs));
    model->toggleSort(SortField::Name);
    EXPECT_THAT(
        shown(),
        ElementsAre(u"2"_qs, u"10"_qs, u"Álbum"_qs, u"album 3"_qs, u"mix 2"_qs, u"Mix 2"_qs, u"Mix 10"_qs, u"Zoo"_qs));
}

TEST_F(LargeFilesListTest, GoesBackToDescendingWithEveryOtherColumn)
{
    model->toggleSort(SortField::Size);
    ASSERT_TRUE(model->sortAscending());

    for (const SortField field : {SortField::Date, SortField::Name, SortField::Size}) {
        model->toggleSort(field);
        EXPECT_EQ(model->sortField(), field);
        EXPECT_FALSE(model->sortAscending());
    }
}

TEST_F(LargeFilesListTest, TakesFilesWithoutADateForTheOldest)
{
    addChanged("Downloads/new", day);
    addFile("Downloads/unknown");
    addChanged("Downloads/older than the epoch", QDateTime({1901, 1, 1}, {0, 0}, Qt::UTC));
    addChanged("Downloads/old", day.addDays(-1));
    scan();

    model->toggleSort(SortField::Date);
    EXPECT_THAT(shown(), ElementsAre(u"new"_qs, u"old"_qs, u"older than the epoch"_qs, u"unknown"_qs));

    model->toggleSort(SortField::Date);
    EXPECT_THAT(shown(), ElementsAre(u"unknown"_qs, u"older than the epoch"_qs, u"old"_qs, u"new"_qs));
}

TEST_F(LargeFilesListTest, LeavesEqualFilesInTheirOrderAscendingAndTurnsThemRoundDescending)
{
    for (const char *name : {"a", "b", "c", "d", "e"})
        addChanged(QByteArray("Downloads/") + name, day);
    addFile("Downloads/f", least + 1);
    scan();

    for (const SortField field : {SortField::Size, SortField::Date}) {
        model->toggleSort(field == SortField::Size ? SortField::Name : SortField::Size);
        model->toggleSort(field);
        const QStringList descending = shown();
        model->toggleSort(field);
        const QStringList ascending = shown();
        EXPECT_EQ(ascending.filter(QRegularExpression(u"[a-e]"_qs)),
                  QStringList({u"a"_qs, u"b"_qs, u"c"_qs, u"d"_qs, u"e"_qs}));
        EXPECT_EQ(descending, QStringList(ascending.rbegin(), ascending.rend()));
    }
}

TEST_F(LargeFilesListTest, LeavesFilesOfOneNameInTheOrderOfTheirFolders)
{
    addFile("Downloads/same");
    addFile("Documents/same");
    addFile("Pictures/same");
    scan();
    model->toggleSort(SortField::Name);
    model->toggleSort(SortField::Name);

    QList<FilePath> paths;
    for (const FileItem &file : model->filteredFiles())
        paths.append(file.path);

    EXPECT_THAT(paths, ElementsAre(inHome("Downloads/same"), inHome("Documents/same"), inHome("Pictures/same")));
}

TEST_F(LargeFilesListTest, ShowsTheFilesOfTheSelectedCategoryAlone)
{
    for (const char *name : {"a.mp4", "b.PNG", "c.flac", "d.zip", "e.iso", "f.pkg", "g.app", "h.pdf", "i.bin", "j"})
        addFile(QByteArray("Downloads/") + name);
    scan();
    model->toggleSort(SortField::Name);
    model->toggleSort(SortField::Name);

    const auto shownOf = [this](FileCategory category) {
        model->setSelectedCategory(category);
        return shown();
    };
    EXPECT_THAT(shownOf(FileCategory::Files), ElementsAre(u"h.pdf"_qs, u"i.bin"_qs, u"j"_qs));
    EXPECT_THAT(shownOf(FileCategory::Media), ElementsAre(u"a.mp4"_qs, u"b.PNG"_qs, u"c.flac"_qs));
    EXPECT_THAT(shownOf(FileCategory::Applications), ElementsAre(u"g.app"_qs));
    EXPECT_THAT(shownOf(FileCategory::Archives), ElementsAre(u"d.zip"_qs));
    EXPECT_THAT(shownOf(FileCategory::Installers), ElementsAre(u"f.pkg"_qs));
    EXPECT_THAT(shownOf(FileCategory::DiskImages), ElementsAre(u"e.iso"_qs));
    EXPECT_THAT(shownOf(FileCategory::Developer), IsEmpty());
    EXPECT_THAT(shownOf(FileCategory::OldFiles), IsEmpty());
    EXPECT_EQ(shownOf(FileCategory::All).size(), 10);
}

TEST_F(LargeFilesListTest, CountsAndAddsUpWhatIsShown)
{
    addFile("Downloads/a.zip", 50'000'000);
    addFile("Downloads/b.pdf", 1'184'567'000);
    scan();
    EXPECT_EQ(model->summary(), u"2 files (1.23 GB)"_qs);

    model->setSelectedCategory(FileCategory::Archives);
    EXPECT_EQ(model->summary(), u"1 files (50 MB)"_qs);

    model->setSelectedCategory(FileCategory::Installers);
    EXPECT_EQ(model->summary(), u"0 files (Zero KB)"_qs);
    EXPECT_EQ(model->rows()->rowCount(), 0);
    EXPECT_FALSE(model->isEmpty());
}

TEST_F(LargeFilesListTest, KeepsCategoryAndOrderThroughAnotherScan)
{
    addFile("Downloads/a.zip");
    addFile("Downloads/b.zip");
    addFile("Downloads/c.pdf");
    scan();
    model->setSelectedCategory(FileCategory::Archives);
    model->toggleSort(SortField::Name);

    scan();

    EXPECT_THAT(shown(), ElementsAre(u"b.zip"_qs, u"a.zip"_qs));
}

TEST_F(LargeFilesListTest, ShowsOfEachFileItsIconNamePathSizeAndDate)
{
    addFile("Movies/film.mp4", 61'400'000);
    machine.files->setTimes(inHome("Movies/film.mp4"), day, day);
    addFile("Movies/\xff odd\nname", least);
    scan();

    EXPECT_EQ(role(0, LargeFilesListModel::NameRole), u"film.mp4"_qs);
    EXPECT_EQ(role(0, LargeFilesListModel::PathTextRole), u"/home/ada/Movies/film.mp4"_qs);
    EXPECT_EQ(role(0, LargeFilesListModel::IconRole), u"film"_qs);
    EXPECT_EQ(role(0, LargeFilesListModel::SizeTextRole), u"61.4 MB"_qs);
    EXPECT_TRUE(role(0, LargeFilesListModel::DateTextRole).toString().contains(u"2026"_qs));
    EXPECT_FALSE(role(0, LargeFilesListModel::DateTextRole).toString().contains(u':'));
    EXPECT_EQ(role(1, LargeFilesListModel::NameRole), u"\uFFFD odd\uFFFDname"_qs);
    EXPECT_EQ(role(1, LargeFilesListModel::DateTextRole), u"-"_qs);
    EXPECT_EQ(role(1, LargeFilesListModel::FileRole).value<FileItem>().path, inHome("Movies/\xff odd\nname"));
}

TEST_F(LargeFilesListTest, FollowsAChangeOfLanguageInItsWordsAndItsAlphabet)
{
    for (const char *name : {"nz",
                             "\xc3\xb1"
                             "a",
                             "o"})
        addFile(QByteArray("Downloads/") + name);
    scan();
    model->toggleSort(SortField::Name);
    model->toggleSort(SortField::Name);
    ASSERT_THAT(shown(), ElementsAre(u"ña"_qs, u"nz"_qs, u"o"_qs));
    EXPECT_THAT(model->offeredCategories(),
                ElementsAre(u"All Files"_qs, u"Documents"_qs, u"Media"_qs, u"Apps"_qs, u"Archives"_qs, u"Installers"_qs,
                            u"Disk Images"_qs));
    const QSignalSpy words(model.get(), &LargeFilesViewModel::languageChanged);

    localizer->setLanguage(Language::Spanish);

    EXPECT_THAT(shown(), ElementsAre(u"nz"_qs, u"ña"_qs, u"o"_qs));
    EXPECT_EQ(words.count(), 1);
    EXPECT_EQ(model->offeredCategories().first(), u"Todos los archivos"_qs);
    EXPECT_EQ(model->summary(), u"3 archivos (150 MB)"_qs);
}

TEST_F(LargeFilesListTest, MovesAFileToTheTrashAndTakesItsRowAwayWithoutAnotherScan)
{
    addFile("Downloads/a", least + 3);
    addFile("Downloads/b", least + 2);
    addFile("Downloads/c", least + 1);
    scan();
    int looks = 0;
    machine.files->onMeasure([&](const FilePath &) { ++looks; });
    const QSignalSpy resets(model->rows(), &QAbstractItemModel::modelReset);

    QCoro::waitFor(model->trash(fileNamed(u"b"_qs)));

    EXPECT_THAT(machine.files->trashed(), ElementsAre(inHome("Downloads/b")));
    EXPECT_THAT(machine.files->removed(), IsEmpty());
    EXPECT_THAT(found(), ElementsAre(u"a"_qs, u"c"_qs));
    EXPECT_THAT(shown(), ElementsAre(u"a"_qs, u"c"_qs));
    EXPECT_EQ(model->summary(), u"2 files (100 MB)"_qs);
    EXPECT_EQ(looks, 0);
    EXPECT_EQ(resets.count(), 0) << "The list stays where it was scrolled to.";
    EXPECT_FALSE(machine.files->contains(inHome("Library/Application Support/Quillmere/history.json")));
}

TEST_F(LargeFilesListTest, SortsByNameStillAfterAFileHasGone)
{
    for (const char *name : {"d", "b", "c", "a"})
        addFile(QByteArray("Downloads/") + name);
    scan();
    QCoro::waitFor(model->trash(fileNamed(u"b"_qs)));

    model->toggleSort(SortField::Name);

    EXPECT_THAT(shown(), ElementsAre(u"d"_qs, u"c"_qs, u"a"_qs));
}

TEST_F(LargeFilesListTest, InvitesAgainWhenTheLastFileHasGone)
{
    addFile("Downloads/a");
    scan();

    QCoro::waitFor(model->trash(fileNamed(u"a"_qs)));

    EXPECT_TRUE(model->isEmpty());
}

TEST_F(LargeFilesListTest, RefusesProtectedLocationsWithoutAWord)
{
    machine.files->addFolder(inHome("Documents"));
    machine.files->addFolder(FilePath("/usr"));
    addFile("Downloads/a");
    scan();
    testing::internal::CaptureStdout();

    for (const FilePath &path : {inHome("Documents"), inHome("Library"), FilePath("/usr"), FilePath("/usr/"),
                                 FilePath("/home/ada"), inHome("Downloads/../Music")}) {
        FileItem file = fileNamed(u"a"_qs);
        file.path = path;
        QCoro::waitFor(model->trash(file));
    }

    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_THAT(machine.files->trashed(), IsEmpty());
    EXPECT_THAT(found(), ElementsAre(u"a"_qs));
}

TEST_F(LargeFilesListTest, PrintsWhatCouldNotBeMovedAndLeavesItsRow)
{
    addFile("Downloads/a");
    machine.files->refuse(inHome("Downloads/a"), Failure::Kind::NoPermission);
    scan();
    testing::internal::CaptureStdout();

    QCoro::waitFor(model->trash(fileNamed(u"a"_qs)));

    EXPECT_EQ(testing::internal::GetCapturedStdout(), "Failed to trash file: pretended (/home/ada/Downloads/a)\n");
    EXPECT_THAT(shown(), ElementsAre(u"a"_qs));
}

TEST_F(LargeFilesListTest, MovesAFileOnceHoweverOftenItIsAsked)
{
    addFile("Downloads/a");
    scan();
    const FileItem file = fileNamed(u"a"_qs);
    const Gate gate;
    machine.files->onRemoval([gate](const FilePath &) { gate.wait(); });
    testing::internal::CaptureStdout();

    const auto first = model->trash(file);
    const auto second = model->trash(file);
    gate.open();
    QCoro::waitFor(first);
    QCoro::waitFor(second);

    EXPECT_EQ(machine.files->trashed().size(), 1);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
}

TEST_F(LargeFilesListTest, FinishesAMoveThatItsScreenDoesNotSeeTheEndOf)
{
    addFile("Downloads/a");
    scan();
    const Gate gate;
    machine.files->onRemoval([gate](const FilePath &) { gate.wait(); });
    const auto moving = model->trash(fileNamed(u"a"_qs));
    EXPECT_FALSE(runs.isEmpty());

    model.reset();
    gate.open();
    QCoro::waitFor(moving);

    EXPECT_THAT(machine.files->trashed(), ElementsAre(inHome("Downloads/a")));
    EXPECT_TRUE(runs.isEmpty());
}

TEST_F(LargeFilesListTest, RevealsTheOneFile)
{
    addFile("Downloads/a");
    addFile("Downloads/b");
    scan();

    model->revealInFinder(fileNamed(u"b"_qs));

    EXPECT_TRUE(QTest::qWaitFor([this] { return !machine.workspace->revealed().isEmpty(); }));
    EXPECT_THAT(machine.workspace->revealed(), ElementsAre(inHome("Downloads/b")));
}

TEST_F(LargeFilesListTest, AsksAboutAFileByItsNameAndSize)
{
    addFile("Downloads/film.mp4", 61'400'000);
    scan();

    EXPECT_EQ(model->descriptionOf(fileNamed(u"film.mp4"_qs)), u"film.mp4\nSize: 61.4 MB"_qs);
}
