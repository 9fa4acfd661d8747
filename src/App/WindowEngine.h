#pragma once

#include "Platform/UrlSession.h"
#include "Views/Support/Appearance.h"

#include <QQmlApplicationEngine>
#include <QQuickWindow>

#include <memory>

namespace Quillmere {

/// Loads and keeps windows that look alike. GUI thread only.
class WindowEngine final
{
public:
    /// @p media brings the pictures of others that a window shows.
    explicit WindowEngine(std::shared_ptr<UrlSession> media);
    Q_DISABLE_COPY_MOVE(WindowEngine)

    [[nodiscard]] Appearance &appearance() { return m_appearance; }

    /// The window that @p file of the views describes, still hidden. Null when the program's own files are broken.
    [[nodiscard]] QQuickWindow *load(const QString &file, const QVariantMap &properties);

    /// Has its windows say Qt's own texts in the language of the translators that are installed by now.
    void retranslate() { m_engine.retranslate(); }
    /// Lets go of what can be made again.
    void trim();

private:
    Appearance m_appearance{nullptr};
    QQmlApplicationEngine m_engine;
};

} // namespace Quillmere
