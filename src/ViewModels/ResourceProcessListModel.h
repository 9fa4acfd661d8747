#pragma once

#include "Models/ResourceProcess.h"

#include <QAbstractListModel>

namespace Quillmere {

/// Running applications as rows.
class ResourceProcessListModel final : public QAbstractListModel
{
    Q_OBJECT

public:
    enum Role {
        PidRole = Qt::UserRole + 1,
        NameRole,
        IconRole, ///< Empty where there is none.
        CpuTextRole,
        IsCpuHighRole,
        MemoryTextRole,
        NetworkTextRole,
        IsNetworkHighRole,
        IsInternetBlockedRole,
        CanQuitRole,
    };

    explicit ResourceProcessListModel(QObject *parent);

    [[nodiscard]] const QList<ResourceProcess> &processes() const { return m_processes; }
    /// Replaces what the rows show. Rows themselves come and go only at the end, so that none is lost under the
    /// pointer.
    void setProcesses(const QList<ResourceProcess> &processes);

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

private:
    void resize(qsizetype count);
    void publishAll();

    QList<ResourceProcess> m_processes;
};

/// Its name in one line, whatever characters it is made of.
[[nodiscard]] QString displayName(const ResourceProcess &process);
/// What an application moves over the network: "0 B/s", "1.2 MB/s".
[[nodiscard]] QString formattedNetwork(const ResourceProcess &process);

} // namespace Quillmere
