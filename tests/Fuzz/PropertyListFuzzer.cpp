#include "Utilities/PropertyList.h"

using namespace Quillmere;

namespace {

void visit(const PropertyList &list)
{
    for (const QString &key : list.keys()) {
        [[maybe_unused]] const auto type = list.type(key);
        [[maybe_unused]] const auto string = list.string(key);
        [[maybe_unused]] const auto boolean = list.boolean(key);
        [[maybe_unused]] const auto integer = list.integer(key);
        [[maybe_unused]] const auto real = list.real(key);
        [[maybe_unused]] const auto data = list.data(key);
        [[maybe_unused]] const auto array = list.stringArray(key);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const char *bytes, std::size_t size)
{
    Result<PropertyList> list = PropertyList::read(QByteArray(bytes, static_cast<qsizetype>(size)));
    if (!list)
        return 0;
    visit(list.value());
    [[maybe_unused]] const QByteArray xml = list.value().written(PropertyList::Form::Xml);

    const QByteArray binary = list.value().written(PropertyList::Form::Binary);
    const Result<PropertyList> again = PropertyList::read(binary);
    if (!again || again.value().keys() != list.value().keys() || again.value().written(PropertyList::Form::Xml) != xml)
        qFatal("The list came back as another.");
    list.value().setBoolean(u"Disabled"_qs, true);
    return list.value().boolean(u"Disabled"_qs) == true ? 0 : -1;
}
