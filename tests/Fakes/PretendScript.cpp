#include "Fakes/PretendScript.h"

namespace Quillmere {

namespace {

/// Undoes what the script language asks for inside its quotation marks.
QString withoutEscapes(const QString &text)
{
    QString plain;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text[i] == u'\\')
            ++i;
        if (i < text.size())
            plain += text[i];
    }
    return plain;
}

} // namespace

QStringList wordsOfScript(const QString &script)
{
    const QString before = u"do shell script \""_qs;
    const QString after = u"\" with administrator privileges"_qs;
    if (!script.startsWith(before) || !script.endsWith(after))
        return {};
    const QString command = withoutEscapes(script.sliced(before.size()).chopped(after.size()));
    QStringList words = {QString()};
    QChar quote;
    for (const QChar character : command) {
        if (!quote.isNull() && character == quote)
            quote = QChar();
        else if (quote.isNull() && (character == u'\'' || character == u'"'))
            quote = character;
        else if (quote.isNull() && character == u' ')
            words.append(QString());
        else
            words.last() += character;
    }
    return words;
}

} // namespace Quillmere
