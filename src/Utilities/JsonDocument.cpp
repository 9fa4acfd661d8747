#include "Utilities/JsonDocument.h"

#include "Utilities/JsonEncoding.h"

#include <rapidjson/error/en.h>
#include <rapidjson/memorystream.h>
#include <rapidjson/reader.h>

#include <limits>

namespace Quillmere {

namespace {

constexpr std::size_t deepestNesting = 512;

/// Lays the events of the reader down on a tape. Answering false ends the parse.
class TapeRecorder final : public rapidjson::BaseReaderHandler<rapidjson::UTF8<>, TapeRecorder>
{
public:
    explicit TapeRecorder(JsonTape &tape)
        : m_tape(tape)
    {
    }

    bool Null() { return add(JsonType::Null); }
    bool Bool(bool value) { return add(JsonType::Boolean, value ? 1 : 0); }
    bool RawNumber(const char *text, rapidjson::SizeType length, bool)
    {
        return addText(JsonType::Number, text, length);
    }
    bool String(const char *text, rapidjson::SizeType length, bool)
    {
        return !holdsSurrogate(QByteArrayView(text, length)) && addText(JsonType::String, text, length);
    }
    bool Key(const char *text, rapidjson::SizeType length, bool copy) { return String(text, length, copy); }
    bool StartObject() { return open(JsonType::Object); }
    bool EndObject(rapidjson::SizeType count) { return close(count); }
    bool StartArray() { return open(JsonType::Array); }
    bool EndArray(rapidjson::SizeType count) { return close(count); }

private:
    /// The reader pairs the first half of a surrogate pair with its second, but lets a second half stand alone.
    static bool holdsSurrogate(QByteArrayView utf8)
    {
        for (qsizetype at = utf8.indexOf('\xED'); at >= 0; at = utf8.indexOf('\xED', at + 1)) {
            if (static_cast<uchar>(utf8.at(at + 1)) >= 0xA0)
                return true;
        }
        return false;
    }

    bool add(JsonType type, quint32 length = 0, quint32 offset = 0)
    {
        const auto index = static_cast<quint32>(m_tape.tokens.size());
        m_tape.tokens.push_back({type, length, offset, index + 1});
        return true;
    }

    bool addText(JsonType type, const char *text, rapidjson::SizeType length)
    {
        const auto offset = static_cast<quint32>(m_tape.texts.size());
        m_tape.texts.append(text, length);
        return add(type, length, offset);
    }

    bool open(JsonType type)
    {
        if (m_open.size() == deepestNesting)
            return false;
        m_open.push_back(m_tape.tokens.size());
        return add(type);
    }

    bool close(rapidjson::SizeType count)
    {
        JsonToken &container = m_tape.tokens[m_open.back()];
        m_open.pop_back();
        container.length = count;
        container.end = static_cast<quint32>(m_tape.tokens.size());
        return true;
    }

    JsonTape &m_tape;
    std::vector<std::size_t> m_open; ///< Where the containers begin that are not closed yet.
};

} // namespace

Result<JsonDocument> JsonDocument::parse(const QByteArray &bytes)
{
    const std::optional<QByteArray> text = jsonTextAsUtf8(bytes);
    if (!text)
        return Failure::malformed(u"The text is not Unicode."_qs);
    // The tape counts in 32 bits, and no text has more tokens than bytes.
    if (text->size() > std::numeric_limits<qint32>::max())
        return Failure::malformed(u"The text is too long."_qs);

    constexpr unsigned flags = rapidjson::kParseIterativeFlag | rapidjson::kParseTrailingCommasFlag
        | rapidjson::kParseNumbersAsStringsFlag | rapidjson::kParseValidateEncodingFlag;
    const auto tape = std::make_shared<JsonTape>();
    TapeRecorder recorder(*tape);
    rapidjson::MemoryStream stream(text->constData(), static_cast<std::size_t>(text->size()));
    rapidjson::Reader reader;
    const rapidjson::ParseResult result = reader.Parse<flags>(stream, recorder);
    if (result.IsError())
        return Failure::malformed(
            u"%1 At %2."_qs.arg(QString::fromLatin1(rapidjson::GetParseError_En(result.Code()))).arg(result.Offset()));
    // The reader takes a zero byte for the end of the text.
    if (stream.Tell() != static_cast<std::size_t>(text->size()))
        return Failure::malformed(u"Something follows the value. At %1."_qs.arg(stream.Tell()));
    return JsonDocument(tape);
}

} // namespace Quillmere
