#include "Utilities/Deployment.h"

namespace Quillmere {

QString Deployment::makerName()
{
    return QStringLiteral(QUILLMERE_MAKER_NAME);
}

QString Deployment::makerLocation()
{
    return QStringLiteral(QUILLMERE_MAKER_LOCATION);
}

QString Deployment::leadDeveloper()
{
    return QStringLiteral(QUILLMERE_LEAD_DEVELOPER);
}

QUrl Deployment::makerPage()
{
    return QUrl(QStringLiteral(QUILLMERE_MAKER_PAGE));
}

QUrl Deployment::promotionalPage(const QString &languageCode)
{
    return QUrl(QStringLiteral("https://" QUILLMERE_PROMOTIONAL_HOST "/") + languageCode + u'/');
}

} // namespace Quillmere
