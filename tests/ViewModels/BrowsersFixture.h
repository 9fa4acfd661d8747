#pragma once

#include "Fakes/InstalledLocalizer.h"
#include "Fakes/PretendMachine.h"
#include "ViewModels/BrowsersViewModel.h"
#include "ViewModels/UnfinishedRuns.h"

#include <QCoro/QCoroCore>

#include <gtest/gtest.h>

namespace Quillmere {

/// The Browsers screen on a pretend machine with two browsers.
class BrowsersFixture : public testing::Test
{
protected:
    BrowsersFixture()
    {
        SharedInstance<UnfinishedRuns>::install(&runs);
        machine.workspace->install(u"com.apple.Safari"_qs);
        machine.workspace->install(u"com.google.Chrome"_qs);
        machine.files->addFile(chromeCache.appending("data"), 1'500'000);
    }
    ~BrowsersFixture() override { SharedInstance<UnfinishedRuns>::install(nullptr); }

    void detect() { QCoro::waitFor(model->detectBrowsers()); }
    /// Cleans the second row, Google Chrome, and waits until that has ended.
    void cleanChrome() { QCoro::waitFor(model->cleanBrowserData(profile(1))); }

    void quit(int row) { QCoro::waitFor(model->quitBrowser(profile(row))); }

    BrowserProfile profile(int row) { return model->profiles()->profiles().value(row); }

    void runChrome(qint32 pid = 7)
    {
        RunningApplication application;
        application.processIdentifier = pid;
        application.bundleIdentifier = u"com.google.Chrome"_qs;
        machine.workspace->start(application);
    }

    QList<OperationLog> records() { return history.loadHistory(); }

    const FilePath home{"/home/ada"};
    const FilePath chromeCache = home.appending("Library/Caches/Google/Chrome");
    InstalledLocalizer localizer;
    PretendMachine machine;
    UnfinishedRuns runs{machine.files, machine.clock};
    HistoryService history{machine.files};
    std::shared_ptr<ScannerService> scanner = std::make_shared<ScannerService>(machine.files, machine.places);
    std::unique_ptr<BrowsersViewModel> model
        = std::make_unique<BrowsersViewModel>(scanner, BrowserService(machine.files, machine.places, machine.workspace),
                                              CleanupService(machine.files, machine.places), history, machine.clock);
};

} // namespace Quillmere
