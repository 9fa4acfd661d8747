#include "Platform/Linux/Filter/PolicyHelperRun.h"

#include <algorithm>

namespace Quillmere {

namespace {

constexpr qsizetype mostBytesOfDiagnostics = 4096;
// pkexec(1): the dialog was dismissed. Its helper never ends with this.
constexpr int dismissed = 126;

} // namespace

void PolicyHelperRun::start(const QStringList &command, const QByteArray &input, QObject &life,
                            FilterManager::Completion completion)
{
    auto *run = new PolicyHelperRun(life, std::move(completion));
    run->m_process.start(command.value(0), command.mid(1));
    run->m_process.write(input);
    run->m_process.closeWriteChannel();
}

PolicyHelperRun::PolicyHelperRun(QObject &life, FilterManager::Completion completion)
    : m_life(&life)
    , m_completion(std::move(completion))
{
    m_process.setStandardOutputFile(QProcess::nullDevice());
    connect(&m_process, &QProcess::readyReadStandardError, this, &PolicyHelperRun::takeDiagnostics);
    // Queued, so that even what fails at once answers later.
    connect(
        &m_process, &QProcess::finished, this, [this] { end(outcome()); }, Qt::QueuedConnection);
    connect(
        &m_process, &QProcess::errorOccurred, this,
        [this](QProcess::ProcessError error) {
            if (error == QProcess::FailedToStart)
                end(m_process.errorString());
        },
        Qt::QueuedConnection);
}

void PolicyHelperRun::takeDiagnostics()
{
    const QByteArray said = m_process.readAllStandardError();
    m_diagnostics += said.first(std::min(said.size(), mostBytesOfDiagnostics - m_diagnostics.size()));
}

std::optional<QString> PolicyHelperRun::outcome() const
{
    if (m_process.exitStatus() == QProcess::NormalExit && m_process.exitCode() == 0)
        return std::nullopt;
    if (m_process.exitStatus() == QProcess::NormalExit && m_process.exitCode() == dismissed)
        return u"User canceled. (-128)"_qs;
    const QString firstLine = QString::fromUtf8(m_diagnostics).trimmed().section(u'\n', 0, 0).trimmed();
    if (!firstLine.isEmpty())
        return firstLine;
    return m_process.exitStatus() == QProcess::NormalExit
        ? u"%1 ended with status %2."_qs.arg(m_process.program()).arg(m_process.exitCode())
        : u"%1 ended unexpectedly."_qs.arg(m_process.program());
}

void PolicyHelperRun::end(const std::optional<QString> &error)
{
    deleteLater();
    if (m_life)
        m_completion(error);
}

} // namespace Quillmere
