#pragma once

#include <QString>
#include <QUrl>

namespace Quillmere {

/// Whose program this is, as was said when it was built. Its default pages lie under `.example`, where nothing is.
struct Deployment
{
    [[nodiscard]] static QString makerName();
    [[nodiscard]] static QString makerLocation();
    [[nodiscard]] static QString leadDeveloper();
    [[nodiscard]] static QUrl makerPage();
    /// The home page of what is promoted, in the language of that code.
    [[nodiscard]] static QUrl promotionalPage(const QString &languageCode);
};

} // namespace Quillmere
