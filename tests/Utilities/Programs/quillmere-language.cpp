#include "Utilities/LocalizationManager.h"

#include <cstdio>

using namespace Quillmere;

/// Prints the code of the desktop's language as its environment names it.
int main()
{
    std::puts(qPrintable(Localizer::desktopLanguageCode()));
    return 0;
}
