#pragma once

class QQmlEngine;

namespace Quillmere {

class Appearance;

/// Teaches @p engine the QML module `Quillmere` and the picture provider `symbol`, and has all that it loads look as
/// @p appearance says, which has to outlive it. Call it before the engine loads anything; Localizer has to be installed
/// by then.
void installViews(QQmlEngine &engine, Appearance &appearance);

} // namespace Quillmere
