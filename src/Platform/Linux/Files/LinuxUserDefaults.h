#pragma once

#include "Platform/UserDefaults.h"
#include "Utilities/PropertyList.h"
#include "Values/FilePath.h"

namespace Quillmere {

/// The settings in a binary property list. Read once; written whole, in one step, at every change.
/// A file that holds anything else counts as empty and is replaced at the first change. A file that cannot be read is
/// left alone: changes then hold until the program ends.
class LinuxUserDefaults final : public UserDefaults
{
public:
    explicit LinuxUserDefaults(FilePath file);

    /// Where the settings of the user with @p home lie.
    [[nodiscard]] static FilePath fileOf(const FilePath &home);

    [[nodiscard]] std::optional<QByteArray> data(const QString &key) const override;
    [[nodiscard]] std::optional<QString> string(const QString &key) const override;
    [[nodiscard]] bool boolean(const QString &key) const override;
    [[nodiscard]] std::optional<QStringList> stringArray(const QString &key) const override;
    [[nodiscard]] std::optional<QDateTime> date(const QString &key) const override;

    void setData(const QString &key, const QByteArray &value) override;
    void setString(const QString &key, const QString &value) override;
    void setBoolean(const QString &key, bool value) override;
    void setStringArray(const QString &key, const QStringList &value) override;
    void setDate(const QString &key, const QDateTime &value) override;
    void remove(const QString &key) override;

private:
    void load();
    void store() const;

    FilePath m_file;
    PropertyList m_values;
    bool m_mayStore = true;
};

} // namespace Quillmere
