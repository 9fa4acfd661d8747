#pragma once

#include "Models/OperationLog.h"

#include <QAbstractListModel>
#include <QSet>

namespace Quillmere {

/// The records of the history as rows, each of which can be opened.
class HistoryListModel final : public QAbstractListModel
{
    Q_OBJECT

public:
    enum Role {
        DateTextRole = Qt::UserRole + 1,
        OperationTextRole,
        CleanedTextRole,
        StatusRole,
        StatusTextRole,
        IsExpandedRole,
        RemovedTextRole,
        SkippedTextRole,
        CategoriesTextRole, ///< Empty when no category was affected.
        ErrorsRole,
    };

    explicit HistoryListModel(QObject *parent);

    [[nodiscard]] const QList<OperationLog> &logs() const { return m_logs; }
    /// Replaces all rows. A record that was open and is still there stays open.
    void setLogs(const QList<OperationLog> &logs);

    Q_INVOKABLE void toggleExpanded(int row);

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

private:
    void publishTexts();

    QList<OperationLog> m_logs;
    QSet<QUuid> m_expanded;
};

} // namespace Quillmere
