#pragma once

#include "Platform/FileManager.h"
#include "Services/HistoryService.h"
#include "ViewModels/HistoryListModel.h"

#include <QObject>
#include <QUrl>

#include <memory>

namespace Quillmere {

/// The History screen: the records, newest first, their export and their clearing.
class HistoryViewModel final : public QObject
{
    Q_OBJECT
    Q_PROPERTY(Quillmere::HistoryListModel *logs READ logs CONSTANT)
    Q_PROPERTY(bool isEmpty READ isEmpty NOTIFY logsChanged)

public:
    HistoryViewModel(HistoryService &history, std::shared_ptr<const FileManager> files, QObject *parent = nullptr);

    [[nodiscard]] HistoryListModel *logs() { return &m_logs; }
    [[nodiscard]] bool isEmpty() const { return m_logs.logs().isEmpty(); }

    Q_INVOKABLE void loadHistory();
    /// Deletes the file, then shows what is really left.
    Q_INVOKABLE void clearHistory();
    Q_INVOKABLE void exportCSV();
    Q_INVOKABLE void exportJSON();
    /// The save panel's answer: writes what the export made, or asks first where a file stands already. A failure is
    /// one line on standard output.
    Q_INVOKABLE void save(const QUrl &location);
    /// Yes to the question whether the file may be replaced.
    Q_INVOKABLE void replaceExisting();

Q_SIGNALS:
    void logsChanged();
    /// Asks the screen for its save panel, with a name to begin with and the extension that names its content type.
    void savePanelRequested(const QString &defaultName, const QString &extension);
    /// Asks the screen whether the file may be replaced, whose name people read as @p name.
    void replacementQuestioned(const QString &name);

private:
    void saveToFile(const QByteArray &content, const QString &defaultName);
    void write(const FilePath &path) const;

    HistoryService &m_history;
    std::shared_ptr<const FileManager> m_files;
    HistoryListModel m_logs{nullptr};
    QByteArray m_export; ///< What the save panel that is open will write.
    FilePath m_existing; ///< What it is to replace, if the user says so.
};

} // namespace Quillmere
