#include "Fakes/PretendMachine.h"

namespace Quillmere {

void PretendDesktopAppearance::set(ColorScheme scheme, bool reducedMotion)
{
    m_scheme = scheme;
    m_reducedMotion = reducedMotion;
    if (m_changed)
        m_changed();
}

std::optional<QString> PretendPlaces::reasonToKeep(const FilePath &item) const
{
    const auto found = m_kept.constFind(item);
    return found == m_kept.constEnd() ? std::nullopt : std::optional(*found);
}

Machine PretendMachine::machine() const
{
    const auto returnMemory = [returns = memoryReturns] { ++*returns; };
    const auto environment = [variables = variables](const char *name) { return variables->value(name); };
    return {files,          places,       defaults,    clock,        appearance,     host,   processes,
            workspace,      applications, assertions,  bundles,      extensions,     filter, statusBar,
            startupEntries, urls,         environment, returnMemory, isAdministrator};
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

} // namespace Quillmere
