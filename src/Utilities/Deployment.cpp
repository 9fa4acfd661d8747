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

} // namespace Quillmere
