#pragma once

#include "Fakes/InstalledLocalizer.h"
#include "Fakes/PretendMachine.h"
#include "Utilities/BackgroundWork.h"
#include "ViewModels/DiskUtilityState.h"

#include <QTest>

#include <QCoro/QCoroTask>

#include <gtest/gtest.h>

namespace Quillmere {

/// The tools on a pretend machine whose disks can be erased.
struct ToolsFixture : testing::Test
{
    InstalledLocalizer localizer;
    PretendMachine machine;
    DiskMountService disks{machine.workspace, machine.files, machine.places, machine.processes};
    std::unique_ptr<ToolsViewModel> tools = std::make_unique<ToolsViewModel>(machine.processes, machine.files, disks);

    ToolsFixture() { machine.connectDisks(); }
    ~ToolsFixture() override { settle(); }

    /// Until everything that is under way has ended and been heard of.
    static void settle()
    {
        childProcessPool().waitForDone();
        QCoreApplication::processEvents();
    }

    /// From now on what @p launchPath runs ends with @p status after printing @p output.
    void answer(const QString &launchPath, int status, const QByteArray &output) const
    {
        machine.processes->answer(launchPath, [=](const Command &) { return ProcessOutcome{status, output}; });
    }

    [[nodiscard]] std::string console() const { return tools->consoleOutput().toStdString(); }

    static PretendVolume volume(const QByteArray &mountPoint, const QString &device, const QString &fileSystem)
    {
        PretendVolume made;
        made.mountPoint = FilePath(mountPoint);
        made.device = device;
        made.fileSystem = fileSystem;
        made.values = VolumeValues{u"STICK"_qs, true, false, {}};
        made.capacity = {64'000'000'000, 40'000'000'000, 40'000'000'000};
        return made;
    }
    void plugIn(const PretendVolume &volume) const { machine.files->disks().plugIn(volume); }
    void plugInStick() const { plugIn(volume("/Volumes/STICK", u"disk4s2"_qs, u"MS-DOS FAT32"_qs)); }
};

inline QString osascript()
{
    return u"/usr/bin/osascript"_qs;
}

inline QString diskutil()
{
    return u"/usr/sbin/diskutil"_qs;
}

/// @p shellText run with administrator privileges.
inline Command privileged(const QString &shellText)
{
    return {osascript(), {u"-e"_qs, u"do shell script \""_qs + shellText + u"\" with administrator privileges"_qs}};
}

} // namespace Quillmere
