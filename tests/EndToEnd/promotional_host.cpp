#include "Utilities/PromotionalHost.h"

/// The host that the program of the trial is built for. It takes the place of the one in the library.
QString Quillmere::promotionalHost()
{
    return u"feed.quillmere.test"_qs;
}
