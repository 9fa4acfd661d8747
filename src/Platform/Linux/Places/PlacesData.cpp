#include "Platform/Linux/Places/PlacesData.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace Quillmere {

namespace {

QList<PlacesData::ReasonedPlace> reasonedPlaces(const QJsonArray &entries)
{
    QList<PlacesData::ReasonedPlace> places;
    for (const QJsonValue &entry : entries)
        places.append({PlacesData::Place::parse(entry[u"place"].toString().toUtf8()), entry[u"reason"].toString()});
    return places;
}

QList<PlacesData::RefusedRoot> refusedRoots(const QJsonArray &entries)
{
    QList<PlacesData::RefusedRoot> places;
    for (const QJsonValue &entry : entries) {
        places.append({PlacesData::Place::parse(entry[u"place"].toString().toUtf8()), entry[u"within"].toBool(),
                       entry[u"reason"].toString()});
    }
    return places;
}

QList<PlacesData::Row> rows(const QJsonArray &entries)
{
    QList<PlacesData::Row> rows;
    for (const QJsonValue &entry : entries) {
        rows.append({PlacesData::Place::parse(entry[u"root"].toString().toUtf8()), entry[u"suffix"].toString().toUtf8(),
                     entry[u"reason"].toString()});
    }
    return rows;
}

QList<PlacesData::Variable> variables(const QJsonArray &entries)
{
    QList<PlacesData::Variable> variables;
    for (const QJsonValue &entry : entries) {
        const QByteArray usual = entry[u"usual"].toString().toUtf8();
        variables.append({entry[u"name"].toString().toUtf8(),
                          usual.isEmpty() ? std::nullopt : std::optional(PlacesData::Place::parse(usual)),
                          entry[u"isList"].toBool()});
    }
    return variables;
}

QHash<QString, QList<PlacesData::ListRow>> lists(const QJsonObject &entries)
{
    QHash<QString, QList<PlacesData::ListRow>> lists;
    for (auto list = entries.begin(); list != entries.end(); ++list) {
        for (const QJsonValue &entry : list.value().toArray()) {
            lists[list.key()].append({PlacesData::Place::parse(entry[u"place"].toString().toUtf8()),
                                      entry[u"name"].toString(), entry[u"holds"].toString().toUtf8(),
                                      entry[u"reason"].toString()});
        }
    }
    return lists;
}

PlacesData readPlaces(const QString &name)
{
    QFile file(name);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("The places in %s are missing from the program.", qUtf8Printable(name));
    QJsonParseError error = {};
    const QJsonObject document = QJsonDocument::fromJson(file.readAll(), &error).object();
    if (document.isEmpty())
        qFatal("The places in %s cannot be read: %s", qUtf8Printable(name), qUtf8Printable(error.errorString()));

    PlacesData data;
    for (const QJsonValue &root : document[u"programRoots"].toArray())
        data.programRoots.append(PlacesData::Place::parse(root.toString().toUtf8()));
    const QJsonObject tables = document[u"rows"].toObject();
    data.rows = {
        {PlaceTable::UserCache, rows(tables[u"userCache"].toArray())},
        {PlaceTable::UserLogs, rows(tables[u"userLogs"].toArray())},
        {PlaceTable::ContainerCache, rows(tables[u"containerCache"].toArray())},
        {PlaceTable::TemporaryFiles, rows(tables[u"temporaryFiles"].toArray())},
    };
    data.variables = variables(document[u"variables"].toArray());
    data.lists = lists(document[u"lists"].toObject());
    data.notRoots = refusedRoots(document[u"notRoots"].toArray());
    data.keep = reasonedPlaces(document[u"keep"].toArray());
    return data;
}

} // namespace

PlacesData::Place PlacesData::Place::parse(const QByteArray &text)
{
    QList<QByteArray> names = text.split('/');
    const QByteArray base = names.takeFirst();
    names.removeAll(QByteArray());
    return {base, names};
}

const PlacesData &PlacesData::builtIn()
{
    static const PlacesData data = readPlaces(u":/platform/Places.json"_qs);
    return data;
}

} // namespace Quillmere
