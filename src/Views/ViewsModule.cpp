#include "Views/ViewsModule.h"

#include "Views/Support/Appearance.h"
#include "Views/Support/ApplicationIconProvider.h"
#include "Views/Support/ApplicationPictureProvider.h"
#include "Views/Support/SymbolImageProvider.h"

#include <QQmlEngine>

// Generated with the modules. Naming them here keeps the linker from dropping them from the static libraries.
extern void qml_register_types_Quillmere();
extern void qml_register_types_Quillmere_Support();

namespace Quillmere {

void installViews(QQmlEngine &engine, Appearance &appearance)
{
    qml_register_types_Quillmere_Support();
    qml_register_types_Quillmere();
    appearance.installIn(engine);
    engine.addImportPath(u":/qt/qml"_qs);
    engine.addImageProvider(u"symbol"_qs, new SymbolImageProvider);
    engine.addImageProvider(u"application"_qs, new ApplicationIconProvider);
    engine.addImageProvider(u"application-picture"_qs, new ApplicationPictureProvider);
}

} // namespace Quillmere
