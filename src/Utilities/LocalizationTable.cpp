#include "Utilities/LocalizationTable.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

namespace Quillmere {

const LocalizationTable &LocalizationTable::strings()
{
    static const LocalizationTable table({u":/texts/strings.json"_qs});
    return table;
}

const LocalizationTable &LocalizationTable::controls()
{
    static const LocalizationTable table({u":/texts/controls.json"_qs});
    return table;
}

LocalizationTable::LocalizationTable(const QStringList &files)
{
    for (const QString &name : files) {
        QFile file(name);
        if (!file.open(QIODevice::ReadOnly))
            qFatal("The texts in %s are missing from the program.", qUtf8Printable(name));
        const QJsonObject rows = QJsonDocument::fromJson(file.readAll()).object();
        for (auto row = rows.begin(); row != rows.end(); ++row) {
            const QJsonObject entries = row->toObject();
            for (auto entry = entries.begin(); entry != entries.end(); ++entry)
                m_rows[row.key()].insert(entry.key(), entry->toString());
        }
    }
}

std::optional<QString> LocalizationTable::text(const QString &key, const QString &language) const
{
    const auto row = m_rows.constFind(key);
    if (row == m_rows.constEnd())
        return std::nullopt;
    const auto entry = row->constFind(language);
    return entry == row->constEnd() ? std::nullopt : std::optional(*entry);
}

QStringList LocalizationTable::keys() const
{
    return m_rows.keys();
}

QStringList LocalizationTable::languages(const QString &key) const
{
    return m_rows.value(key).keys();
}

} // namespace Quillmere
