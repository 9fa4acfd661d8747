#include "Utilities/PropertyList.h"
#include "Utilities/PropertyListOldStyle.h"

using namespace Quillmere;

/// Whatever is read from the old style must be the same when it comes back from the binary form. XML tells whether it
/// is: in the binary form the library now and then lets two equal data share a place, depending on where they lay in
/// memory.
extern "C" int LLVMFuzzerTestOneInput(const char *bytes, std::size_t size)
{
    const QByteArray text(bytes, static_cast<qsizetype>(size));
    [[maybe_unused]] const Result<PropertyListNode> root = readOldStylePropertyList(text);

    const Result<PropertyList> list = PropertyList::read(text);
    if (!list)
        return 0;
    const Result<PropertyList> again = PropertyList::read(list.value().written(PropertyList::Form::Binary));
    const QByteArray xml = list.value().written(PropertyList::Form::Xml);
    if (!again || again.value().written(PropertyList::Form::Xml) != xml)
        qFatal("The list came back as another.");
    return 0;
}
