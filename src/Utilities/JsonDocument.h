#pragma once

#include "Utilities/JsonValue.h"
#include "Values/Result.h"

#include <memory>

namespace Quillmere {

/// A parsed JSON text. Copies share what was parsed. Any thread.
class JsonDocument
{
public:
    /// Strict JSON but for one trailing comma in an array or object, in UTF-8, UTF-16 or UTF-32, of any top-level
    /// type. Fails with Malformed, its detail naming the place in the UTF-8 text: also for texts that are not Unicode,
    /// half of a surrogate pair included, and for more than 512 containers inside each other.
    [[nodiscard]] static Result<JsonDocument> parse(const QByteArray &bytes);

    [[nodiscard]] JsonValue root() const { return {*m_tape, 0}; }

private:
    explicit JsonDocument(std::shared_ptr<const JsonTape> tape)
        : m_tape(std::move(tape))
    {
    }

    std::shared_ptr<const JsonTape> m_tape;
};

} // namespace Quillmere
