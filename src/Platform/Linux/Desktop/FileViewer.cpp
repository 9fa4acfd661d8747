#include "Platform/Linux/Desktop/FileViewer.h"

#include <QDBusMessage>
#include <QSet>
#include <QStringList>

#undef signals
#include <gio/gio.h>

#include <chrono>
#include <memory>

namespace Quillmere {

namespace {

// A file manager that has to be started first takes some seconds.
constexpr std::chrono::milliseconds mostWaitForAnAnswer{10'000};

/// The location percent-encoded byte by byte, so that it need not be text. Empty when it is not absolute.
QString uriOf(const FilePath &path)
{
    const std::unique_ptr<char, decltype(&g_free)> uri(g_filename_to_uri(path.bytes().constData(), nullptr, nullptr),
                                                       g_free);
    return QString::fromLatin1(uri.get());
}

bool isAskedOfFileManager(const QStringList &uris, const QDBusConnection &sessionBus)
{
    QDBusMessage question
        = QDBusMessage::createMethodCall(u"org.freedesktop.FileManager1"_qs, u"/org/freedesktop/FileManager1"_qs,
                                         u"org.freedesktop.FileManager1"_qs, u"ShowItems"_qs);
    question << uris << QString();
    const QDBusMessage answer = sessionBus.call(question, QDBus::Block, int(mostWaitForAnAnswer.count()));
    // One that is merely slow will show the files yet.
    return answer.type() == QDBusMessage::ReplyMessage || QDBusError(answer).type() == QDBusError::NoReply;
}

} // namespace

void revealInFileViewer(const QList<FilePath> &files, const QDBusConnection &sessionBus)
{
    QStringList uris;
    QStringList folders;
    for (const FilePath &file : files) {
        uris.append(uriOf(file));
        folders.append(uriOf(file.deletingLastPathComponent()));
    }
    if (sessionBus.isConnected() && isAskedOfFileManager(uris, sessionBus))
        return;
    folders.removeDuplicates();
    for (const QString &folder : std::as_const(folders))
        g_app_info_launch_default_for_uri(folder.toLatin1().constData(), nullptr, nullptr);
}

} // namespace Quillmere
