#pragma once

#include <QCoreApplication>
#include <QPointer>
#include <QThreadPool>
#include <QtConcurrentRun>

#include <QCoro/QCoroFuture>

#include <utility>

namespace Quillmere {

/// Where background work runs. Not Qt's own pool: the painter lends its threads from there, and a window would stand
/// still as soon as long scans held them all. The end of the process waits for none of the pools here by itself: for
/// which of them the program waits, and how long, is up to whoever ends it.
[[nodiscard]] QThreadPool &backgroundPool();

/// Where switches run that may raise the system's password dialog: one at a time, in the order of asking, so that the
/// last one holds. Other such work runs elsewhere too; it is the programs that ask who take turns at the dialog.
[[nodiscard]] QThreadPool &elevationPool();

/// Where runs what waits for other programs, however long these take: as much at once as is asked for.
[[nodiscard]] QThreadPool &childProcessPool();

/// Runs @p work on a worker thread; await the answer on the GUI thread. Work under way goes on to its end even when
/// nobody awaits it any more, so it must own what it uses. It must not throw.
template<typename Work>
[[nodiscard]] QFuture<std::invoke_result_t<Work>> inBackground(Work work)
{
    return QtConcurrent::run(&backgroundPool(), std::move(work));
}

/// The same for work that may raise the system's password dialog.
template<typename Work>
[[nodiscard]] QFuture<std::invoke_result_t<Work>> inElevation(Work work)
{
    return QtConcurrent::run(&elevationPool(), std::move(work));
}

/// The same for work that waits for another program.
template<typename Work>
[[nodiscard]] QFuture<std::invoke_result_t<Work>> inChildProcess(Work work)
{
    return QtConcurrent::run(&childProcessPool(), std::move(work));
}

/// Has the GUI thread run @p change on @p object, later and in the order of asking, if the object still lives then.
/// Any thread.
template<typename Object, typename Change>
void onMainQueue(const QPointer<Object> &object, Change change)
{
    QMetaObject::invokeMethod(
        QCoreApplication::instance(),
        [object, change = std::move(change)] {
            if (object)
                change(*object);
        },
        Qt::QueuedConnection);
}

} // namespace Quillmere
