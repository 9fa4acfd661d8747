#pragma once

#include "Models/FileItem.h"

#include <QAbstractListModel>

namespace Quillmere {

/// Large files as rows. Texts are made for the rows in sight alone.
class LargeFilesListModel final : public QAbstractListModel
{
    Q_OBJECT

public:
    enum Role {
        FileRole = Qt::UserRole + 1, ///< The FileItem itself, for handing back.
        NameRole,
        PathTextRole,
        IconRole,
        SizeTextRole,
        DateTextRole, ///< "-" where the date is not known.
    };

    explicit LargeFilesListModel(QObject *parent);

    [[nodiscard]] const QList<FileItem> &files() const { return m_files; }
    void setFiles(const QList<FileItem> &files);
    /// Takes the row of that file away; the others stay where they are.
    void remove(const QUuid &id);

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

private:
    void publishTexts();

    QList<FileItem> m_files;
};

} // namespace Quillmere
