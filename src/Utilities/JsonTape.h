#pragma once

#include <QtGlobal>

#include <string>
#include <vector>

namespace Quillmere {

enum class JsonType : quint8 { Null, Boolean, Number, String, Array, Object };

/// One value of a parsed text, or one key of an object.
struct JsonToken
{
    JsonType type = JsonType::Null;
    quint32 length = 0; ///< Bytes of a text or number; elements of an array, members of an object; 1 for true.
    quint32 offset = 0; ///< Where a text or number begins in JsonTape::texts.
    quint32 end = 0; ///< Index of the first token behind the value and all that is in it.
};

/// A parsed text, flat: a container's token is followed by those of its contents, an object's by key and value in turn.
struct JsonTape
{
    std::vector<JsonToken> tokens;
    std::string texts; ///< UTF-8, escapes undone; numbers as they were written.
};

} // namespace Quillmere
