#include "Utilities/PropertyList.h"
#include "Utilities/PropertyListOldStyle.h"

using namespace Quillmere;

/// Whatever is read from the old style must be the same when it comes back from XML.
extern "C" int LLVMFuzzerTestOneInput(const char *bytes, std::size_t size)
{
    const QByteArray text(bytes, static_cast<qsizetype>(size));
    [[maybe_unused]] const Result<PropertyListNode> root = readOldStylePropertyList(text);

    const Result<PropertyList> list = PropertyList::read(text);
    if (!list)
        return 0;
    const QByteArray binary = list.value().written(PropertyList::Form::Binary);
    const Result<PropertyList> again = PropertyList::read(binary);
    if (!again || again.value().written(PropertyList::Form::Binary) != binary)
        qFatal("The list came back as another.");
    return 0;
}
