#include "Views/Support/Appearance.h"

#include <QFontDatabase>
#include <QFontInfo>
#include <QQmlEngine>

namespace Quillmere {

namespace {

constexpr const char *nameInEngine = "appearance";

QString installedFamily(const QString &wanted, const QString &otherwise)
{
    return QFontDatabase::hasFamily(wanted) ? wanted : otherwise;
}

} // namespace

Appearance::Appearance(QObject *parent)
    : QObject(parent)
    , m_textFamily(installedFamily(u"Inter"_qs, QFontDatabase::systemFont(QFontDatabase::GeneralFont).family()))
    , m_displayFamily(installedFamily(u"Inter Display"_qs, m_textFamily))
    , m_monospaceFamily(QFontInfo(QFontDatabase::systemFont(QFontDatabase::FixedFont)).family())
{
}

void Appearance::installIn(QQmlEngine &engine)
{
    QJSEngine::setObjectOwnership(this, QJSEngine::CppOwnership);
    engine.setProperty(nameInEngine, QVariant::fromValue(this));
}

Appearance *Appearance::create(QQmlEngine *engine, QJSEngine *)
{
    return engine->property(nameInEngine).value<Appearance *>();
}

void Appearance::setDark(bool dark)
{
    if (dark == m_dark)
        return;
    m_dark = dark;
    Q_EMIT darkChanged();
}

void Appearance::setReducedMotion(bool reduced)
{
    if (reduced == m_reducedMotion)
        return;
    m_reducedMotion = reduced;
    Q_EMIT reducedMotionChanged();
}

} // namespace Quillmere
