#pragma once

#include <QByteArray>
#include <QtGlobal>

namespace Quillmere {

/// Sets a variable for one test and puts the old value back.
class EnvironmentVariable
{
public:
    EnvironmentVariable(const char *name, const char *value)
        : m_name(name)
        , m_before(qgetenv(name))
        , m_wasSet(qEnvironmentVariableIsSet(name))
    {
        qputenv(name, value);
    }
    ~EnvironmentVariable() { m_wasSet ? qputenv(m_name, m_before) : qunsetenv(m_name); }
    Q_DISABLE_COPY_MOVE(EnvironmentVariable)

private:
    const char *m_name;
    QByteArray m_before;
    bool m_wasSet;
};

} // namespace Quillmere
