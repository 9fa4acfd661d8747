#pragma once

#include <QByteArray>
#include <QSize>
#include <QtEndian>

namespace Quillmere {

/// Movies that are put together box by box, as a film without a single picture in it.
struct PretendMovie
{
    static QByteArray number(quint32 value)
    {
        QByteArray bytes(4, Qt::Uninitialized);
        qToBigEndian(value, bytes.data());
        return bytes;
    }
    static QByteArray box(const QByteArray &kind, const QByteArray &content)
    {
        return number(quint32(content.size()) + 8) + kind + content;
    }
    /// What says where a track's pictures are: in the file itself where @p flags is 1 and @p address is empty.
    static QByteArray reference(const QByteArray &kind = "url ", quint32 flags = 1, const QByteArray &address = {})
    {
        return box(kind, number(flags) + address);
    }
    static QByteArray track(const QSize &size, const QByteArray &references = reference())
    {
        const QByteArray header
            = QByteArray(76, '\0') + number(quint32(size.width()) << 16) + number(quint32(size.height()) << 16);
        const QByteArray places = box("dinf", box("dref", number(0) + number(1) + references));
        return box("trak", box("tkhd", header) + box("mdia", box("minf", places)));
    }
    static QByteArray file(const QByteArray &tables)
    {
        return box("ftyp", "qt  ") + box("moov", tables) + box("mdat", "pictures");
    }
    static QByteArray good() { return file(track({320, 200})); }
};

} // namespace Quillmere
