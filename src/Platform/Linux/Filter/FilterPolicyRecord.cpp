#include "Platform/Linux/Filter/FilterPolicyRecord.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStringList>

#include <algorithm>

namespace Quillmere {

namespace {

const QString filterSockets = u"filterSockets"_qs;
const QString identifier = u"identifier"_qs;
const QString description = u"description"_qs;
const QString enabled = u"enabled"_qs;
const QString blocked = u"blockedBundleIdentifiers"_qs;
const QString eco = u"ecoTrafficEnabled"_qs;
const QString ecoAllowed = u"ecoAllowedBundleIdentifiers"_qs;
constexpr qsizetype members = 7;

std::optional<QStringList> textsOf(const QJsonValue &value)
{
    const QJsonArray array = value.toArray();
    const bool isText
        = value.isArray() && std::all_of(array.begin(), array.end(), [](auto element) { return element.isString(); });
    return isText ? std::optional(value.toVariant().toStringList()) : std::nullopt;
}

} // namespace

QByteArray written(const FilterPolicyRecord &record)
{
    const QVariantMap &policy = record.configuration.vendorConfiguration;
    const QJsonObject object = {
        {filterSockets, record.configuration.filterSockets},
        {identifier, record.configuration.filterDataProviderBundleIdentifier},
        {description, record.localizedDescription},
        {enabled, record.isEnabled},
        {blocked, QJsonArray::fromStringList(policy.value(blocked).toStringList())},
        {eco, policy.value(eco).toBool()},
        {ecoAllowed, QJsonArray::fromStringList(policy.value(ecoAllowed).toStringList())},
    };
    return QJsonDocument(object).toJson(QJsonDocument::Compact) + '\n';
}

std::optional<FilterPolicyRecord> readFilterPolicyRecord(const QByteArray &json)
{
    const QJsonObject object = QJsonDocument::fromJson(json).object();
    const std::optional<QStringList> blockedIdentifiers = textsOf(object.value(blocked));
    const std::optional<QStringList> allowedIdentifiers = textsOf(object.value(ecoAllowed));
    const bool isSound = object.size() == members && object.value(filterSockets).isBool()
        && object.value(identifier).isString() && object.value(description).isString() && object.value(enabled).isBool()
        && object.value(eco).isBool() && blockedIdentifiers && allowedIdentifiers;
    if (!isSound)
        return std::nullopt;

    FilterPolicyRecord record;
    record.configuration.filterSockets = object.value(filterSockets).toBool();
    record.configuration.filterDataProviderBundleIdentifier = object.value(identifier).toString();
    record.configuration.vendorConfiguration = {
        {blocked, *blockedIdentifiers},
        {eco, object.value(eco).toBool()},
        {ecoAllowed, *allowedIdentifiers},
    };
    record.localizedDescription = object.value(description).toString();
    record.isEnabled = object.value(enabled).toBool();
    return record;
}

} // namespace Quillmere
