#pragma once

#include "Services/FoundApplication.h"

#include <QObject>
#include <QStringList>

namespace Quillmere {

/// What the screen shows of the application that is selected. Of none it is empty.
class SelectedApplication
{
    Q_GADGET
    Q_PROPERTY(QString name READ name CONSTANT)
    Q_PROPERTY(QString icon READ icon CONSTANT)
    Q_PROPERTY(QString versionText READ versionText CONSTANT)
    Q_PROPERTY(QString sizeText READ sizeText CONSTANT)
    Q_PROPERTY(QStringList fileNames READ fileNames CONSTANT)
    Q_PROPERTY(QStringList filePaths READ filePaths CONSTANT)
    Q_PROPERTY(bool canBeUninstalled READ canBeUninstalled CONSTANT)

public:
    SelectedApplication() = default;
    explicit SelectedApplication(std::optional<FoundApplication> app);

    [[nodiscard]] QString name() const { return m_app ? m_app->item.name : QString(); }
    [[nodiscard]] QString icon() const { return m_app ? m_app->item.icon : QString(); }
    [[nodiscard]] QString versionText() const;
    [[nodiscard]] QString sizeText() const;
    // Of what belongs to it.
    [[nodiscard]] QStringList fileNames() const;
    [[nodiscard]] QStringList filePaths() const;
    /// False for what only the administrator's tools can remove.
    [[nodiscard]] bool canBeUninstalled() const { return m_app && m_app->canBeUninstalled(); }

private:
    [[nodiscard]] QList<FilePath> relatedFiles() const { return m_app ? m_app->item.relatedFiles : QList<FilePath>(); }

    std::optional<FoundApplication> m_app;
};

} // namespace Quillmere
