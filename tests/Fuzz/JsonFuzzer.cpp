#include "Services/AdvertisementParsing.h"
#include "Services/OperationLogCoding.h"
#include "Utilities/JsonDocument.h"

using namespace Quillmere;

namespace {

/// Looks at @p value in every way, and at all that is in it.
void visit(const JsonValue &value)
{
    [[maybe_unused]] const auto boolean = value.boolean();
    [[maybe_unused]] const auto integer = value.integer();
    [[maybe_unused]] const auto number = value.number();
    [[maybe_unused]] const auto string = value.string();
    if (const std::optional<JsonValue> member = value.member("a"))
        visit(*member);
    for (const JsonValue &element : value.elements().value_or(QList<JsonValue>()))
        visit(element);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const char *bytes, std::size_t size)
{
    const QByteArray text(bytes, static_cast<qsizetype>(size));
    if (const Result<JsonDocument> document = JsonDocument::parse(text))
        visit(document.value().root());

    const Result<QList<OperationLog>> logs = decodeOperationLogs(text);
    if (logs) {
        const QByteArray again = encodeOperationLogs(logs.value()).value();
        if (decodeOperationLogs(again).value() != logs.value())
            qFatal("The records came back as others.");
    }
    for (const Advertisement &each : parseAdvertisements(text, Language::Spanish)) {
        if (each.clickURL.isEmpty() || each.duration < Advertisement::shortestDuration
            || each.duration > Advertisement::longestDuration)
            qFatal("A promotion leads nowhere, or stays too short or too long.");
    }
    return 0;
}
