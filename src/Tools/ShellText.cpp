#include "Tools/ShellText.h"

#include <utility>

namespace Quillmere {

namespace {

// What may stand bare: everything else means, or could mean, something to a shell. ~ is left out with its home
// folders, = with its assignments, and no letter beyond ASCII is let in, since a locale may hold blanks there.
bool isPlain(QChar character)
{
    const char16_t code = character.unicode();
    return (code >= u'a' && code <= u'z') || (code >= u'A' && code <= u'Z') || (code >= u'0' && code <= u'9')
        || QStringView(u"-_./,:+@%").contains(character);
}

/// Reads a text from left to right. Each step is false where the text is refused.
class Reader
{
public:
    explicit Reader(QStringView text)
        : m_rest(text)
    {
    }

    [[nodiscard]] std::optional<ShellCommands> read()
    {
        while (!m_rest.isEmpty()) {
            if (!step())
                return std::nullopt;
        }
        return endCommand() ? std::optional(m_commands) : std::nullopt;
    }

private:
    [[nodiscard]] bool step()
    {
        const QChar next = take();
        if (next == u' ') {
            endWord();
            return true;
        }
        if (next == u'&')
            return !m_rest.isEmpty() && take() == u'&' && endCommand();
        m_inWord = true;
        if (next == u'\'')
            return readSingleQuoted();
        if (next == u'"')
            return readDoubleQuoted();
        if (next == u'\\')
            return readEscaped();
        m_word += next;
        return isPlain(next);
    }

    [[nodiscard]] bool readSingleQuoted()
    {
        while (!m_rest.isEmpty()) {
            const QChar next = take();
            if (next == u'\'')
                return true;
            m_word += next;
        }
        return false;
    }

    [[nodiscard]] bool readDoubleQuoted()
    {
        while (!m_rest.isEmpty()) {
            const QChar next = take();
            if (next == u'"')
                return true;
            if (next == u'$' || next == u'`')
                return false;
            // Between double quotes a backslash stands for itself, unless one of these follows.
            const bool escapes
                = next == u'\\' && !m_rest.isEmpty() && QStringView(u"$`\"\\\n").contains(m_rest.front());
            if (escapes && !readEscaped())
                return false;
            if (!escapes)
                m_word += next;
        }
        return false;
    }

    /// A line that goes on behind a backslash is refused: nobody who quotes writes one.
    [[nodiscard]] bool readEscaped()
    {
        if (m_rest.isEmpty() || m_rest.front() == u'\n')
            return false;
        m_word += take();
        return true;
    }

    [[nodiscard]] QChar take()
    {
        const QChar first = m_rest.front();
        m_rest = m_rest.sliced(1);
        return first;
    }

    void endWord()
    {
        if (std::exchange(m_inWord, false))
            m_words.append(std::exchange(m_word, QString()));
    }

    /// False where there is none.
    [[nodiscard]] bool endCommand()
    {
        endWord();
        if (m_words.isEmpty())
            return false;
        m_commands.append(std::exchange(m_words, QStringList()));
        return true;
    }

    QStringView m_rest;
    QString m_word;
    bool m_inWord = false;
    QStringList m_words;
    ShellCommands m_commands;
};

} // namespace

std::optional<ShellCommands> parseShellText(const QString &text)
{
    if (text.contains(QChar::Null))
        return std::nullopt;
    return Reader(text).read();
}

} // namespace Quillmere
