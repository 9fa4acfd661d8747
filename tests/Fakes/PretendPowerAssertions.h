#pragma once

#include "Platform/PowerAssertions.h"

#include <QHash>

namespace Quillmere {

/// Remembers what it was asked for.
class PretendPowerAssertions final : public PowerAssertions
{
public:
    struct Assertion
    {
        QString type;
        quint32 level = 0;
        QString name;

        bool operator==(const Assertion &) const = default;
    };

    std::optional<Failure> refusal; ///< Set to have the next ones refused.
    QHash<ID, Assertion> active;
    int created = 0;
    int released = 0;

    [[nodiscard]] Result<ID> create(const QString &type, quint32 level, const QString &name) override
    {
        if (refusal)
            return *refusal;
        const ID id = static_cast<ID>(++created);
        active.insert(id, {type, level, name});
        return id;
    }

    void release(ID assertion) override
    {
        ++released;
        active.remove(assertion);
    }
};

} // namespace Quillmere
