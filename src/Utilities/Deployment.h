#pragma once

#include <QString>
#include <QUrl>

namespace Quillmere {

/// Whose program this is, as was said when it was built. Its default page lies under `.example`, where nothing is.
struct Deployment
{
    [[nodiscard]] static QString makerName();
    [[nodiscard]] static QString makerLocation();
    [[nodiscard]] static QString leadDeveloper();
    [[nodiscard]] static QUrl makerPage();
};

} // namespace Quillmere
