#include "Fakes/Gate.h"
#include "ViewModels/ApplicationsFixture.h"

#include <gmock/gmock.h>

using namespace Quillmere;

namespace {

class ApplicationsRunTest : public ApplicationsFixture
{
};

} // namespace

TEST_F(ApplicationsRunTest, ShowsWhichApplicationsRunAsTheyStartAndEnd)
{
    scanPainter();
    const auto isMarked
        = [this] { return model->apps()->data(model->apps()->index(0), AppListModel::IsRunningRole).toBool(); };
    EXPECT_FALSE(isMarked());
    RunningApplication running;
    running.processIdentifier = 7;
    running.bundleIdentifier = u"com.example.painter"_qs;
    machine.workspace->start(running);

    QCoro::waitFor(model->refreshRunning());
    EXPECT_TRUE(isMarked());
    EXPECT_TRUE(model->isSelectedRunning());

    machine.workspace->end(7);
    running.bundleIdentifier.reset();
    running.bundleLocation = FilePath("/Applications/Painter.app/Contents/MacOS/program");
    machine.workspace->start(running);
    QCoro::waitFor(model->refreshRunning());
    EXPECT_TRUE(model->isSelectedRunning());

    machine.workspace->end(7);
    QCoro::waitFor(model->refreshRunning());
    EXPECT_FALSE(model->isSelectedRunning());
}

TEST_F(ApplicationsRunTest, SeesABundleAndAPartRunThatTheDesktopDoesNotKnow)
{
    addPainter();
    ListedApplication image;
    image.id = "sketch";
    image.name = u"Sketch"_qs;
    image.location = FilePath("/home/ada/Applications/Sketch.AppImage");
    image.parts = {FilePath("/home/ada/.local/opt/sketch")};
    machine.applications->add(image);
    scan();
    const auto running = [this](const QString &name) {
        const qsizetype row = names().indexOf(name);
        return model->apps()->isRunning(app(row).id);
    };
    machine.workspace->startProgram(FilePath("/Applications/PainterTwo.app/Contents/MacOS/program"));
    QCoro::waitFor(model->refreshRunning());
    EXPECT_FALSE(running(u"Painter"_qs));
    EXPECT_FALSE(running(u"Sketch"_qs));

    machine.workspace->startProgram(FilePath("/Applications/Painter.app/Contents/MacOS/program"));
    machine.workspace->startProgram(FilePath("/home/ada/.local/opt/sketch/bin/sketch"));
    QCoro::waitFor(model->refreshRunning());

    EXPECT_TRUE(running(u"Painter"_qs));
    EXPECT_TRUE(running(u"Sketch"_qs));
}

TEST_F(ApplicationsRunTest, BelievesTheLatestLookAlone)
{
    scanPainter();
    QCoro::waitFor(model->refreshRunning());
    const int known = machine.workspace->listings();
    const Gate gate;
    const Gate reached;
    machine.workspace->onListing([=](int listing) {
        if (listing == known + 1) {
            reached.open();
            gate.wait();
        }
    });
    const auto earlier = model->refreshRunning();
    reached.wait();
    RunningApplication running;
    running.processIdentifier = 7;
    running.bundleIdentifier = u"com.example.painter"_qs;
    machine.workspace->start(running);
    QCoro::waitFor(model->refreshRunning());
    ASSERT_TRUE(model->isSelectedRunning());

    gate.open();
    QCoro::waitFor(earlier);

    EXPECT_TRUE(model->isSelectedRunning());
}
