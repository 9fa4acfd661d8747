#pragma once

#include "Platform/Linux/Removal/TrashFolder.h"

#include <QDateTime>

namespace Quillmere {

/// A place in a trash whose info file is written, and which waits for its item. Given up unless fill() succeeds.
class TrashReservation
{
public:
    /// Takes the first free name for the item that stands, or stood, at @p origin, from @p number on.
    /// @p trash must outlive it.
    [[nodiscard]] static Result<TrashReservation> make(const TrashFolder &trash, const FilePath &origin, int number);

    TrashReservation(TrashReservation &&other) noexcept;
    TrashReservation &operator=(TrashReservation &&) = delete;
    ~TrashReservation();

    /// Moves the item @p name of @p folder in. 0, or an error number: EEXIST when the place was taken in spite of all.
    [[nodiscard]] int fill(int folder, const QByteArray &name);
    /// Moves the item out again, back to where fill() took it from, and gives the place up; the same numbers.
    [[nodiscard]] int empty(int folder, const QByteArray &name);

    [[nodiscard]] const QByteArray &name() const { return m_name; }
    [[nodiscard]] int number() const { return m_number; }

private:
    TrashReservation(const TrashFolder &trash, QByteArray name, int number);

    [[nodiscard]] QByteArray infoName() const { return m_name + ".trashinfo"; }

    const TrashFolder *m_trash;
    QByteArray m_name;
    int m_number;
    bool m_held = false; ///< The info file is ours and waits for its item.
};

} // namespace Quillmere
