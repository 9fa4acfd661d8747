#pragma once

#include "Fakes/PretendBundles.h"
#include "Fakes/PretendFileManager.h"
#include "Fakes/PretendHostStatistics.h"
#include "Fakes/PretendInstalledApplications.h"
#include "Fakes/PretendPowerAssertions.h"
#include "Fakes/PretendProcessRunner.h"
#include "Fakes/PretendStartupEntries.h"
#include "Fakes/PretendStatusBar.h"
#include "Fakes/PretendTrafficFilter.h"
#include "Fakes/PretendUrlSession.h"
#include "Fakes/PretendUserDefaults.h"
#include "Fakes/PretendWorkspace.h"
#include "Platform/Machine.h"

#include <QHash>

#include <functional>

namespace Quillmere {

/// A clock that stands still until it is told otherwise.
class PretendClock final : public Clock
{
public:
    [[nodiscard]] QDateTime now() const override { return m_now; }
    [[nodiscard]] std::chrono::milliseconds elapsed() const override { return m_elapsed; }
    void set(const QDateTime &now) { m_now = now; }
    void letPass(std::chrono::milliseconds time)
    {
        m_now = m_now.addMSecs(time.count());
        m_elapsed += time;
    }

private:
    QDateTime m_now = QDateTime({2026, 11, 21}, {9, 12}, Qt::UTC);
    std::chrono::milliseconds m_elapsed{0};
};

/// A desktop whose preferences are set by hand.
class PretendDesktopAppearance final : public DesktopAppearance
{
public:
    [[nodiscard]] ColorScheme colorScheme() const override { return m_scheme; }
    [[nodiscard]] bool prefersReducedMotion() const override { return m_reducedMotion; }
    void observe(std::function<void()> changed) override { m_changed = std::move(changed); }
    void awaitAnswers(std::chrono::milliseconds patience) override;

    void set(ColorScheme scheme, bool reducedMotion);
    /// Called when the program waits for what it asked.
    void onWait(std::function<void(std::chrono::milliseconds patience)> observer) { m_onWait = std::move(observer); }

private:
    ColorScheme m_scheme = ColorScheme::Light;
    bool m_reducedMotion = false;
    std::function<void()> m_changed;
    std::function<void(std::chrono::milliseconds)> m_onWait;
};

/// A platform that adds nothing until it is told to.
class PretendPlaces final : public Places
{
public:
    [[nodiscard]] QList<PlaceRow> rowsBehind(PlaceTable table) const override { return m_rows.value(table); }
    [[nodiscard]] QList<PlaceEntry> entriesBehind(const QString &list) const override { return m_lists.value(list); }
    using Places::reasonToKeep;
    [[nodiscard]] std::optional<QString> reasonToKeep(const FilePath &item,
                                                      const Cancellation &cancellation) const override;

    void addEntry(const QString &list, const PlaceEntry &entry) { m_lists[list].append(entry); }
    void addRow(PlaceTable table, const PlaceRow &row) { m_rows[table].append(row); }
    void keep(const FilePath &item, const QString &reason) { m_kept.insert(item, reason); }
    /// Called before each answer, on the thread that asks.
    void onQuestion(std::function<void(const FilePath &, const Cancellation &)> observer)
    {
        m_onQuestion = std::move(observer);
    }

private:
    QHash<PlaceTable, QList<PlaceRow>> m_rows;
    QHash<QString, QList<PlaceEntry>> m_lists;
    QHash<FilePath, QString> m_kept;
    std::function<void(const FilePath &, const Cancellation &)> m_onQuestion;
};

/// A whole machine in memory, complete enough to run the program on. Every part can be told how to behave.
struct PretendMachine
{
    PretendMachine();
    ~PretendMachine();
    /// A copy is the same machine.
    PretendMachine(const PretendMachine &other);
    PretendMachine &operator=(const PretendMachine &) = delete;

    std::shared_ptr<PretendFileManager> files;
    std::shared_ptr<PretendPlaces> places;
    std::shared_ptr<PretendUserDefaults> defaults;
    std::shared_ptr<PretendClock> clock;
    std::shared_ptr<PretendDesktopAppearance> appearance;

    std::shared_ptr<PretendHostStatistics> host;
    std::shared_ptr<PretendProcessRunner> processes;
    std::shared_ptr<PretendWorkspace> workspace;
    std::shared_ptr<PretendInstalledApplications> applications;
    std::shared_ptr<PretendPowerAssertions> assertions;
    std::shared_ptr<PretendBundles> bundles;
    std::shared_ptr<PretendSystemExtensionManager> extensions;
    std::shared_ptr<PretendFilterManager> filter;
    std::shared_ptr<PretendStatusBar> statusBar;
    std::shared_ptr<PretendStartupEntries> startupEntries;
    std::shared_ptr<PretendUrlSession> urls;
    /// The process's environment. Not to be changed while the program looks at it.
    std::shared_ptr<QHash<QByteArray, QByteArray>> variables;
    std::shared_ptr<int> memoryReturns; ///< How often memory was given back.
    bool isAdministrator = false;

    [[nodiscard]] Machine machine() const;
    /// From now on the running version has been set up, so that the program starts without its wizard.
    void completeSetup() const;
    /// Has the system's disk command, and scripts that run it as the administrator, work on what is plugged in. The
    /// password dialog is answered at once.
    void connectDisks() const;
    /// Puts the sound extension of the traffic filter into the program's bundle.
    void installTrafficFilter();
    /// A bundle at @p path with one program of @p bytes, whose information names what is not empty.
    void addBundle(const FilePath &path, qint64 bytes, const QString &identifier = {},
                   const QString &version = {}) const;
};

} // namespace Quillmere
