#include "ViewModels/HistoryListModel.h"

#include "Utilities/ByteCountFormatter.h"
#include "Utilities/DateFormatter.h"
#include "Utilities/LocalizationManager.h"

namespace Quillmere {

namespace {

/// Key of the name on screen of a category as it is stored; empty for one that is shown as stored.
QString categoryKey(const QString &storedName)
{
    static const QHash<QString, QString> keys = {
        {u"User Cache"_qs, u"cleanup.category.userCache"_qs},
        {u"User Logs"_qs, u"cleanup.category.userLogs"_qs},
        {u"Container Cache"_qs, u"cleanup.category.containerCache"_qs},
        {u"Temporary Files"_qs, u"cleanup.category.tempFiles"_qs},
        {u"System Caches"_qs, u"professional.systemCaches"_qs},
        {u"Mail Downloads"_qs, u"professional.mailDownloads"_qs},
        {u"Xcode Build Caches"_qs, u"developer.xcode.name"_qs},
        {u"Xcode Device Support and Archives"_qs, u"developer.xcodeSupport.name"_qs},
        {u"Visual Studio Code Caches"_qs, u"developer.vscode.name"_qs},
        {u"Android Studio and JetBrains Caches"_qs, u"developer.jetbrains.name"_qs},
        {u"Java Gradle and Maven Caches"_qs, u"developer.java.name"_qs},
        {u"Language and Package Manager Caches"_qs, u"developer.languages.name"_qs},
        {u"Android SDK Temporary Files"_qs, u"developer.androidSDK.name"_qs},
        {u"Smartphone Simulators and System Images"_qs, u"developer.emulators.name"_qs},
        {u"Media and Game Development Caches"_qs, u"developer.media.name"_qs},
        {u"Installed Developer Tools and SDKs"_qs, u"developer.installed.name"_qs},
    };
    return keys.value(storedName);
}

QString categoriesText(const OperationLog &log)
{
    if (log.categoriesAffected.isEmpty())
        return {};
    QStringList names;
    for (const QString &stored : log.categoriesAffected) {
        const QString key = categoryKey(stored);
        names.append(key.isEmpty() ? stored : localized(key));
    }
    return localized(u"history.categories"_qs) + u": "_qs + names.join(u", "_qs);
}

QString countLine(const QString &key, qint64 count)
{
    return localized(key) + u": "_qs + QString::number(count);
}

} // namespace

HistoryListModel::HistoryListModel(QObject *parent)
    : QAbstractListModel(parent)
{
    connect(&Localizer::shared(), &Localizer::languageChanged, this, &HistoryListModel::publishTexts);
}

void HistoryListModel::setLogs(const QList<OperationLog> &logs)
{
    beginResetModel();
    m_logs = logs;
    endResetModel();
}

void HistoryListModel::toggleExpanded(int row)
{
    if (row < 0 || row >= rowCount())
        return;
    const QUuid id = m_logs.at(row).id;
    if (!m_expanded.remove(id))
        m_expanded.insert(id);
    Q_EMIT dataChanged(index(row), index(row), {IsExpandedRole});
}

int HistoryListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_logs.size());
}

QVariant HistoryListModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const OperationLog &log = m_logs.at(index.row());
    switch (role) {
    case DateTextRole:
        return formatAbbreviatedDateAndTime(log.date);
    case OperationTextRole:
        return localized(u"history.operation."_qs + rawValue(log.operationType));
    case CleanedTextRole:
        return formatByteCount(log.cleanedSize);
    case StatusRole:
        return QVariant::fromValue(log.status);
    case StatusTextRole:
        return localized(u"history.status."_qs + rawValue(log.status));
    case IsExpandedRole:
        return m_expanded.contains(log.id);
    case RemovedTextRole:
        return countLine(u"history.filesRemoved"_qs, log.filesRemoved);
    case SkippedTextRole:
        return countLine(u"history.filesSkipped"_qs, log.filesSkipped);
    case CategoriesTextRole:
        return categoriesText(log);
    case ErrorsRole:
        return log.errors;
    default:
        return {};
    }
}

QHash<int, QByteArray> HistoryListModel::roleNames() const
{
    return {
        {DateTextRole, "dateText"},       {OperationTextRole, "operationText"}, {CleanedTextRole, "cleanedText"},
        {StatusRole, "status"},           {StatusTextRole, "statusText"},       {IsExpandedRole, "isExpanded"},
        {RemovedTextRole, "removedText"}, {SkippedTextRole, "skippedText"},     {CategoriesTextRole, "categoriesText"},
        {ErrorsRole, "errors"},
    };
}

void HistoryListModel::publishTexts()
{
    if (!m_logs.isEmpty())
        Q_EMIT dataChanged(index(0), index(rowCount() - 1));
}

} // namespace Quillmere
