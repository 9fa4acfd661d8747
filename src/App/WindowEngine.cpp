#include "App/WindowEngine.h"

#include "Views/Support/RemoteImageProvider.h"
#include "Views/ViewsModule.h"

namespace Quillmere {

WindowEngine::WindowEngine(std::shared_ptr<UrlSession> media)
{
    installViews(m_engine, m_appearance);
    m_engine.addImageProvider(u"remote"_qs, new RemoteImageProvider(std::move(media)));
}

QQuickWindow *WindowEngine::load(const QString &file, const QVariantMap &properties)
{
    const qsizetype before = m_engine.rootObjects().size();
    m_engine.setInitialProperties(properties);
    m_engine.load(u"qrc:/qt/qml/Quillmere/"_qs + file);
    const QList<QObject *> roots = m_engine.rootObjects();
    return roots.size() > before ? qobject_cast<QQuickWindow *>(roots.last()) : nullptr;
}

void WindowEngine::trim()
{
    m_engine.collectGarbage();
    m_engine.trimComponentCache();
}

} // namespace Quillmere
