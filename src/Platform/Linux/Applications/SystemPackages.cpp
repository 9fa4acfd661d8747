#include "Platform/Linux/Applications/SystemPackages.h"

#include "Platform/Linux/Applications/OwnApplications.h"

#include <QSet>

#include <algorithm>
#include <array>
#include <chrono>

namespace Quillmere {

namespace {

constexpr std::chrono::seconds patienceForDpkg{15};
// What a program writes is taken from a pipe, and this many lines are sure to fit.
constexpr qsizetype mostAtOnce = 200;

QByteArray answerOfDpkg(const ProcessRunner &processes, const QStringList &arguments)
{
    const auto outcome = processes.runWithin(patienceForDpkg, {u"/usr/bin/dpkg-query"_qs, arguments});
    // It ends with 1 when any of what was asked is unknown, and has told of the others.
    const bool isAnswer = outcome && outcome.value() && outcome.value()->exitStatus <= 1;
    return isAnswer ? outcome.value()->standardOutput : QByteArray();
}

template<typename Ask>
QByteArray answersOf(const QStringList &all, Ask ask)
{
    QByteArray answers;
    for (qsizetype from = 0; from < all.size(); from += mostAtOnce)
        answers += ask(all.mid(from, mostAtOnce));
    return answers;
}

/// The names that a package may know @p file by. Packages older than the merge of the folders of programs still name
/// those that are links to them now.
QList<FilePath> namesOf(const FilePath &file)
{
    constexpr std::array merged = {"/usr/bin", "/usr/sbin", "/usr/lib"};
    const bool isMerged
        = std::ranges::any_of(merged, [&](const char *folder) { return file.isWithin(FilePath(folder)); });
    return isMerged ? QList<FilePath>{file, FilePath(file.bytes().sliced(qstrlen("/usr")))} : QList<FilePath>{file};
}

QString ownerOf(const FilePath &file, const QHash<FilePath, QString> &owners)
{
    for (const FilePath &name : namesOf(file)) {
        if (owners.contains(name))
            return owners.value(name);
    }
    return {};
}

/// It takes what it searches for as a pattern.
bool isPlainText(const FilePath &file)
{
    const auto isSpecial = [](char each) { return QByteArray("*?[]\\\n").contains(each); };
    return QString::fromUtf8(file.bytes()).toUtf8() == file.bytes() && !std::ranges::any_of(file.bytes(), isSpecial);
}

} // namespace

QHash<FilePath, QString> parseOwners(const QByteArray &text)
{
    QHash<FilePath, QString> owners;
    for (const QByteArray &line : text.split('\n')) {
        const qsizetype place = line.indexOf(": /");
        if (place <= 0 || line.startsWith("diversion by "))
            continue;
        const QByteArray owner = line.first(place).split(',').first().split(':').first();
        owners.insert(FilePath(line.mid(place + 2)), QString::fromUtf8(owner));
    }
    return owners;
}

QHash<QString, SystemPackage> parsePackages(const QByteArray &text)
{
    QHash<QString, SystemPackage> packages;
    for (const QByteArray &line : text.split('\n')) {
        const QList<QByteArray> fields = line.split('\t');
        bool isNumber = false;
        const qint64 kibibytes = fields.value(2).toLongLong(&isNumber);
        constexpr qint64 most = std::numeric_limits<qint64>::max() / 1024;
        if (fields.size() == 3 && !packages.contains(QString::fromUtf8(fields.first()))) {
            const bool isSize = isNumber && kibibytes >= 0 && kibibytes <= most;
            packages.insert(QString::fromUtf8(fields.first()),
                            {QString::fromUtf8(fields.at(1)), isSize ? kibibytes * 1024 : 0});
        }
    }
    return packages;
}

QList<ListedApplication> systemApplications(const ProcessRunner &processes, const QList<PackagedEntry> &entries)
{
    QStringList files;
    for (const PackagedEntry &each : entries) {
        for (const FilePath &name : namesOf(each.owned)) {
            if (isPlainText(name))
                files.append(QString::fromUtf8(name.bytes()));
        }
    }
    const QHash<FilePath, QString> owners = parseOwners(answersOf(
        files, [&](const QStringList &some) { return answerOfDpkg(processes, QStringList{u"--search"_qs} + some); }));
    const QSet<QString> names(owners.cbegin(), owners.cend());
    const QString format = u"--showformat=${Package}\\t${Version}\\t${Installed-Size}\\n"_qs;
    const QHash<QString, SystemPackage> packages
        = parsePackages(answersOf(QStringList(names.cbegin(), names.cend()), [&](const QStringList &some) {
              return answerOfDpkg(processes, QStringList{u"--show"_qs, format} + some);
          }));

    QList<ListedApplication> applications;
    for (const PackagedEntry &each : entries) {
        const auto package = packages.constFind(ownerOf(each.owned, owners));
        if (package == packages.constEnd())
            continue;
        ListedApplication application = applicationOf(each.entry);
        application.version = package->version;
        application.location = each.entry.file;
        application.size = package->size;
        application.removal = ApplicationRemoval::System;
        applications.append(application);
    }
    return applications;
}

} // namespace Quillmere
