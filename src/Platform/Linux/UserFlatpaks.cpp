#include "Platform/Linux/UserFlatpaks.h"

#include "Platform/Linux/ApplicationData.h"

#include <QRegularExpression>

#include <chrono>

namespace Quillmere {

namespace {

constexpr std::chrono::seconds patienceForList{15};

QString tool()
{
    return u"/usr/bin/flatpak"_qs;
}

QString columns(const QString &names)
{
    return u"--columns="_qs + names;
}

FilePath folderOfFlatpaks(const FilePath &dataHome)
{
    return dataHome.appending("flatpak/app");
}

/// Nothing where the tool is missing, fails or is late.
std::optional<QByteArray> answerOf(const ProcessRunner &processes, const QStringList &arguments)
{
    const auto outcome = processes.runWithin(patienceForList, {tool(), arguments});
    const bool isAnswer = outcome && outcome.value() && outcome.value()->exitStatus == 0;
    return isAnswer ? std::optional(outcome.value()->standardOutput) : std::nullopt;
}

/// As flatpak(1) has them: parts of letters, digits, `-` and `_`, at least three, none beginning with a digit. So none
/// is an option, and none leads out of a folder.
bool isIdentifier(const QString &text)
{
    static const QRegularExpression pattern(u"\\A[A-Za-z_][A-Za-z0-9_-]*(\\.[A-Za-z_][A-Za-z0-9_-]*){2,}\\z"_qs);
    return text.size() <= 255 && pattern.match(text).hasMatch();
}

} // namespace

QList<ListedApplication> userFlatpaks(const FileManager &files, const ProcessRunner &processes,
                                      const FilePath &dataHome)
{
    if (!files.fileExists(folderOfFlatpaks(dataHome)))
        return {};
    const auto listed
        = answerOf(processes, {u"list"_qs, u"--user"_qs, u"--app"_qs, columns(u"application,name,version"_qs)});
    QList<ListedApplication> applications = parseFlatpaks(listed.value_or(QByteArray()), dataHome);
    if (applications.isEmpty())
        return applications;
    const auto everywhere = answerOf(processes, {u"list"_qs, u"--app"_qs, columns(u"application,installation"_qs)});
    const QSet<QByteArray> elsewhere = parseInstalledElsewhere(everywhere.value_or(QByteArray()));
    for (ListedApplication &application : applications)
        application.sharesData = !everywhere || elsewhere.contains(application.id);
    return applications;
}

QSet<QByteArray> parseInstalledElsewhere(const QByteArray &text)
{
    QSet<QByteArray> identifiers;
    for (const QByteArray &line : text.split('\n')) {
        const QList<QByteArray> fields = line.split('\t');
        if (fields.size() >= 2 && fields.at(1).trimmed() != "user")
            identifiers.insert(fields.first());
    }
    return identifiers;
}

QList<ListedApplication> parseFlatpaks(const QByteArray &text, const FilePath &dataHome)
{
    QList<ListedApplication> applications;
    for (const QByteArray &line : text.split('\n')) {
        const QList<QByteArray> fields = line.split('\t');
        const QString identifier = QString::fromUtf8(fields.first());
        if (fields.size() < 2 || !isIdentifier(identifier))
            continue;
        ListedApplication application;
        application.id = fields.first();
        application.name = FilePath::displayText(fields.at(1).trimmed());
        if (application.name.isEmpty())
            application.name = identifier;
        application.identifier = QString::fromUtf8(ApplicationData::builtIn().identifierOf(application.id));
        application.version = FilePath::displayText(fields.value(2).trimmed());
        application.icon = identifier;
        application.location = folderOfFlatpaks(dataHome).appending(application.id);
        application.parts = {application.location};
        application.removal = ApplicationRemoval::Command;
        applications.append(application);
    }
    return applications;
}

Result<void> uninstallFlatpak(const ProcessRunner &processes, const ListedApplication &application)
{
    const QString identifier = QString::fromUtf8(application.id);
    if (!isIdentifier(identifier))
        return Failure{Failure::Kind::Malformed, application.location, {}};
    // What it has to say of a failure goes to standard error.
    const Result<ProcessOutcome> outcome = processes.runJoined(
        {tool(), {u"uninstall"_qs, u"--user"_qs, u"--app"_qs, u"--assumeyes"_qs, u"--noninteractive"_qs, identifier}});
    if (!outcome)
        return outcome.failure();
    if (outcome.value().exitStatus == 0)
        return {};
    const QString said = QString::fromUtf8(outcome.value().standardOutput).trimmed();
    return Failure{Failure::Kind::Other, application.location,
                   said.isEmpty() ? u"flatpak ended with status %1"_qs.arg(outcome.value().exitStatus) : said};
}

} // namespace Quillmere
