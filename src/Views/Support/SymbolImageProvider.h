#pragma once

#include <QCache>
#include <QImage>
#include <QMutex>
#include <QQuickImageProvider>

namespace Quillmere {

/// Serves the program's drawings as `image://symbol/<name>?color=<aarrggbb>`, in one colour and at the pixels asked
/// for. An unknown name is a transparent picture, without a word. Any thread.
class SymbolImageProvider final : public QQuickImageProvider
{
public:
    SymbolImageProvider();

    /// Side of the drawings' grid, and of a picture whose size nobody asked for.
    static constexpr int gridSide = 24;

    QImage requestImage(const QString &id, QSize *size, const QSize &requestedSize) override;

private:
    QMutex m_lock;
    QCache<QString, QImage> m_rendered; ///< Costs are bytes.
};

} // namespace Quillmere
