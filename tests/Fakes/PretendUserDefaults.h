#pragma once

#include "Platform/UserDefaults.h"

#include <QHash>
#include <QVariant>

namespace Quillmere {

/// Settings that exist only in memory and count how often they were written.
class PretendUserDefaults final : public UserDefaults
{
public:
    [[nodiscard]] std::optional<QByteArray> data(const QString &key) const override { return typed<QByteArray>(key); }
    [[nodiscard]] std::optional<QString> string(const QString &key) const override { return typed<QString>(key); }
    [[nodiscard]] bool boolean(const QString &key) const override { return typed<bool>(key).value_or(false); }
    [[nodiscard]] std::optional<QStringList> stringArray(const QString &key) const override
    {
        return typed<QStringList>(key);
    }
    [[nodiscard]] std::optional<QDateTime> date(const QString &key) const override { return typed<QDateTime>(key); }
    void setData(const QString &key, const QByteArray &value) override { store(key, value); }
    void setString(const QString &key, const QString &value) override { store(key, value); }
    void setBoolean(const QString &key, bool value) override { store(key, value); }
    void setStringArray(const QString &key, const QStringList &value) override { store(key, value); }
    void setDate(const QString &key, const QDateTime &value) override { store(key, value); }
    void remove(const QString &key) override
    {
        m_values.remove(key);
        ++m_writes;
    }

    [[nodiscard]] int writes() const { return m_writes; }

private:
    template<typename Type>
    [[nodiscard]] std::optional<Type> typed(const QString &key) const
    {
        const QVariant value = m_values.value(key);
        if (value.metaType() != QMetaType::fromType<Type>())
            return std::nullopt;
        return value.value<Type>();
    }

    void store(const QString &key, const QVariant &value)
    {
        m_values.insert(key, value);
        ++m_writes;
    }

    QHash<QString, QVariant> m_values;
    int m_writes = 0;
};

} // namespace Quillmere
