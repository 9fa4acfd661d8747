#pragma once

class QQmlEngine;

namespace Quillmere {

/// Teaches @p engine the QML module `Quillmere` and the picture provider `symbol`. Call it before the engine loads
/// anything; Localizer and Appearance have to be installed by then.
void installViews(QQmlEngine &engine);

} // namespace Quillmere
