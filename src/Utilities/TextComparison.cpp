#include "Utilities/TextComparison.h"

#include "Utilities/LocalizedSortKey.h"

#include <QCollator>

#include <algorithm>

namespace Quillmere {

namespace {

bool isDigit(QChar character)
{
    return character >= u'0' && character <= u'9';
}

qsizetype digitsFrom(const QString &text, qsizetype start)
{
    qsizetype end = start;
    while (end < text.size() && isDigit(text[end]))
        ++end;
    return end - start;
}

// Of two equal numbers the one with fewer digits comes first.
int compareDigitRuns(const QString &left, const QString &right)
{
    qsizetype atLeft = 0;
    qsizetype atRight = 0;
    while (atLeft < left.size() && atRight < right.size()) {
        const qsizetype leftDigits = digitsFrom(left, atLeft);
        const qsizetype rightDigits = digitsFrom(right, atRight);
        if (leftDigits > 0 && rightDigits > 0 && leftDigits != rightDigits)
            return leftDigits < rightDigits ? -1 : 1;
        atLeft += std::max<qsizetype>(leftDigits, 1);
        atRight += std::max<qsizetype>(rightDigits, 1);
    }
    return 0;
}

int compareWhatTheCollatorDoesNot(const QString &left, const QString &right)
{
    if (const int order = compareDigitRuns(left, right))
        return order;
    return left.compare(right);
}

const QCollator &collator(const QLocale &locale)
{
    // Making one reads the rules of the locale; whoever sorts compares thousands of times.
    thread_local QCollator kept{QLocale::c()};
    if (kept.locale() != locale) {
        kept.setLocale(locale);
        kept.setNumericMode(true);
        kept.setCaseSensitivity(Qt::CaseSensitive);
    }
    return kept;
}

} // namespace

QLocale collationLocale(Language language)
{
    switch (language) {
    case Language::Spanish:
        return QLocale(QLocale::Spanish, QLocale::Spain);
    case Language::Russian:
        return QLocale(QLocale::Russian, QLocale::Russia);
    default:
        return QLocale(QLocale::English, QLocale::UnitedStates);
    }
}

int localizedStandardCompare(const QString &left, const QString &right, const QLocale &locale)
{
    if (const int order = collator(locale).compare(left, right))
        return order;
    return compareWhatTheCollatorDoesNot(left, right);
}

LocalizedSortKey::LocalizedSortKey(const QString &text, const QLocale &locale)
    : m_text(text)
    , m_key(collator(locale).sortKey(text))
{
}

int LocalizedSortKey::compare(const LocalizedSortKey &other) const
{
    if (const int order = m_key.compare(other.m_key))
        return order;
    return compareWhatTheCollatorDoesNot(m_text, other.m_text);
}

bool localizedCaseInsensitiveContains(const QString &haystack, const QString &needle)
{
    if (needle.isEmpty())
        return false;
    const auto composed = [](const QString &text) { return text.normalized(QString::NormalizationForm_C); };
    return composed(haystack).contains(composed(needle), Qt::CaseInsensitive);
}

} // namespace Quillmere
