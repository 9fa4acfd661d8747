#include "ViewModels/SystemDataViewModel.h"

#include "Fakes/ByteUnits.h"
#include "Fakes/Gate.h"
#include "Fakes/InstalledLocalizer.h"
#include "Fakes/PretendMachine.h"
#include "Utilities/BackgroundWork.h"

#include <QCoro/QCoroCore>
#include <QSignalSpy>
#include <QTest>

#include <gmock/gmock.h>

#include <algorithm>
#include <atomic>
#include <numeric>
#include <stdexcept>

using namespace Quillmere;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

const FilePath home("/home/ada");

/// The System Data screen on a pretend disk of 100 GB with 40 GB free.
class SystemDataViewModelTest : public testing::Test
{
protected:
    SystemDataViewModelTest()
    {
        machine.files->setCapacity(VolumeCapacity{100 * gigabyte, 40 * gigabyte, 40 * gigabyte});
    }

    void add(const FilePath &folder, qint64 bytes) { machine.files->addFile(folder.appending("data"), bytes); }
    void addPlace(const QString &category, const FilePath &folder) { machine.places->addEntry(category, {{}, folder}); }
    void scan() { QCoro::waitFor(model->scanStorage()); }

    /// One behind the other, as the screen lists them.
    QList<qint64> sizes()
    {
        QList<qint64> sizes;
        for (const SystemCategoryItem &item : model->storageItems()->items())
            sizes.append(item.size);
        return sizes;
    }

    QVariant role(int row, SystemCategoryListModel::Role role)
    {
        return model->storageItems()->data(model->storageItems()->index(row), role);
    }

    InstalledLocalizer localizer;
    PretendMachine machine;
    std::shared_ptr<ScannerService> scanner = std::make_shared<ScannerService>(machine.files, machine.places);
    std::unique_ptr<SystemDataViewModel> model
        = std::make_unique<SystemDataViewModel>(scanner, machine.files, machine.places);
};

} // namespace

TEST_F(SystemDataViewModelTest, StartsWithNothingButTheInvitation)
{
    EXPECT_TRUE(model->showsStart());
    EXPECT_FALSE(model->isScanning());
    EXPECT_EQ(model->scanProgress(), 0);
    EXPECT_EQ(model->totalDiskSize(), 0);
    EXPECT_EQ(model->freeDiskSize(), 0);
    EXPECT_THAT(sizes(), IsEmpty());
}

TEST_F(SystemDataViewModelTest, ListsSixSlicesInTheirOrderWithTheirColoursAndSymbols)
{
    add(FilePath("/Applications"), 10 * gigabyte);
    add(home.appending("Documents"), 8 * gigabyte);
    add(home.appending("Library/Developer"), 6 * gigabyte);
    add(home.appending("Library/Caches"), 4 * gigabyte);

    scan();

    QStringList rows;
    for (const SystemCategoryItem &item : model->storageItems()->items())
        rows.append(item.name + u' ' + QString::number(item.size / gigabyte) + u' ' + item.icon);
    EXPECT_THAT(rows,
                ElementsAre(u"Applications 10 app.gift"_qs, u"Documents 8 doc"_qs, u"Developer 6 hammer"_qs,
                            u"Caches 4 archivebox"_qs, u"macOS System 32 apple.logo"_qs,
                            u"Free Space 40 circle.dotted"_qs));
    const auto colors = {SliceColor::Blue,   SliceColor::Green, SliceColor::Purple,
                         SliceColor::Orange, SliceColor::Gray,  SliceColor::Teal};
    EXPECT_TRUE(std::ranges::equal(model->storageItems()->items(), colors, {}, &SystemCategoryItem::color));
    EXPECT_EQ(model->totalDiskSize(), 100 * gigabyte);
    EXPECT_EQ(model->freeDiskSize(), 40 * gigabyte);
    EXPECT_EQ(model->scanProgress(), 1.0);
    EXPECT_FALSE(model->isScanning());
}

TEST_F(SystemDataViewModelTest, AddsUpToTheWholeDisk)
{
    add(FilePath("/Applications"), 123'456'789);
    add(home.appending("Library/Caches"), 987'654'321);

    scan();

    const QList<qint64> found = sizes();
    EXPECT_EQ(std::accumulate(found.begin(), found.end(), qint64(0)), model->totalDiskSize());
}

TEST_F(SystemDataViewModelTest, LeavesNoRemainderWhereTheFoldersHoldMoreThanIsInUse)
{
    add(FilePath("/Applications"), 90 * gigabyte);

    scan();

    EXPECT_THAT(sizes(), ElementsAre(90 * gigabyte, 0, 0, 0, 0, 40 * gigabyte));
    EXPECT_EQ(role(0, SystemCategoryListModel::FractionRole).toDouble(), 0.9);
    EXPECT_EQ(role(5, SystemCategoryListModel::FractionRole).toDouble(), 0.4);
}

TEST_F(SystemDataViewModelTest, ListsDeveloperWithZeroWithoutItsFolder)
{
    scan();

    EXPECT_EQ(role(2, SystemCategoryListModel::LabelRole).toString(), u"Developer"_qs);
    EXPECT_EQ(role(2, SystemCategoryListModel::SizeTextRole).toString(), u"Zero KB"_qs);
    EXPECT_EQ(role(2, SystemCategoryListModel::PercentageTextRole).toString(), u"0.0%"_qs);
}

TEST_F(SystemDataViewModelTest, LeavesASliceOfExactlyOnePercentOutOfTheBarAndListsIt)
{
    add(FilePath("/Applications"), gigabyte);
    add(home.appending("Documents"), gigabyte + 1);

    scan();

    EXPECT_EQ(role(0, SystemCategoryListModel::FractionRole).toDouble(), 0);
    EXPECT_EQ(role(0, SystemCategoryListModel::PercentageTextRole).toString(), u"1.0%"_qs);
    EXPECT_EQ(role(0, SystemCategoryListModel::SizeTextRole).toString(), u"1 GB"_qs);
    EXPECT_GT(role(1, SystemCategoryListModel::FractionRole).toDouble(), 0.01);
}

TEST_F(SystemDataViewModelTest, WritesPercentagesWithOneDecimal)
{
    add(FilePath("/Applications"), 18'850'000'000);

    scan();

    EXPECT_EQ(role(0, SystemCategoryListModel::PercentageTextRole).toString(), u"18.9%"_qs);
    EXPECT_EQ(role(5, SystemCategoryListModel::PercentageTextRole).toString(), u"40.0%"_qs);
}

TEST_F(SystemDataViewModelTest, DrawsNothingAndWritesZeroWhereTheDiskHasNoSize)
{
    machine.files->setCapacity(VolumeCapacity{0, 0, 0});
    add(FilePath("/Applications"), gigabyte);

    scan();

    ASSERT_EQ(model->storageItems()->rowCount(), 6);
    for (int row = 0; row < 6; ++row) {
        EXPECT_EQ(role(row, SystemCategoryListModel::FractionRole).toDouble(), 0);
        EXPECT_EQ(role(row, SystemCategoryListModel::PercentageTextRole).toString(), u"0%"_qs);
    }
}

TEST_F(SystemDataViewModelTest, SetsTheProgressJustBeforeEachWalk)
{
    QList<FilePath> folders = {FilePath("/Applications"), home.appending("Documents"),
                               home.appending("Library/Developer"), home.appending("Library/Caches")};
    const auto entered = std::make_shared<std::atomic<int>>(0);
    QList<Gate> gates(4);
    for (const FilePath &folder : folders)
        add(folder, 1);
    machine.files->onMeasure([gates, entered](const FilePath &) { gates.at(entered->fetch_add(1)).wait(); });

    const auto scanning = model->scanStorage();
    EXPECT_TRUE(model->isScanning());
    EXPECT_EQ(model->scanProgress(), 0.1);
    const double expected[] = {0.3, 0.5, 0.7, 0.9};
    for (int walk = 0; walk < 4; ++walk) {
        EXPECT_TRUE(QTest::qWaitFor([&] { return model->scanProgress() == expected[walk]; })) << walk;
        gates.at(walk).open();
    }
    QCoro::waitFor(scanning);

    EXPECT_EQ(model->scanProgress(), 1.0);
    EXPECT_EQ(entered->load(), 4);
}

TEST_F(SystemDataViewModelTest, ShowsTheStartAgainWhenCancelledDuringTheThirdWalk)
{
    add(FilePath("/Applications"), gigabyte);
    add(home.appending("Documents"), gigabyte);
    add(home.appending("Library/Developer"), gigabyte);
    add(home.appending("Library/Caches"), gigabyte);
    QByteArrayList walked;
    machine.files->onMeasure([&](const FilePath &entry) {
        walked.append(entry.deletingLastPathComponent().lastPathComponent());
        if (walked.size() == 3)
            QMetaObject::invokeMethod(model.get(), &SystemDataViewModel::cancelScan, Qt::BlockingQueuedConnection);
    });

    scan();

    EXPECT_THAT(walked, ElementsAre("Applications", "Documents", "Developer"));
    EXPECT_TRUE(model->showsStart());
    EXPECT_FALSE(model->isScanning());
    EXPECT_EQ(model->totalDiskSize(), 100 * gigabyte);
    EXPECT_EQ(model->freeDiskSize(), 40 * gigabyte);
}

TEST_F(SystemDataViewModelTest, ShowsTheStartAtOnceWhenCancelledInAWalkThatIsHeldUp)
{
    add(home.appending("Documents"), gigabyte);
    const Gate gate;
    const auto isHeldUp = std::make_shared<std::atomic_bool>(false);
    machine.files->onMeasure([gate, isHeldUp](const FilePath &) {
        *isHeldUp = true;
        gate.wait();
    });
    const auto scanning = model->scanStorage();
    ASSERT_TRUE(QTest::qWaitFor([&] { return isHeldUp->load(); }));

    model->cancelScan();

    EXPECT_FALSE(model->isScanning());
    EXPECT_TRUE(model->showsStart());
    EXPECT_EQ(model->totalDiskSize(), 100 * gigabyte);
    gate.open();
    QCoro::waitFor(scanning);
    EXPECT_TRUE(model->showsStart());
}

TEST_F(SystemDataViewModelTest, ShowsTheStartAgainWhenCancelledBeforeAnyFolderIsFound)
{
    const Gate gate;
    QList<QFuture<void>> busy;
    for (int i = 0; i < backgroundPool().maxThreadCount(); ++i)
        busy.append(inBackground([gate] { gate.wait(); }));
    const auto scanning = model->scanStorage();
    model->cancelScan();
    gate.open();
    QCoro::waitFor(scanning);

    EXPECT_TRUE(model->showsStart());
    EXPECT_EQ(model->totalDiskSize(), 100 * gigabyte);
    for (QFuture<void> &each : busy)
        each.waitForFinished();
}

TEST_F(SystemDataViewModelTest, ScansAnewAfterACancelledScan)
{
    scanner->cancelScan();

    scan();

    EXPECT_EQ(sizes().size(), 6);
}

TEST_F(SystemDataViewModelTest, CountsAWalkThatFailsAsNothingAndGoesOn)
{
    add(FilePath("/Applications"), gigabyte);
    add(home.appending("Documents"), 2 * gigabyte);
    machine.files->onMeasure([](const FilePath &entry) {
        if (entry.bytes().startsWith("/Applications"))
            throw std::runtime_error("the disk is on fire");
    });

    scan();

    EXPECT_EQ(sizes().value(0), 0);
    EXPECT_EQ(sizes().value(1), 2 * gigabyte);
}

TEST_F(SystemDataViewModelTest, KeepsAFilledListWhenTheScreenComesIntoSightAgain)
{
    model->appear();
    EXPECT_TRUE(QTest::qWaitFor([this] { return !model->isScanning(); }));
    ASSERT_EQ(sizes().size(), 6);
    const QUuid first = model->storageItems()->items().constFirst().id;

    model->appear();

    EXPECT_FALSE(model->isScanning());
    EXPECT_EQ(model->storageItems()->items().constFirst().id, first);
}

TEST_F(SystemDataViewModelTest, EmptiesTheListAtTheStartOfAScanAndMakesNewIdentities)
{
    scan();
    const QUuid first = model->storageItems()->items().constFirst().id;
    add(FilePath("/Applications"), 1);
    const Gate gate;
    machine.files->onMeasure([gate](const FilePath &) { gate.wait(); });

    const auto scanning = model->scanStorage();
    EXPECT_THAT(sizes(), IsEmpty());
    gate.open();
    QCoro::waitFor(scanning);

    EXPECT_NE(model->storageItems()->items().constFirst().id, first);
}

TEST_F(SystemDataViewModelTest, AddsTheFoldersOfThePlatformToTheirCategories)
{
    add(FilePath("/Applications"), 1);
    add(FilePath("/usr"), 20);
    add(FilePath("/opt"), 300);
    add(home.appending(".cache"), 4000);
    addPlace(u"Applications"_qs, FilePath("/usr"));
    addPlace(u"Applications"_qs, FilePath("/opt"));
    addPlace(u"Caches"_qs, home.appending(".cache"));

    scan();

    EXPECT_EQ(sizes().value(0), 321);
    EXPECT_EQ(sizes().value(3), 4000);
}

TEST_F(SystemDataViewModelTest, CountsNoFileTwiceWhateverFoldersLieInOthersOrLinkToThem)
{
    add(home.appending("Documents/Android/Sdk"), 20);
    add(home.appending("Library/Caches/go"), 300);
    add(home.appending("Papers"), 4000);
    machine.files->addLink(home.appending("Papiere"), home.appending("Papers"));
    addPlace(u"Documents"_qs, home.appending("Papers"));
    addPlace(u"Documents"_qs, home.appending("Papiere"));
    addPlace(u"Documents"_qs, home);
    addPlace(u"Developer"_qs, home.appending("Documents/Android/Sdk"));
    addPlace(u"Caches"_qs, home.appending("Library/Caches/go"));

    scan();

    EXPECT_THAT(sizes().first(4), ElementsAre(0, 4020, 0, 300));
}

TEST_F(SystemDataViewModelTest, AddsNothingThatLiesOnAnotherVolume)
{
    machine.files->addVolume(FilePath("/data"));
    machine.files->addVolume(home.appending("Documents/Films"));
    add(FilePath("/data/cache"), 300);
    add(home.appending("Documents/Films"), 4000);
    add(home.appending("Documents"), 5);
    machine.files->addLink(home.appending(".cache"), FilePath("/data/cache"));
    addPlace(u"Caches"_qs, home.appending(".cache"));

    scan();

    EXPECT_THAT(sizes().first(4), ElementsAre(0, 5, 0, 0));
}

TEST_F(SystemDataViewModelTest, CountsItsOwnFoldersEvenInAHomeThatIsAVolumeOfItsOwn)
{
    machine.files->addVolume(FilePath("/home"));
    add(home.appending("Documents"), 5);
    add(home.appending("Papers"), 300);
    add(FilePath("/Applications"), 7);
    addPlace(u"Documents"_qs, home.appending("Papers"));

    scan();

    EXPECT_THAT(sizes().first(4), ElementsAre(7, 5, 0, 0));
}

TEST_F(SystemDataViewModelTest, EndsAScanWithTheScreen)
{
    add(FilePath("/Applications"), 1);
    add(home.appending("Documents"), 1);
    const Gate gate;
    const auto walked = std::make_shared<std::atomic<int>>(0);
    machine.files->onMeasure([gate, walked](const FilePath &) {
        ++*walked;
        gate.wait();
    });
    const auto scanning = model->scanStorage();
    EXPECT_TRUE(QTest::qWaitFor([&] { return walked->load() == 1; }));

    model.reset();
    gate.open();
    QCoro::waitFor(scanning);

    EXPECT_EQ(walked->load(), 1);
}

TEST_F(SystemDataViewModelTest, TurnsItsLabelsAndFiguresWhenTheLanguageChanges)
{
    scan();
    const QSignalSpy changed(model->storageItems(), &QAbstractItemModel::dataChanged);
    const QSignalSpy capacity(model.get(), &SystemDataViewModel::capacityChanged);
    EXPECT_EQ(role(5, SystemCategoryListModel::LabelRole).toString(), u"Free Space"_qs);

    localizer->setLanguage(Language::Spanish);

    EXPECT_EQ(role(5, SystemCategoryListModel::LabelRole).toString(), u"Espacio libre"_qs);
    EXPECT_EQ(changed.count(), 1);
    EXPECT_EQ(capacity.count(), 1);
}

TEST_F(SystemDataViewModelTest, NamesEachCategoryByItsKeyAndAnyOtherAsItStands)
{
    localizer->setLanguage(Language::English);
    for (const char *name : {"Applications", "Documents", "Developer", "Caches", "macOS System", "Free Space",
                             "applications", "Something else"})
        EXPECT_EQ(localizedCategoryName(QString::fromLatin1(name)), QString::fromLatin1(name));

    localizer->setLanguage(Language::Russian);
    EXPECT_EQ(localizedCategoryName(u"macOS System"_qs), u"Система macOS"_qs);
    EXPECT_EQ(localizedCategoryName(u"macos system"_qs), u"macos system"_qs);
}
