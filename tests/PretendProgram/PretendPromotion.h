#pragma once

#include "Fakes/PretendMachine.h"

namespace Quillmere {

/// Has the feed promote something on the picture or movie in the file @p media. A file named `video...` is the still
/// picture of a video; one that is empty does not come, and one that does not exist never stops being on its way.
/// Without any, the promotion has none.
void fillPretendPromotion(PretendMachine &machine, const QString &media);

} // namespace Quillmere
