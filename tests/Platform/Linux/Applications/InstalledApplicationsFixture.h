#pragma once

#include "Fakes/PretendMachine.h"
#include "Platform/Linux/Applications/LinuxInstalledApplications.h"
#include "Platform/Linux/Files/LinuxFileManager.h"
#include "Platform/Linux/Places/LinuxPlaces.h"
#include "Platform/Linux/TemporaryHome.h"

#include <gmock/gmock.h>

#include <algorithm>

#include <sys/stat.h>

namespace Quillmere {

inline QByteArray noVariables(const char *)
{
    return {};
}

/// A home with applications on a real disk, and programs that answer as they are told.
class InstalledApplicationsFixture : public testing::Test
{
protected:
    FilePath addProgram(const QByteArray &place) const
    {
        const FilePath program = disk.addFile(place, "#!/bin/sh\n");
        EXPECT_EQ(::chmod(program.bytes().constData(), 0755), 0);
        return program;
    }

    FilePath addEntry(const QByteArray &folder, const QByteArray &id, const QByteArray &exec) const
    {
        return disk.addFile(folder + "/applications/" + id + ".desktop",
                            "[Desktop Entry]\nType=Application\nName=The " + id + "\nIcon=" + id + "\nExec=" + exec
                                + '\n');
    }
    FilePath addOwnEntry(const QByteArray &id, const QByteArray &exec) const
    {
        return addEntry("home/.local/share", id, exec);
    }

    /// From now on a package of 2 MiB and version 7.4 owns @p file.
    void packageOwns(const FilePath &file) const
    {
        processes->answer(u"/usr/bin/dpkg-query"_qs, [file](const Command &command) -> Result<ProcessOutcome> {
            const bool isAsked = command.arguments.contains(QString::fromUtf8(file.bytes()));
            if (command.arguments.first() == u"--search"_qs)
                return ProcessOutcome{isAsked ? 0 : 1, isAsked ? "owner:amd64: " + file.bytes() + '\n' : QByteArray()};
            return ProcessOutcome{0, "owner\t7.4\t2048\n"};
        });
    }

    [[nodiscard]] LinuxInstalledApplications installed(const BaseDirectories::Environment &environment
                                                       = noVariables) const
    {
        const auto places = std::make_shared<LinuxPlaces>(files, noVariables);
        return {files,
                places,
                processes,
                {disk.path("home/.local/share/applications"), disk.path("system/applications")},
                environment};
    }

    void answerAsFlatpak(const QByteArray &own, const ProcessOutcome &everywhere) const
    {
        disk.addFolder("home/.local/share/flatpak/app");
        processes->answer(u"/usr/bin/flatpak"_qs, [own, everywhere](const Command &command) -> Result<ProcessOutcome> {
            const bool isList = command.arguments.first() == u"list"_qs;
            const bool isOwn = command.arguments.contains(u"--user"_qs);
            return !isList ? ProcessOutcome() : isOwn ? ProcessOutcome{0, own} : everywhere;
        });
    }

    [[nodiscard]] ListedApplication application(const QByteArray &id) const
    {
        const QList<ListedApplication> all = installed().applications();
        const auto found = std::ranges::find(all, id, &ListedApplication::id);
        EXPECT_NE(found, all.end()) << id.toStdString();
        return found == all.end() ? ListedApplication() : *found;
    }

    [[nodiscard]] QList<FilePath> leftoversOf(const QByteArray &id) const
    {
        ListedApplication application;
        application.id = id;
        return installed().leftoversOf(application);
    }

    TemporaryHome disk;
    std::shared_ptr<LinuxFileManager> files = std::make_shared<LinuxFileManager>(disk.environment());
    std::shared_ptr<PretendProcessRunner> processes = std::make_shared<PretendProcessRunner>();
};

} // namespace Quillmere
