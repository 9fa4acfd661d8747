#pragma once

#include <QCollatorSortKey>
#include <QLocale>
#include <QString>

namespace Quillmere {

/// A text made ready for being compared many times as localizedStandardCompare() does, at a fraction of its cost.
/// Only keys of the same locale are comparable.
class LocalizedSortKey
{
public:
    LocalizedSortKey(const QString &text, const QLocale &locale);

    /// Negative, zero or positive; zero only for the same text.
    [[nodiscard]] int compare(const LocalizedSortKey &other) const;

private:
    QString m_text;
    QCollatorSortKey m_key;
};

} // namespace Quillmere
