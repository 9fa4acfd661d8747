#include "Fakes/PretendMachine.h"

#include "Fakes/PretendScript.h"
#include "Utilities/PropertyList.h"
#include "Utilities/SetupReceipt.h"

namespace Quillmere {

void PretendDesktopAppearance::set(ColorScheme scheme, bool reducedMotion)
{
    m_scheme = scheme;
    m_reducedMotion = reducedMotion;
    if (m_changed)
        m_changed();
}

void PretendDesktopAppearance::awaitAnswers(std::chrono::milliseconds patience)
{
    if (m_onWait)
        m_onWait(patience);
}

std::optional<QString> PretendPlaces::reasonToKeep(const FilePath &item, const Cancellation &cancellation) const
{
    if (m_onQuestion)
        m_onQuestion(item, cancellation);
    const auto found = m_kept.constFind(item);
    return found == m_kept.constEnd() ? std::nullopt : std::optional(*found);
}

PretendMachine::PretendMachine()
    : files(std::make_shared<PretendFileManager>())
    , places(std::make_shared<PretendPlaces>())
    , defaults(std::make_shared<PretendUserDefaults>())
    , clock(std::make_shared<PretendClock>())
    , appearance(std::make_shared<PretendDesktopAppearance>())
    , host(std::make_shared<PretendHostStatistics>())
    , processes(std::make_shared<PretendProcessRunner>())
    , workspace(std::make_shared<PretendWorkspace>())
    , applications(std::make_shared<PretendInstalledApplications>())
    , assertions(std::make_shared<PretendPowerAssertions>())
    , bundles(std::make_shared<PretendBundles>())
    , extensions(std::make_shared<PretendSystemExtensionManager>())
    , filter(std::make_shared<PretendFilterManager>())
    , statusBar(std::make_shared<PretendStatusBar>())
    , startupEntries(std::make_shared<PretendStartupEntries>())
    , urls(std::make_shared<PretendUrlSession>())
    , variables(std::make_shared<QHash<QByteArray, QByteArray>>())
    , memoryReturns(std::make_shared<int>(0))
{
}

PretendMachine::~PretendMachine() = default;
PretendMachine::PretendMachine(const PretendMachine &) = default;

Machine PretendMachine::machine() const
{
    const auto returnMemory = [returns = memoryReturns] { ++*returns; };
    const auto environment = [variables = variables](const char *name) { return variables->value(name); };
    return {files,          places,       defaults,    clock,        appearance,     host,   processes,
            workspace,      applications, assertions,  bundles,      extensions,     filter, statusBar,
            startupEntries, urls,         environment, returnMemory, isAdministrator};
}

void PretendMachine::completeSetup() const
{
    SetupReceipt(defaults, bundles, clock, InstallerTerms(files)).markCompleted();
}

void PretendMachine::connectDisks() const
{
    const QString diskutil = u"/usr/sbin/diskutil"_qs;
    const auto disks = [files = files]() -> PretendDisks & { return files->disks(); };
    processes->answer(diskutil, [disks](const Command &command) { return disks().diskutil(command.arguments, false); });
    processes->answer(u"/usr/bin/osascript"_qs, [disks, diskutil](const Command &command) {
        const QStringList words = wordsOfScript(command.arguments.value(1));
        return words.value(0) == diskutil ? disks().diskutil(words.sliced(1), true) : ProcessOutcome{};
    });
}

void PretendMachine::installTrafficFilter()
{
    const QByteArray identifier = "com.veltrane.quillmere.traffic-filter";
    const FilePath location
        = bundles->main.appending("Contents/Library/SystemExtensions").appending(identifier + ".systemextension");
    const FilePath program = location.appending("Contents/MacOS").appending(identifier);
    files->addFile(program, 1000);
    files->makeExecutable(program);
    bundles->add({location, QString::fromLatin1(identifier), program});
}

void PretendMachine::addBundle(const FilePath &path, qint64 bytes, const QString &identifier,
                               const QString &version) const
{
    files->addFile(path.appending("Contents/MacOS/program"), bytes);
    PropertyList information;
    if (!identifier.isEmpty())
        information.setString(u"CFBundleIdentifier"_qs, identifier);
    if (!version.isEmpty())
        information.setString(u"CFBundleShortVersionString"_qs, version);
    files->addFile(path.appending("Contents/Info.plist"), 0, information.written(PropertyList::Form::Xml));
}

} // namespace Quillmere
