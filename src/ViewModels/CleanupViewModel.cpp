#include "ViewModels/CleanupViewModel.h"

#include "App/AppState.h"
#include "Utilities/Attempt.h"
#include "Utilities/BackgroundWork.h"
#include "Utilities/ByteCountFormatter.h"
#include "Utilities/Diagnostics.h"
#include "Utilities/LocalizationManager.h"
#include "ViewModels/UnfinishedRuns.h"

#include <tuple>

namespace Quillmere {

CleanupViewModel::CleanupViewModel(std::shared_ptr<ScannerService> scanner, CleanupService cleaner,
                                   HistoryService &history, std::shared_ptr<const Clock> clock, RunHabits habits,
                                   QObject *parent)
    : QObject(parent)
    , m_scanner(std::move(scanner))
    , m_cleaner(std::move(cleaner))
    , m_history(history)
    , m_clock(std::move(clock))
    , m_habits(std::move(habits))
{
    connect(&m_categories, &CleanupCategoryListModel::selectionChanged, this, &CleanupViewModel::selectionChanged);
    connect(&Localizer::shared(), &Localizer::languageChanged, this, [this] {
        Q_EMIT selectionChanged();
        Q_EMIT cleanupResultChanged();
    });
}

QString CleanupViewModel::totalSelectedText() const
{
    return formatByteCount(totalSelectedSize());
}

CleanupReport CleanupViewModel::report() const
{
    return m_resultWrapper ? CleanupReport(m_resultWrapper->result) : CleanupReport();
}

QCoro::Task<> CleanupViewModel::clean()
{
    const QList<CleanupItem> items = selectedItems();
    if (items.isEmpty())
        co_return;
    showProgressOfCleanup(0);
    setPhase(m_isScanning, true);

    // The run outlives the screen, so all that is needed at its end is taken along now.
    const UnfinishedRuns::Token unfinished(UnfinishedRuns::shared());
    const QPointer self(this);
    HistoryService &history = m_history;
    const std::shared_ptr<const Clock> clock = m_clock;
    const CleanupService cleaner = m_cleaner;
    const RunHabits habits = m_habits;
    OperationLog log = logOfSelection();
    const std::stop_token run = m_cleanup.begin();
    const auto progress = [self, run](double fraction) {
        onMainQueue(self, [run, fraction](CleanupViewModel &model) {
            if (model.m_cleanup.isLatest(run))
                model.showProgressOfCleanup(fraction);
        });
    };
    auto cleaning = inBackground(
        [cleaner, items, progress] { return attempted([&] { return cleaner.cleanItems(items, true, progress); }); });
    const Result<CleanupResult> outcome = co_await cleaning;
    const auto endRun = [self, run] {
        if (self && self->m_cleanup.isLatest(run))
            self->setPhase(self->m_isScanning, false);
    };
    if (!outcome) {
        printDiagnostic(habits.failureText, outcome.failure());
        endRun();
        co_return;
    }

    const CleanupResult result = outcome.value();
    log.date = clock->now();
    log.cleanedSize = result.sizeCleaned;
    log.filesRemoved = result.filesRemoved;
    log.filesSkipped = result.filesSkipped;
    log.errors = result.errors;
    history.save(log);
    AppState *const state = AppState::shared();
    if (habits.setsCleanupDate && state)
        state->setLastCleanupDate(clock->now());
    // Neither the report nor the end of the program waits for it.
    std::ignore = inBackground([cleaner, items, result] { cleaner.synchronize(items, result); });
    if (!self)
        co_return;
    m_resultWrapper = CleanupResultWrapper{QUuid::createUuid(), result};
    Q_EMIT cleanupResultChanged();
    endRun();
}

void CleanupViewModel::dismissReport()
{
    m_resultWrapper.reset();
    Q_EMIT cleanupResultChanged();
    startScan();
}

QList<CleanupItem> CleanupViewModel::selectedItems() const
{
    QList<CleanupItem> items;
    for (const CleanupCategory &category : m_categories.categories()) {
        if (category.isSelected)
            items += category.items;
    }
    return items;
}

OperationLog CleanupViewModel::logOfSelection() const
{
    OperationLog log;
    for (const CleanupCategory &category : m_categories.categories()) {
        log.foundSize += category.totalSize;
        if (category.isSelected)
            log.categoriesAffected.append(category.name);
    }
    return log;
}

void CleanupViewModel::setPhase(bool isScanning, bool isCleaning)
{
    m_isScanning = isScanning;
    m_isCleaning = isCleaning;
    Q_EMIT phaseChanged();
}

void CleanupViewModel::showProgressOfScan(double fraction, const QString &status)
{
    m_scanProgress = fraction;
    m_scanStatus = status;
    Q_EMIT progressChanged();
}

void CleanupViewModel::showProgressOfCleanup(double fraction)
{
    m_cleanupProgress = fraction;
    Q_EMIT progressChanged();
}

} // namespace Quillmere
