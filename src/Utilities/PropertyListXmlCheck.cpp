#include "Utilities/PropertyListCheck.h"
#include "Utilities/PropertyListLimits.h"

#include <QDateTime>
#include <QRegularExpression>
#include <QStringConverter>
#include <QStringList>
#include <QXmlStreamReader>

namespace Quillmere {

namespace {

bool isContainer(const QString &name)
{
    return name == u"array" || name == u"dict";
}

bool isLeaf(const QString &name)
{
    static const QStringList names
        = {u"data"_qs, u"date"_qs, u"false"_qs, u"integer"_qs, u"key"_qs, u"real"_qs, u"string"_qs, u"true"_qs};
    return names.contains(name);
}

bool isInteger(const QString &text)
{
    static const QRegularExpression form(uR"(^[+-]?(0[xX][0-9a-fA-F]+|[0-9]+)$)"_qs);
    if (!form.match(text).hasMatch())
        return false;
    const bool negative = text.startsWith(u'-');
    const QString digits = negative || text.startsWith(u'+') ? text.sliced(1) : text;
    const bool hexadecimal = digits.startsWith(u"0x", Qt::CaseInsensitive);
    bool fits = false;
    const quint64 magnitude = (hexadecimal ? digits.sliced(2) : digits).toULongLong(&fits, hexadecimal ? 16 : 10);
    constexpr quint64 leastMagnitude = quint64{1} << 63;
    return fits && (!negative || magnitude <= leastMagnitude);
}

bool isReal(const QString &text)
{
    static const QRegularExpression form(
        uR"(^([+-]?([0-9]+(\.[0-9]*)?|\.[0-9]+)([eE][+-]?[0-9]+)?|nan|[+-]?inf(inity)?)$)"_qs,
        QRegularExpression::CaseInsensitiveOption);
    return form.match(text).hasMatch();
}

bool isDate(const QString &text)
{
    static const QRegularExpression form(uR"(^[0-9]{4}-[0-9]{2}-[0-9]{2}T[0-9]{2}:[0-9]{2}:[0-9]{2}Z$)"_qs);
    return form.match(text).hasMatch() && QDateTime::fromString(text, Qt::ISODate).isValid();
}

bool isBase64(const QString &text)
{
    static const QRegularExpression form(uR"(^[A-Za-z0-9+/\s]*=?\s*=?\s*$)"_qs);
    return form.match(text).hasMatch();
}

bool isReadable(const QString &element, const QString &text)
{
    if (element == u"integer")
        return isInteger(text.trimmed());
    if (element == u"real")
        return isReal(text.trimmed());
    if (element == u"date")
        return isDate(text.trimmed());
    if (element == u"data")
        return isBase64(text);
    return (element != u"true" && element != u"false") || text.trimmed().isEmpty();
}

/// Walks through the elements and stops at the first that is not as it should be.
class ElementWalk
{
public:
    explicit ElementWalk(const QString &text)
        : m_reader(text)
    {
    }

    bool isSound()
    {
        while (!m_reader.atEnd()) {
            if (!acceptToken(m_reader.readNext()))
                return false;
        }
        return !m_reader.hasError();
    }

private:
    struct Element
    {
        QString name;
        qsizetype children = 0;
        QString text;
    };

    bool acceptToken(QXmlStreamReader::TokenType token)
    {
        switch (token) {
        case QXmlStreamReader::StartElement:
            return acceptStart();
        case QXmlStreamReader::EndElement:
            return acceptEnd();
        case QXmlStreamReader::Characters:
            return acceptText();
        case QXmlStreamReader::DTD:
            return !m_reader.text().contains(u'[');
        case QXmlStreamReader::Invalid:
        case QXmlStreamReader::EntityReference:
            return false;
        default:
            return true;
        }
    }

    bool acceptStart()
    {
        const QString name = m_reader.qualifiedName().toString();
        const bool isRoot = name == u"plist";
        if ((!m_reader.attributes().isEmpty() && !isRoot) || !mayStandHere(name))
            return false;
        if (isContainer(name) && ++m_containers > PropertyListLimits::deepestNesting)
            return false;
        if (!m_open.isEmpty())
            ++m_open.last().children;
        m_open.append({name, 0, {}});
        return true;
    }

    bool mayStandHere(const QString &name) const
    {
        if (name == u"plist")
            return m_open.isEmpty();
        if (!isContainer(name) && !isLeaf(name))
            return false;
        if (m_open.isEmpty())
            return true;
        const Element &parent = m_open.last();
        if (parent.name == u"plist")
            return parent.children == 0 && name != u"key";
        if (parent.name == u"dict")
            return (parent.children % 2 == 0) == (name == u"key");
        return parent.name == u"array" && name != u"key";
    }

    bool acceptEnd()
    {
        const Element element = m_open.takeLast();
        if (element.name == u"plist")
            return element.children == 1;
        if (!isContainer(element.name))
            return isReadable(element.name, element.text);
        --m_containers;
        return element.name == u"array" || element.children % 2 == 0;
    }

    bool acceptText()
    {
        if (m_open.isEmpty() || !isLeaf(m_open.last().name))
            return m_reader.isWhitespace() && !m_reader.isCDATA();
        m_open.last().text += m_reader.text();
        return true;
    }

    QXmlStreamReader m_reader;
    QList<Element> m_open;
    int m_containers = 0;
};

} // namespace

Result<void> checkXmlPropertyList(const QByteArray &text)
{
    QStringDecoder decoder(QStringConverter::Utf8);
    const QString decoded = decoder(text);
    if (decoder.hasError() || !ElementWalk(decoded).isSound())
        return Failure{Failure::Kind::Malformed, {}, u"This is not a sound XML property list."_qs};
    return {};
}

} // namespace Quillmere
