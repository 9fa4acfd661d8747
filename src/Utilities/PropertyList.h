#pragma once

#include "Utilities/PropertyListNode.h"
#include "Values/Result.h"

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <QStringList>

#include <optional>

namespace Quillmere {

/// A property list whose root is a dictionary, with strict access to the root's values: a value of another type counts
/// as absent, and nothing is converted. Whatever is not touched is written back as it was read, nested and unknown
/// values included. A text ends at its first U+0000, which the library cannot carry.
class PropertyList
{
public:
    enum class Form { Xml, Binary };
    enum class Type { Boolean, Integer, Real, String, Data, Date, Array, Dictionary, Other };

    /// An empty dictionary.
    PropertyList();

    /// Reads XML, the binary form, or the old-style text. Fails with Malformed for anything else, for a root that is
    /// not a dictionary, and for what is too large or too deep to be met in good faith.
    [[nodiscard]] static Result<PropertyList> read(const QByteArray &bytes);
    /// Keys sorted by their UTF-16 code units at every level.
    [[nodiscard]] QByteArray written(Form form) const;

    /// Sorted by UTF-16 code units.
    [[nodiscard]] QStringList keys() const;
    /// Nothing when the key is absent.
    [[nodiscard]] std::optional<Type> type(const QString &key) const;

    [[nodiscard]] std::optional<QString> string(const QString &key) const;
    [[nodiscard]] std::optional<bool> boolean(const QString &key) const;
    /// Of one above the signed range, the same 64 bits as a signed number.
    [[nodiscard]] std::optional<qint64> integer(const QString &key) const;
    [[nodiscard]] std::optional<double> real(const QString &key) const;
    [[nodiscard]] std::optional<QByteArray> data(const QString &key) const;
    /// UTC; fractions of a second are not kept.
    [[nodiscard]] std::optional<QDateTime> date(const QString &key) const;
    /// Nothing when any element is not a text.
    [[nodiscard]] std::optional<QStringList> stringArray(const QString &key) const;

    void setString(const QString &key, const QString &value);
    void setBoolean(const QString &key, bool value);
    void setInteger(const QString &key, qint64 value);
    void setReal(const QString &key, double value);
    void setData(const QString &key, const QByteArray &value);
    void setDate(const QString &key, const QDateTime &value);
    void setStringArray(const QString &key, const QStringList &value);
    void remove(const QString &key);

private:
    explicit PropertyList(PropertyListNode root);
    [[nodiscard]] void *find(const QString &key) const;
    [[nodiscard]] void *find(const QString &key, Type type) const;
    void set(const QString &key, void *node);

    PropertyListNode m_root;
};

} // namespace Quillmere
