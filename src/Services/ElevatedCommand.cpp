#include "Services/ElevatedCommand.h"

namespace Quillmere {

namespace {

QString quotedForShell(QString word)
{
    // Nothing can stand for a single quote inside single quotes: close them, put it in double ones, open them again.
    word.replace(u'\'', u"'\"'\"'"_qs);
    return u'\'' + word + u'\'';
}

QString escapedForScript(QString text)
{
    // Backslashes first: those that stand before quotation marks are ours.
    text.replace(u'\\', u"\\\\"_qs);
    text.replace(u'"', u"\\\""_qs);
    return text;
}

} // namespace

Command elevated(const Command &command)
{
    QStringList words = {quotedForShell(command.launchPath)};
    for (const QString &argument : command.arguments)
        words.append(quotedForShell(argument));
    const QString script
        = u"do shell script \""_qs + escapedForScript(words.join(u' ')) + u"\" with administrator privileges"_qs;
    return {u"/usr/bin/osascript"_qs, {u"-e"_qs, script}};
}

} // namespace Quillmere
