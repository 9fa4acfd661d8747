#include "ApplicationIcons.h"

#include "ApplicationIconProvider.h"

namespace Quillmere {

bool ApplicationIcons::has(const QString &icon) const
{
    return ApplicationIconProvider::hasPicture(icon);
}

} // namespace Quillmere
