#include "Services/OperationLogCoding.h"

#include "Utilities/JsonDocument.h"
#include "Utilities/JsonObjectDecoder.h"
#include "Utilities/JsonWriter.h"

namespace Quillmere {

namespace {

Result<OperationLog> decode(const JsonValue &value)
{
    OperationLog log;
    JsonObjectDecoder object(value);
    object.required("id", log.id);
    object.required("date", log.date);
    object.required("operationType", log.operationType);
    object.required("foundSize", log.foundSize);
    object.required("cleanedSize", log.cleanedSize);
    object.required("filesRemoved", log.filesRemoved);
    object.required("filesSkipped", log.filesSkipped);
    object.required("errors", log.errors);
    object.required("categoriesAffected", log.categoriesAffected);
    object.required("status", log.status);
    if (object.failure())
        return *object.failure();
    return log;
}

void encode(const OperationLog &log, JsonWriter &writer)
{
    writer.beginObject();
    writer.member("id", log.id);
    writer.member("date", log.date);
    writer.member("operationType", log.operationType);
    writer.member("foundSize", log.foundSize);
    writer.member("cleanedSize", log.cleanedSize);
    writer.member("filesRemoved", log.filesRemoved);
    writer.member("filesSkipped", log.filesSkipped);
    writer.member("errors", log.errors);
    writer.member("categoriesAffected", log.categoriesAffected);
    writer.member("status", log.status);
    writer.endObject();
}

} // namespace

Result<QByteArray> encodeOperationLogs(const QList<OperationLog> &logs)
{
    JsonWriter writer;
    writer.beginArray();
    for (const OperationLog &log : logs)
        encode(log, writer);
    writer.endArray();
    return writer.result();
}

Result<QList<OperationLog>> decodeOperationLogs(const QByteArray &json)
{
    const Result<JsonDocument> document = JsonDocument::parse(json);
    if (!document)
        return document.failure();
    const std::optional<QList<JsonValue>> values = document.value().root().elements();
    if (!values)
        return Failure{Failure::Kind::Malformed, {}, u"The history is not an array."_qs};

    QList<OperationLog> logs;
    logs.reserve(values->size());
    for (const JsonValue &value : *values) {
        const Result<OperationLog> log = decode(value);
        if (!log)
            return log.failure();
        logs.append(log.value());
    }
    return logs;
}

} // namespace Quillmere
