#pragma once

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QTimer>

namespace Quillmere {

/// True as soon as @p condition holds, with events handled meanwhile.
template<typename Condition>
bool comesTrue(const Condition &condition)
{
    constexpr int patience = 20000;
    const QDeadlineTimer deadline(patience);
    // Wakes the loop where what is waited for makes no event here.
    QTimer waking;
    waking.start(20);
    while (!condition()) {
        if (deadline.hasExpired())
            return false;
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    return true;
}

} // namespace Quillmere
