#include "Tools/ScriptText.h"

namespace Quillmere {

namespace {

constexpr QStringView opening = u"do shell script \"";
constexpr QStringView closing = u"\" with administrator privileges";

} // namespace

std::optional<QString> shellTextOfScript(const QString &script)
{
    if (!script.startsWith(opening) || script.contains(QChar::Null))
        return std::nullopt;
    QString text;
    QStringView rest = QStringView(script).sliced(opening.size());
    while (!rest.isEmpty() && rest.front() != u'"') {
        if (rest.front() == u'\\') {
            rest = rest.sliced(1);
            if (rest.isEmpty() || !QStringView(u"\"\\'").contains(rest.front()))
                return std::nullopt;
            // No escape of scripts, but of a shell text that was put in as it stands: '\''.
            if (rest.front() == u'\'')
                text += u'\\';
        }
        text += rest.front();
        rest = rest.sliced(1);
    }
    return rest == closing ? std::optional(text) : std::nullopt;
}

} // namespace Quillmere
