#include "Platform/Linux/Applications/UserFlatpaks.h"

#include "Platform/Linux/Applications/ApplicationData.h"

#include <QHash>
#include <QRegularExpression>

#include <chrono>
#include <utility>

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

FilePath folderOfFlatpaks(const FilePath &installation)
{
    return installation.appending("app");
}

/// Nothing where the tool is missing, fails or is late.
std::optional<QByteArray> answerOfFlatpak(const ProcessRunner &processes, const QStringList &arguments)
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

/// Identifier, architecture and branch, which is where one lies below the folder of all.
bool isRefOf(const QString &identifier, const QString &text)
{
    static const QRegularExpression pattern(u"\\A/[A-Za-z0-9_]+/[A-Za-z0-9_-][A-Za-z0-9._-]*\\z"_qs);
    return isIdentifier(identifier) && text.size() <= 255 && text.startsWith(identifier)
        && pattern.match(text.mid(identifier.size())).hasMatch();
}

QString refOf(const ListedApplication &application)
{
    const FilePath &branch = application.location;
    const FilePath architecture = branch.deletingLastPathComponent();
    const QByteArrayList parts = {architecture.deletingLastPathComponent().lastPathComponent(),
                                  architecture.lastPathComponent(), branch.lastPathComponent()};
    return QString::fromUtf8(parts.join('/'));
}

/// What an application keeps is kept for all of its branches together.
void markBranches(QList<ListedApplication> &applications)
{
    QHash<QByteArray, int> branches;
    for (const ListedApplication &application : std::as_const(applications))
        ++branches[application.id];
    for (ListedApplication &application : applications) {
        if (branches[application.id] < 2)
            continue;
        application.sharesData = true;
        application.name += u" (%1)"_qs.arg(FilePath::displayText(application.location.lastPathComponent()));
    }
}

} // namespace

QList<ListedApplication> userFlatpaks(const FileManager &files, const ProcessRunner &processes,
                                      const FilePath &installation)
{
    if (!files.fileExists(folderOfFlatpaks(installation)))
        return {};
    const auto listed = answerOfFlatpak(
        processes, {u"list"_qs, u"--user"_qs, u"--app"_qs, columns(u"application,name,version,ref"_qs)});
    QList<ListedApplication> applications = parseFlatpaks(listed.value_or(QByteArray()), installation);
    if (applications.isEmpty())
        return applications;
    const auto everywhere
        = answerOfFlatpak(processes, {u"list"_qs, u"--app"_qs, columns(u"application,installation"_qs)});
    const QSet<QByteArray> elsewhere = parseInstalledElsewhere(everywhere.value_or(QByteArray()));
    for (ListedApplication &application : applications)
        application.sharesData = application.sharesData || !everywhere || elsewhere.contains(application.id);
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

QList<ListedApplication> parseFlatpaks(const QByteArray &text, const FilePath &installation)
{
    QList<ListedApplication> applications;
    for (const QByteArray &line : text.split('\n')) {
        const QList<QByteArray> fields = line.split('\t');
        const QString identifier = QString::fromUtf8(fields.first());
        const QByteArray ref = fields.value(3).trimmed();
        if (!isRefOf(identifier, QString::fromUtf8(ref)))
            continue;
        ListedApplication application;
        application.id = fields.first();
        application.name = FilePath::displayText(fields.at(1).trimmed());
        if (application.name.isEmpty())
            application.name = identifier;
        application.identifier = QString::fromUtf8(ApplicationData::builtIn().identifierOf(application.id));
        application.version = FilePath::displayText(fields.value(2).trimmed());
        application.icon = identifier;
        application.location = folderOfFlatpaks(installation).appending(ref);
        application.parts = {application.location};
        application.removal = ApplicationRemoval::Command;
        applications.append(application);
    }
    markBranches(applications);
    return applications;
}

Result<void> uninstallFlatpak(const ProcessRunner &processes, const ListedApplication &application)
{
    const QString ref = refOf(application);
    if (!isRefOf(QString::fromUtf8(application.id), ref))
        return Failure{Failure::Kind::Malformed, application.location, {}};
    // Of several branches it would ask which, even where it is told to ask nothing. What it has to say of a failure
    // goes to standard error.
    const Result<ProcessOutcome> outcome = processes.runJoined(
        {tool(),
         {u"uninstall"_qs, u"--user"_qs, u"--app"_qs, u"--assumeyes"_qs, u"--noninteractive"_qs, u"app/"_qs + ref}});
    if (!outcome)
        return outcome.failure();
    if (outcome.value().exitStatus == 0)
        return {};
    const QString said = QString::fromUtf8(outcome.value().standardOutput).trimmed();
    return Failure{Failure::Kind::Other, application.location,
                   said.isEmpty() ? u"flatpak ended with status %1"_qs.arg(outcome.value().exitStatus) : said};
}

} // namespace Quillmere
