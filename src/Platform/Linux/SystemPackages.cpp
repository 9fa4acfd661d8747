#include "Platform/Linux/SystemPackages.h"

#include "Platform/Linux/ApplicationData.h"

#include <QSet>

#include <algorithm>
#include <chrono>

namespace Quillmere {

namespace {

constexpr std::chrono::seconds patience{15};
// What a program writes is taken from a pipe, and this many lines are sure to fit.
constexpr qsizetype mostAtOnce = 200;

QByteArray answerOf(const ProcessRunner &processes, const QStringList &arguments)
{
    const auto outcome = processes.runWithin(patience, {u"/usr/bin/dpkg-query"_qs, arguments});
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

QList<ListedApplication> systemApplications(const ProcessRunner &processes, const QList<DesktopEntry> &entries)
{
    QStringList files;
    for (const DesktopEntry &entry : entries) {
        if (isPlainText(entry.file))
            files.append(QString::fromUtf8(entry.file.bytes()));
    }
    const QHash<FilePath, QString> owners = parseOwners(answersOf(
        files, [&](const QStringList &some) { return answerOf(processes, QStringList{u"--search"_qs} + some); }));
    const QSet<QString> names(owners.cbegin(), owners.cend());
    const QString format = u"--showformat=${Package}\\t${Version}\\t${Installed-Size}\\n"_qs;
    const QHash<QString, SystemPackage> packages
        = parsePackages(answersOf(QStringList(names.cbegin(), names.cend()), [&](const QStringList &some) {
              return answerOf(processes, QStringList{u"--show"_qs, format} + some);
          }));

    QList<ListedApplication> applications;
    for (const DesktopEntry &entry : entries) {
        const auto package = packages.constFind(owners.value(entry.file));
        if (package == packages.constEnd())
            continue;
        ListedApplication application;
        application.id = entry.id;
        application.name = entry.name;
        application.identifier = QString::fromUtf8(ApplicationData::builtIn().identifierOf(entry.id));
        application.version = package->version;
        application.icon = entry.icon;
        application.location = entry.file;
        application.size = package->size;
        application.removal = ApplicationRemoval::System;
        applications.append(application);
    }
    return applications;
}

} // namespace Quillmere
