#include "Utilities/LocalizationTable.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

namespace Quillmere {

namespace {

/// The files are part of the program, so one that cannot be read is a fault of the build, not of the machine.
LocalizationTable builtIn(const QString &name)
{
    QFile file(name);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("The texts in %s are missing from the program.", qUtf8Printable(name));
    Result<LocalizationTable> table = LocalizationTable::fromJson(file.readAll());
    if (!table)
        qFatal("The texts in %s cannot be read: %s", qUtf8Printable(name), qUtf8Printable(table.failure().detail));
    return std::move(table).value();
}

} // namespace

const LocalizationTable &LocalizationTable::strings()
{
    static const LocalizationTable table = builtIn(u":/texts/strings.json"_qs);
    return table;
}

const LocalizationTable &LocalizationTable::controls()
{
    static const LocalizationTable table = builtIn(u":/texts/controls.json"_qs);
    return table;
}

const LocalizationTable &LocalizationTable::setup()
{
    static const LocalizationTable table = builtIn(u":/texts/setup.json"_qs);
    return table;
}

Result<LocalizationTable> LocalizationTable::fromJson(const QByteArray &json)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(json, &error);
    if (!document.isObject())
        return Failure::malformed(error.error == QJsonParseError::NoError ? u"not an object"_qs : error.errorString());

    LocalizationTable table;
    const QJsonObject rows = document.object();
    table.m_rows.reserve(rows.size());
    for (auto row = rows.begin(); row != rows.end(); ++row) {
        if (!row->isObject())
            return Failure::malformed(u"the row "_qs + row.key() + u" is not an object"_qs);
        const QJsonObject entries = row->toObject();
        QMap<QString, QString> &texts = table.m_rows[row.key()];
        for (auto entry = entries.begin(); entry != entries.end(); ++entry) {
            if (!entry->isString())
                return Failure::malformed(u"the row "_qs + row.key() + u" holds something that is not a text"_qs);
            texts.insert(entry.key(), entry->toString());
        }
    }
    return table;
}

std::optional<QString> LocalizationTable::text(const QString &key, const QString &language) const
{
    const auto row = m_rows.constFind(key);
    if (row == m_rows.constEnd())
        return std::nullopt;
    const auto entry = row->constFind(language);
    return entry == row->constEnd() ? std::nullopt : std::optional(*entry);
}

std::optional<QString> LocalizationTable::textOrEnglish(const QString &key, const QString &language) const
{
    const std::optional<QString> own = text(key, language);
    return own ? own : text(key, u"en"_qs);
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
