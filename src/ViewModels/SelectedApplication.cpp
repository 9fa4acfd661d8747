#include "ViewModels/SelectedApplication.h"

#include "Utilities/ByteCountFormatter.h"
#include "Utilities/LocalizationManager.h"

namespace Quillmere {

SelectedApplication::SelectedApplication(std::optional<FoundApplication> app)
    : m_app(std::move(app))
{
}

QString SelectedApplication::versionText() const
{
    const Localizer &texts = Localizer::shared();
    if (!m_app)
        return {};
    return texts.localized(u"applications.version"_qs) + u": "_qs
        + m_app->item.version.value_or(texts.localized(u"applications.unknown"_qs));
}

QString SelectedApplication::sizeText() const
{
    return m_app ? formatByteCount(m_app->item.size) : QString();
}

QStringList SelectedApplication::fileNames() const
{
    QStringList names;
    for (const FilePath &file : relatedFiles())
        names.append(FilePath::displayText(file.lastPathComponent()));
    return names;
}

QStringList SelectedApplication::filePaths() const
{
    QStringList paths;
    for (const FilePath &file : relatedFiles())
        paths.append(file.displayText());
    return paths;
}

} // namespace Quillmere
