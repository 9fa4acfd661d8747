#pragma once

#include "Platform/FilterManager.h"

#include <QByteArray>
#include <QObject>
#include <QPointer>
#include <QProcess>
#include <QStringList>

namespace Quillmere {

/// One run of the program that saves the policy. It goes on to its end whatever becomes of whoever asked: a program
/// that works for the administrator cannot be ended from here, and what it began it should finish.
class PolicyHelperRun final : public QObject
{
    Q_OBJECT

public:
    /// @p completion is called once, later, if @p life still lives then.
    static void start(const QStringList &command, const QByteArray &input, QObject &life,
                      FilterManager::Completion completion);

private:
    PolicyHelperRun(QObject &life, FilterManager::Completion completion);
    void takeDiagnostics();
    /// Nothing when it did its work.
    [[nodiscard]] std::optional<QString> outcome() const;
    void end(const std::optional<QString> &error);

    QProcess m_process;
    QByteArray m_diagnostics; ///< The beginning of what it said.
    QPointer<QObject> m_life;
    FilterManager::Completion m_completion;
};

} // namespace Quillmere
