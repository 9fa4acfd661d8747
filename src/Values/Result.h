#pragma once

#include "Values/Failure.h"

#include <optional>
#include <utility>
#include <variant>

namespace Quillmere {

/// What an operation answers: a value, or why there is none.
/// Default-constructible, as QCoro::waitFor() asks for it; that default is a Failure of kind Other.
template<typename T>
class [[nodiscard]] Result
{
public:
    Result() = default;
    Result(T value) // NOLINT(google-explicit-constructor): `return value;` is how an operation answers.
        : m_content(std::in_place_index<1>, std::move(value))
    {
    }
    Result(Failure failure) // NOLINT(google-explicit-constructor): as above, for `return failure;`.
        : m_content(std::in_place_index<0>, std::move(failure))
    {
    }

    [[nodiscard]] bool isOk() const { return m_content.index() == 1; }
    explicit operator bool() const { return isOk(); }

    /// Only when isOk().
    [[nodiscard]] const T &value() const & { return std::get<1>(m_content); }
    [[nodiscard]] T &value() & { return std::get<1>(m_content); }
    [[nodiscard]] T value() && { return std::get<1>(std::move(m_content)); }
    [[nodiscard]] T valueOr(T other) const { return isOk() ? value() : std::move(other); }
    /// Only when not isOk().
    [[nodiscard]] const Failure &failure() const { return std::get<0>(m_content); }

private:
    std::variant<Failure, T> m_content;
};

/// An operation that answers nothing but whether it happened. Its default is that it did.
template<>
class [[nodiscard]] Result<void>
{
public:
    Result() = default;
    Result(Failure failure) // NOLINT(google-explicit-constructor): `return failure;` is how an operation answers.
        : m_failure(std::move(failure))
    {
    }

    [[nodiscard]] bool isOk() const { return !m_failure.has_value(); }
    explicit operator bool() const { return isOk(); }
    /// Only when not isOk().
    [[nodiscard]] const Failure &failure() const { return *m_failure; }

private:
    std::optional<Failure> m_failure;
};

} // namespace Quillmere
