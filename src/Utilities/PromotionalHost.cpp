#include "Utilities/PromotionalHost.h"

namespace Quillmere {

QString promotionalHost()
{
    return QStringLiteral(QUILLMERE_PROMOTIONAL_HOST);
}

} // namespace Quillmere
