#include "Fakes/Gate.h"
#include "Fakes/HeldCalls.h"
#include "ViewModels/ApplicationsFixture.h"

#include <QTest>

#include <gmock/gmock.h>

#include <atomic>

using namespace Quillmere;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class ApplicationsLifeTest : public ApplicationsFixture
{
};

} // namespace

struct CancelCase
{
    const char *name;
    const char *at; ///< The item whose measuring is under way when the scan is cancelled.
};

class ApplicationsCancelTest : public ApplicationsFixture, public testing::WithParamInterface<CancelCase>
{
};

TEST_P(ApplicationsCancelTest, LeavesTheListEmptyAndInvitesAgain)
{
    addPainter();
    addBundle("/Applications/Other.app", 10);
    machine.files->onMeasure([this](const FilePath &path) {
        const auto cancel = [this] { model->cancelScan(); };
        if (path == FilePath(GetParam().at))
            QMetaObject::invokeMethod(model.get(), cancel, Qt::BlockingQueuedConnection);
    });

    scan();

    EXPECT_THAT(apps(), IsEmpty());
    EXPECT_FALSE(model->isScanning());
    EXPECT_TRUE(scanner->isCancelled());
    machine.files->onMeasure({});
    scan();
    EXPECT_EQ(apps().size(), 2);
}

INSTANTIATE_TEST_SUITE_P(
    Moments, ApplicationsCancelTest,
    testing::Values(CancelCase{"InTheFirstBundle", "/Applications/Painter.app/Contents"},
                    CancelCase{"InALeftover", "/home/ada/Library/Caches/com.example.painter/data"},
                    CancelCase{"InTheLastLeftover", "/home/ada/Library/Containers/com.example.painter/data"},
                    CancelCase{"InTheLastBundle", "/Applications/Other.app/Contents/MacOS/program"}),
    [](const auto &info) { return info.param.name; });

TEST_F(ApplicationsLifeTest, IsOverAsSoonAsItIsCancelledHoweverLongThePlatformGoesOnListing)
{
    addPainter();
    const Gate gate;
    const Gate reached;
    machine.applications->onListing([gate, reached] {
        reached.open();
        gate.wait();
    });
    const auto scanning = model->scanApplications();
    while (!reached.isOpen())
        QTest::qWait(1);

    model->cancelScan();

    EXPECT_FALSE(model->isScanning());
    gate.open();
    QCoro::waitFor(scanning);
    EXPECT_FALSE(model->isScanning());
    EXPECT_THAT(apps(), IsEmpty());
}

TEST_F(ApplicationsLifeTest, IsCancelledThroughItsScannerAlone)
{
    addPainter();
    machine.files->onMeasure([this](const FilePath &) { scanner->cancelScan(); });

    scan();

    EXPECT_THAT(apps(), IsEmpty());
    EXPECT_FALSE(model->isScanning());
}

TEST_F(ApplicationsLifeTest, KeepsAListThatIsThereWhenTheScreenComesUp)
{
    addPainter();
    scan();
    const QUuid before = app().id;

    model->scanIfEmpty();

    EXPECT_FALSE(model->isScanning());
    EXPECT_EQ(app().id, before);
}

TEST_F(ApplicationsLifeTest, LetsALaterScanTakeThePlaceOfAnEarlierOne)
{
    addPainter();
    const HeldCalls held(2);
    machine.files->onMeasure([held](const FilePath &) { held.pass(); });
    const auto earlier = model->scanApplications();
    EXPECT_TRUE(QTest::qWaitFor([&held] { return held.arrived() == 1; }));
    const auto later = model->scanApplications();
    EXPECT_TRUE(QTest::qWaitFor([&held] { return held.arrived() == 2; }));

    held.release(0);
    QCoro::waitFor(earlier);
    EXPECT_TRUE(model->isScanning());
    EXPECT_THAT(names(), IsEmpty());

    held.release(1);
    QCoro::waitFor(later);
    EXPECT_FALSE(model->isScanning());
    EXPECT_THAT(names(), ElementsAre(u"Painter"_qs));
}

TEST_F(ApplicationsLifeTest, OutlivesNoScreen)
{
    addPainter();
    addBundle("/Applications/Zoo.app", 10);
    const Gate gate;
    const Gate reached;
    std::atomic_bool goesOn = false;
    machine.files->onMeasure([gate, reached, &goesOn](const FilePath &path) {
        if (path.isWithin(FilePath("/Applications/Zoo.app")))
            goesOn = true;
        if (!reached.isOpen())
            reached.open();
        gate.wait();
    });
    const auto scanning = model->scanApplications();
    while (!reached.isOpen())
        QTest::qWait(1);

    model.reset();
    gate.open();

    QCoro::waitFor(scanning);
    EXPECT_FALSE(goesOn);
    // It ended by itself: whoever else uses the scanner is not stopped.
    EXPECT_FALSE(scanner->isCancelled());
}

TEST_F(ApplicationsLifeTest, KeepsWhatIsChosenOverANewScanByWhatIsThenKnown)
{
    addPainter();
    scan();
    model->select(0);
    machine.files->vanish(library("Caches/com.example.painter"));

    scan();

    EXPECT_EQ(model->selectedRow(), 0);
    EXPECT_EQ(model->selectedApp()->id, app().id);
    EXPECT_EQ(model->selectedApp()->relatedFiles.size(), 3);
}
