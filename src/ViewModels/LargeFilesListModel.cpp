#include "ViewModels/LargeFilesListModel.h"

#include "Utilities/ByteCountFormatter.h"
#include "Utilities/DateFormatter.h"
#include "Utilities/LocalizationManager.h"

#include <algorithm>

namespace Quillmere {

LargeFilesListModel::LargeFilesListModel(QObject *parent)
    : QAbstractListModel(parent)
{
    connect(&Localizer::shared(), &Localizer::languageChanged, this, &LargeFilesListModel::publishTexts);
}

void LargeFilesListModel::setFiles(const QList<FileItem> &files)
{
    beginResetModel();
    m_files = files;
    endResetModel();
}

void LargeFilesListModel::remove(const QUuid &id)
{
    const auto found = std::ranges::find(std::as_const(m_files), id, &FileItem::id);
    if (found == m_files.cend())
        return;
    const qsizetype row = found - m_files.cbegin();
    beginRemoveRows({}, int(row), int(row));
    m_files.removeAt(row);
    endRemoveRows();
}

int LargeFilesListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_files.size());
}

QVariant LargeFilesListModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const FileItem &file = m_files.at(index.row());
    switch (role) {
    case FileRole:
        return QVariant::fromValue(file);
    case NameRole:
        return file.name;
    case PathTextRole:
        return file.path.displayText();
    case IconRole:
        return icon(file.fileType);
    case SizeTextRole:
        return formatByteCount(file.size);
    case DateTextRole:
        return file.lastModified ? formatAbbreviatedDate(*file.lastModified) : u"-"_qs;
    default:
        return {};
    }
}

QHash<int, QByteArray> LargeFilesListModel::roleNames() const
{
    return {
        {FileRole, "file"},     {NameRole, "name"},         {PathTextRole, "pathText"},
        {IconRole, "iconName"}, {SizeTextRole, "sizeText"}, {DateTextRole, "dateText"},
    };
}

void LargeFilesListModel::publishTexts()
{
    if (!m_files.isEmpty())
        Q_EMIT dataChanged(index(0), index(rowCount() - 1), {SizeTextRole, DateTextRole});
}

} // namespace Quillmere
