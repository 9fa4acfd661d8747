#include "Platform/Linux/Applications/DesktopEntryText.h"

#include <QtGlobal>

using namespace Quillmere;

/// An entry that is not touched comes back byte for byte, and a value that is set is what is read, once and again.
extern "C" int LLVMFuzzerTestOneInput(const char *bytes, std::size_t size)
{
    const QByteArray whole(bytes, static_cast<qsizetype>(size));
    DesktopEntryText text(whole);
    if (text.text() != whole)
        qFatal("The text came back as another.");
    [[maybe_unused]] const auto name = text.value("Name", {"ru_RU", "ru"});
    [[maybe_unused]] const auto desktops = text.list("OnlyShowIn");
    if (!text.isSound())
        return 0;
    for (const bool value : {true, false}) {
        text.setBoolean("Hidden", value);
        if (text.boolean("Hidden") != value || DesktopEntryText(text.text()).boolean("Hidden") != value)
            qFatal("The value was not set.");
    }
    const QByteArray once = text.text();
    text.setBoolean("Hidden", false);
    if (text.text() != once)
        qFatal("Setting the same again changed something.");
    return 0;
}
