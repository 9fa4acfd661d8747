#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <QStringList>

#include <optional>

namespace Quillmere {

/// The user's stored settings, one value a key. Every change is on disk when the call returns, or lost as a whole:
/// a kill at any moment leaves the old or the new. A change that cannot be stored holds until the program ends.
/// GUI thread only.
class UserDefaults
{
public:
    virtual ~UserDefaults() = default;

    /// Nothing when the key is absent or holds another type.
    [[nodiscard]] virtual std::optional<QByteArray> data(const QString &key) const = 0;
    /// Nothing when the key is absent or holds neither a text nor a number; a number comes as its decimal text.
    [[nodiscard]] virtual std::optional<QString> string(const QString &key) const = 0;
    /// False when absent; otherwise by the rules of a stored number or text ("YES", "true", "1").
    [[nodiscard]] virtual bool boolean(const QString &key) const = 0;
    /// Nothing when absent or when any element is not a text.
    [[nodiscard]] virtual std::optional<QStringList> stringArray(const QString &key) const = 0;
    /// Nothing when absent or no date. UTC, to the second.
    [[nodiscard]] virtual std::optional<QDateTime> date(const QString &key) const = 0;

    virtual void setData(const QString &key, const QByteArray &value) = 0;
    virtual void setString(const QString &key, const QString &value) = 0;
    virtual void setBoolean(const QString &key, bool value) = 0;
    virtual void setStringArray(const QString &key, const QStringList &value) = 0;
    virtual void setDate(const QString &key, const QDateTime &value) = 0;
    virtual void remove(const QString &key) = 0;
};

} // namespace Quillmere
