#pragma once

#include "Models/Advertisement.h"
#include "Models/Language.h"

#include <QByteArray>
#include <QList>

namespace Quillmere {

/// The promotions of a feed for readers of @p language, in its order. Items that are switched off or lead nowhere are
/// left out; what is no feed has none. Any thread.
[[nodiscard]] QList<Advertisement> parseAdvertisements(const QByteArray &data, Language language);

} // namespace Quillmere
