#include "Utilities/PropertyListOldStyle.h"

#include "Utilities/PropertyListLimits.h"

#include <QStringConverter>

#include <plist/plist.h>

#include <cstring>
#include <optional>

namespace Quillmere {

namespace {

// What one value costs in the library's tree beside its contents, in the order of magnitude.
constexpr quint64 bytesPerParsedValue = 128;
constexpr qsizetype mostOctalDigits = 3;
constexpr qsizetype unicodeDigits = 4;

bool isBlank(char character)
{
    return character == ' ' || (character >= '\t' && character <= '\r');
}

bool isBare(char character)
{
    return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z')
        || (character >= '0' && character <= '9') || (character != '\0' && std::strchr("_$/:.-", character));
}

int digitOf(char character, int base)
{
    const int digit = character >= '0' && character <= '9' ? character - '0'
        : character >= 'a' && character <= 'f'             ? character - 'a' + 10
        : character >= 'A' && character <= 'F'             ? character - 'A' + 10
                                                           : base;
    return digit < base ? digit : -1;
}

/// Goes through the text once, from value to value. Whatever is not as it should be is nothing.
class Parser
{
public:
    explicit Parser(const QByteArray &text)
        : m_text(text)
    {
    }

    PropertyListNode root()
    {
        if (!skipBlanks() || atEnd())
            return {};
        const bool hasBraces = accept('{');
        PropertyListNode dictionary = pairs();
        if (!dictionary || accept('}') != hasBraces || !skipBlanks() || !atEnd())
            return {};
        return dictionary;
    }

private:
    /// What is before a closing brace, or the end of the text.
    PropertyListNode pairs()
    {
        PropertyListNode dictionary = counted(plist_new_dict());
        while (skipBlanks() && !atEnd() && peek() != '}') {
            const std::optional<QByteArray> key = word();
            if (!key || !skipBlanks())
                return {};
            PropertyListNode value = accept('=') ? this->value() : text(*key);
            if (!value || !skipBlanks() || !accept(';'))
                return {};
            plist_dict_set_item(dictionary.get(), key->constData(), value.release());
        }
        return m_isBroken ? PropertyListNode() : std::move(dictionary);
    }

    PropertyListNode value()
    {
        if (!skipBlanks() || atEnd())
            return {};
        if (peek() == '<') {
            ++m_position;
            return data();
        }
        if (peek() != '{' && peek() != '(') {
            const std::optional<QByteArray> found = word();
            return found ? text(*found) : PropertyListNode();
        }
        // The root is one container already.
        if (m_depth + 1 >= PropertyListLimits::deepestNesting)
            return {};
        ++m_depth;
        PropertyListNode container = accept('{') ? inner() : (++m_position, array());
        --m_depth;
        return container;
    }

    PropertyListNode inner()
    {
        PropertyListNode dictionary = pairs();
        return dictionary && accept('}') ? std::move(dictionary) : PropertyListNode();
    }

    PropertyListNode array()
    {
        PropertyListNode found = counted(plist_new_array());
        while (skipBlanks() && !accept(')')) {
            PropertyListNode element = value();
            if (!element || !skipBlanks() || (!accept(',') && (atEnd() || peek() != ')')))
                return {};
            plist_array_append_item(found.get(), element.release());
        }
        return m_isBroken ? PropertyListNode() : std::move(found);
    }

    PropertyListNode data()
    {
        QByteArray digits;
        while (skipBlanks() && !atEnd() && digitOf(peek(), 16) >= 0)
            digits.append(m_text.at(m_position++));
        if (!accept('>') || digits.size() % 2 != 0)
            return {};
        const QByteArray bytes = QByteArray::fromHex(digits);
        return counted(plist_new_data(bytes.constData(), static_cast<uint64_t>(bytes.size())), bytes.size());
    }

    PropertyListNode text(const QByteArray &contents)
    {
        return counted(plist_new_string(contents.constData()), contents.size());
    }

    /// Owns @p node, unless all of them together have become too large.
    PropertyListNode counted(plist_t node, qsizetype contents = 0)
    {
        PropertyListNode owned(node);
        m_bytes += bytesPerParsedValue + static_cast<quint64>(contents);
        return m_bytes > PropertyListLimits::mostExpandedBytes ? PropertyListNode() : std::move(owned);
    }

    /// A text, quoted or bare.
    std::optional<QByteArray> word()
    {
        if (!atEnd() && (peek() == '"' || peek() == '\''))
            return quoted(m_text.at(m_position++));
        const qsizetype start = m_position;
        while (!atEnd() && isBare(peek()))
            ++m_position;
        if (m_position == start)
            return std::nullopt;
        return m_text.sliced(start, m_position - start);
    }

    std::optional<QByteArray> quoted(char quote)
    {
        QByteArray plain;
        QString escaped;
        // Escapes may be halves of surrogate pairs, which only together are a character.
        const auto flush = [&] {
            const bool isSound = escaped.isValidUtf16() && !escaped.contains(QChar(u'\0'));
            plain += escaped.toUtf8();
            escaped.clear();
            return isSound;
        };
        while (!atEnd()) {
            const char next = m_text.at(m_position++);
            if (next == '\\') {
                const std::optional<char16_t> character = escape();
                if (!character)
                    return std::nullopt;
                escaped.append(QChar(*character));
                continue;
            }
            if (!flush())
                return std::nullopt;
            if (next == quote)
                return plain;
            plain.append(next);
        }
        return std::nullopt;
    }

    std::optional<char16_t> escape()
    {
        if (atEnd())
            return std::nullopt;
        const char letter = m_text.at(m_position++);
        if (letter == 'U')
            return number(16, unicodeDigits);
        if (digitOf(letter, 8) >= 0) {
            --m_position;
            return number(8, mostOctalDigits);
        }
        const qsizetype special = QByteArrayView("abfnrtv").indexOf(letter);
        if (special >= 0)
            return u"\a\b\f\n\r\t\v"[special];
        // Of a character of several bytes the first alone would be read here.
        return static_cast<signed char>(letter) > 0 ? std::optional<char16_t>(letter) : std::nullopt;
    }

    std::optional<char16_t> number(int base, qsizetype mostDigits)
    {
        int found = 0;
        qsizetype digits = 0;
        for (; digits < mostDigits && !atEnd() && digitOf(peek(), base) >= 0; ++digits)
            found = found * base + digitOf(m_text.at(m_position++), base);
        return digits == 0 ? std::nullopt : std::optional(static_cast<char16_t>(found));
    }

    /// Comments count as blanks. False for one that has no end.
    bool skipBlanks()
    {
        while (!atEnd()) {
            const QByteArrayView rest = QByteArrayView(m_text).sliced(m_position);
            if (isBlank(rest.front())) {
                ++m_position;
            } else if (rest.startsWith("//")) {
                const qsizetype end = rest.indexOf('\n');
                m_position = end < 0 ? m_text.size() : m_position + end;
            } else if (rest.startsWith("/*")) {
                const qsizetype end = rest.sliced(2).indexOf("*/");
                if (end < 0) {
                    m_isBroken = true;
                    return false;
                }
                m_position += end + 4;
            } else {
                break;
            }
        }
        return true;
    }

    [[nodiscard]] bool atEnd() const { return m_position >= m_text.size(); }
    [[nodiscard]] char peek() const { return m_text.at(m_position); }
    bool accept(char character)
    {
        const bool isThere = !atEnd() && peek() == character;
        m_position += isThere ? 1 : 0;
        return isThere;
    }

    const QByteArray &m_text;
    qsizetype m_position = 0;
    int m_depth = 0; ///< Containers that are open below the root.
    quint64 m_bytes = 0; ///< Of all values so far.
    bool m_isBroken = false; ///< A comment has no end.
};

bool isUtf8(const QByteArray &text)
{
    QStringDecoder decoder(QStringConverter::Utf8, QStringConverter::Flag::Stateless);
    const QString decoded = decoder(text);
    return !decoder.hasError();
}

} // namespace

Result<PropertyListNode> readOldStylePropertyList(const QByteArray &text)
{
    const Failure malformed = {Failure::Kind::Malformed, {}, u"This is no property list."_qs};
    if (!isUtf8(text) || text.contains('\0'))
        return malformed;
    PropertyListNode root = Parser(text).root();
    if (!root)
        return malformed;
    return root;
}

} // namespace Quillmere
