#include "Fakes/Gate.h"
#include "Fakes/HeldCalls.h"
#include "ViewModels/ProfessionalCleanupFixture.h"

#include <QCoro/QCoroCore>
#include <QTest>

#include <gmock/gmock.h>

#include <atomic>

using namespace Quillmere;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class ProfessionalCleanupCancelTest : public ProfessionalCleanupFixture
{
};

} // namespace

TEST_F(ProfessionalCleanupCancelTest, KeepsTheGroupsWhenItIsCancelledAfterThemAndCleansThem)
{
    addEverything();
    machine.files->onMeasure([this](const FilePath &path) {
        if (path.isWithin(FilePath("/home/ada/.nvm")))
            scanner->cancelScan();
    });

    QCoro::waitFor(model->scan());

    EXPECT_THAT(foundNames(), ElementsAre(u"Visual Studio Code Caches"_qs, u"Java Gradle and Maven Caches"_qs));
    EXPECT_FALSE(model->isScanning());
    EXPECT_LT(model->scanProgress(), 1.0);
    ASSERT_TRUE(model->canClean());
    QCoro::waitFor(model->clean());
    EXPECT_THAT(machine.files->trashed(), ElementsAre(FilePath("/home/ada/Library/Application Support/Code/Cache")));
    EXPECT_TRUE(model->hasReport());
}

TEST_F(ProfessionalCleanupCancelTest, ShowsNothingOfACatalogueThatWasCancelled)
{
    addEverything();
    machine.files->onMeasure([this](const FilePath &path) {
        if (path.isWithin(FilePath("/home/ada/.gradle")))
            scanner->cancelScan();
    });

    QCoro::waitFor(model->scan());

    EXPECT_THAT(foundNames(), IsEmpty());
    EXPECT_EQ(model->scanProgress(), 0);
    EXPECT_TRUE(model->showsStart());
}

TEST_F(ProfessionalCleanupCancelTest, EndsWhenItIsCancelledInEitherOfTheTwoFolders)
{
    addEverything();
    for (const char *folder : {"/Library/Caches", "/home/ada/Library/Containers"}) {
        machine.files->onMeasure([this, folder](const FilePath &path) {
            if (path.isWithin(FilePath(folder)))
                scanner->cancelScan();
        });

        QCoro::waitFor(model->scan());

        EXPECT_EQ(found().last().name,
                  folder == QByteArray("/Library/Caches") ? u"Installed Developer Tools and SDKs"_qs
                                                          : u"System Caches"_qs);
        EXPECT_EQ(model->scanProgress(), 0.75);
        EXPECT_FALSE(model->isScanning());
    }
}

TEST_F(ProfessionalCleanupCancelTest, OnlyRaisesTheFlagWhenItIsCancelled)
{
    addEverything();
    const Gate gate;
    machine.files->onMeasure([gate](const FilePath &) { gate.wait(); });
    const auto scanning = model->scan();

    model->cancel();

    EXPECT_TRUE(scanner->isCancelled());
    EXPECT_TRUE(model->isScanning());
    gate.open();
    QCoro::waitFor(scanning);
    EXPECT_FALSE(model->isScanning());
}

TEST_F(ProfessionalCleanupCancelTest, ScansAnewAfterACancelledScan)
{
    addEverything();
    scanner->cancelScan();

    QCoro::waitFor(model->scan());

    EXPECT_EQ(found().size(), 5);
}

TEST_F(ProfessionalCleanupCancelTest, IsNotDisturbedByAnEarlierScanThatEndsLate)
{
    addEverything();
    const Gate gate;
    const auto isFirst = std::make_shared<std::atomic<bool>>(true);
    machine.files->onMeasure([gate, isFirst](const FilePath &) {
        if (isFirst->exchange(false))
            gate.wait();
    });
    const auto first = model->scan();
    ASSERT_TRUE(QTest::qWaitFor([isFirst] { return !isFirst->load(); }));

    const auto second = model->scan();
    gate.open();
    QCoro::waitFor(first);
    QCoro::waitFor(second);

    EXPECT_EQ(found().size(), 5);
    EXPECT_FALSE(model->isScanning());
}

TEST_F(ProfessionalCleanupCancelTest, StopsTheEarlierScanWhenAnotherBegins)
{
    addEverything();
    const HeldCalls none(0);
    machine.files->onMeasure([none](const FilePath &) { none.pass(); });
    QCoro::waitFor(model->scan());
    const HeldCalls held(1);
    machine.files->onMeasure([held](const FilePath &) { held.pass(); });
    const auto first = model->scan();
    ASSERT_TRUE(QTest::qWaitFor([&held] { return held.arrived() == 1; }));

    QCoro::waitFor(model->scan());
    held.release(0);
    QCoro::waitFor(first);

    // The earlier one has looked at nothing but what held it up.
    EXPECT_EQ(held.arrived(), none.arrived() + 1);
}

TEST_F(ProfessionalCleanupCancelTest, StopsAScanWithoutAWordWhenTheScreenHasGone)
{
    addEverything();
    const Gate gate;
    machine.files->onMeasure([gate](const FilePath &) { gate.wait(); });
    const auto scanning = model->scan();

    model.reset();
    EXPECT_TRUE(scanner->isCancelled());
    gate.open();
    QCoro::waitFor(scanning);

    EXPECT_TRUE(runs.isEmpty());
}
