#pragma once

#include <QTemporaryDir>

#include <sys/types.h>

namespace Quillmere {

/// A screen and a session bus of a test program's own, named in its environment. Both end with it. To be made before
/// the application object.
class TestDesktop
{
public:
    TestDesktop();
    ~TestDesktop();
    Q_DISABLE_COPY_MOVE(TestDesktop)

    [[nodiscard]] bool isRunning() const { return m_isRunning; }

private:
    QTemporaryDir m_folder;
    pid_t m_bus = 0;
    pid_t m_screen = 0;
    bool m_isRunning = false;
};

} // namespace Quillmere
