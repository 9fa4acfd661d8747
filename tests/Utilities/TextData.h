#pragma once

#include <QFile>
#include <QString>
#include <QStringList>

#include <stdexcept>

namespace Quillmere {

/// The lines of a file in data/texts, each split at its tabs.
inline QList<QStringList> textData(const QString &name)
{
    QFile file(QStringLiteral(QUILLMERE_UTILITIES_TEST_DATA "/texts/") + name);
    if (!file.open(QIODevice::ReadOnly))
        throw std::runtime_error("cannot read " + file.fileName().toStdString());
    QList<QStringList> rows;
    for (const QString &line : QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts))
        rows.append(line.split(u'\t'));
    return rows;
}

/// The first column of such a file.
inline QStringList textKeys(const QString &name)
{
    QStringList keys;
    for (const QStringList &row : textData(name))
        keys.append(row.first());
    return keys;
}

} // namespace Quillmere
