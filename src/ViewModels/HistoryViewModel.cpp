#include "ViewModels/HistoryViewModel.h"

#include "Utilities/Diagnostics.h"

#include <QFile>

namespace Quillmere {

namespace {

void printWritingFailure(const Failure &failure)
{
    printDiagnostic(u"Failed to write history file: "_qs, failure);
}

} // namespace

HistoryViewModel::HistoryViewModel(HistoryService &history, std::shared_ptr<const FileManager> files, QObject *parent)
    : QObject(parent)
    , m_history(history)
    , m_files(std::move(files))
{
}

void HistoryViewModel::loadHistory()
{
    m_logs.setLogs(m_history.loadHistory());
    Q_EMIT logsChanged();
}

void HistoryViewModel::clearHistory()
{
    m_history.clearHistory();
    loadHistory();
}

void HistoryViewModel::exportCSV()
{
    saveToFile(m_history.exportCSV(m_logs.logs()).toUtf8(), u"Quillmere_History.csv"_qs);
}

void HistoryViewModel::exportJSON()
{
    saveToFile(m_history.exportJSON(m_logs.logs()).toUtf8(), u"Quillmere_History.json"_qs);
}

void HistoryViewModel::saveToFile(const QByteArray &content, const QString &defaultName)
{
    m_export = content;
    Q_EMIT savePanelRequested(defaultName, defaultName.endsWith(u".json") ? u"json"_qs : u"csv"_qs);
}

void HistoryViewModel::save(const QUrl &location)
{
    if (location.isEmpty())
        return;
    if (!location.isLocalFile()) {
        printWritingFailure(Failure{Failure::Kind::NotSupported, {}, location.toDisplayString()});
        return;
    }
    const FilePath path(QFile::encodeName(location.toLocalFile()));
    if (!m_files->fileExists(path)) {
        write(path);
        return;
    }
    m_existing = path;
    Q_EMIT replacementQuestioned(FilePath::displayText(path.lastPathComponent()));
}

void HistoryViewModel::replaceExisting()
{
    write(m_existing);
}

void HistoryViewModel::write(const FilePath &path) const
{
    const Result<void> written = m_files->writeFile(path, m_export, WriteMode::Atomic);
    if (!written)
        printWritingFailure(written.failure());
}

} // namespace Quillmere
