#pragma once

#include "Platform/FilterManager.h"
#include "Values/FilePath.h"

#include <QObject>
#include <QStringList>

namespace Quillmere {

/// The record lies in a file that only the system's administrator may write, as FilterPolicyRecord.h says. It is saved
/// by a helper program, which is given it on its standard input, one line of JSON, and may have to ask for a password
/// first; nothing waits meanwhile but the completion. A record that cannot be understood counts as none, so that the
/// next one saved takes its place.
class LinuxFilterManager final : public FilterManager
{
public:
    explicit LinuxFilterManager(FilePath policy = policyFile(), QStringList helper = policyHelper());

    [[nodiscard]] static FilePath policyFile();
    /// Program and arguments. Through the system's password dialog, but for the administrator.
    [[nodiscard]] static QStringList policyHelper();

    void loadFromPreferences(Completion completion) override;
    void saveToPreferences(Completion completion) override;

private:
    void take(const QByteArray &contents);

    FilePath m_policy;
    QStringList m_helper;
    QObject m_life; ///< Ends what would otherwise still reach this object.
};

} // namespace Quillmere
