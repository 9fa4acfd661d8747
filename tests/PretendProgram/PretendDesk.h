#pragma once

#include "Fakes/PretendMachine.h"

#include <QObject>
#include <QTimer>

namespace Quillmere {

/// How loaded a pretend machine is, each from 0 to 100.
struct PretendLoad
{
    quint64 processors = 23;
    quint64 memory = 71;
    qint64 disk = 68;
};

/// Starts applications on @p machine, fills its disk and memory, and installs the traffic filter.
void fillPretendDesk(PretendMachine &machine, const PretendLoad &load);

/// Lets time pass on a pretend machine: ticks, bytes over the network, the clock.
class PretendLife final : public QObject
{
    Q_OBJECT

public:
    PretendLife(PretendMachine machine, const PretendLoad &load);

private:
    void passASecond();

    PretendMachine m_machine;
    PretendLoad m_load;
    QTimer m_timer;
};

/// Installs the usual browsers on @p machine.
void fillPretendBrowsers(PretendMachine &machine);

} // namespace Quillmere
