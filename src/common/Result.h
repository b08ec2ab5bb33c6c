#pragma once

#include <QString>
#include <QtGlobal>

#include <optional>
#include <type_traits>
#include <utility>
#include <variant>

namespace kestrum {

// What went wrong, in words a user can read ("The file ... is not a Kestrum project").
struct Error
{
    QString message;
};

// The one way the core reports failures: a function that can fail returns Result<T> (a value
// or an Error) or Status (nothing or an Error). Callers test it like a bool and read error()
// when it failed; nothing is thrown across the core's public functions.
template <class T> struct IsOptional : std::false_type
{};
template <class T> struct IsOptional<std::optional<T>> : std::true_type
{};

template <class T> class [[nodiscard]] Result
{
public:
    Result(T value) : m_state(std::in_place_index<0>, std::move(value)) {}
    Result(Error error) : m_state(std::in_place_index<1>, std::move(error)) {}

    bool ok() const { return m_state.index() == 0; }
    // A result that holds a truth value or an optional has no test of its own: `if (!r)` would
    // read as "false" or "missing" where it means "failed". Such results are tested with ok().
    explicit operator bool() const requires(!std::is_same_v<T, bool> && !IsOptional<T>::value)
    {
        return ok();
    }

    // The value; asking a failed result for it is a programming error that stops the program
    // with the failure's message.
    T& value() &
    {
        requireValue();
        return std::get<0>(m_state);
    }
    const T& value() const&
    {
        requireValue();
        return std::get<0>(m_state);
    }
    // Taken out of a temporary by value, so that `for (auto x : f().value())` does not loop
    // over a result that is already gone.
    T value() &&
    {
        requireValue();
        return std::get<0>(std::move(m_state));
    }
    T* operator->() { return &value(); }
    const T* operator->() const { return &value(); }
    T& operator*() & { return value(); }
    const T& operator*() const& { return value(); }
    // The value, or `fallback` when the call failed.
    T value_or(T fallback) const& { return ok() ? value() : std::move(fallback); }
    T value_or(T fallback) && { return ok() ? std::move(*this).value() : std::move(fallback); }

    // The failure's message; empty when the call succeeded.
    QString error() const { return ok() ? QString() : std::get<1>(m_state).message; }

private:
    void requireValue() const
    {
        if (!ok()) {
            qFatal("The value of a failed result was used: %s", qPrintable(error()));
        }
    }

    std::variant<T, Error> m_state;
};

template <> class [[nodiscard]] Result<void>
{
public:
    Result() = default;
    Result(Error error) : m_error(std::move(error)) {}

    bool ok() const { return !m_error.has_value(); }
    explicit operator bool() const { return ok(); }
    QString error() const { return m_error ? m_error->message : QString(); }

private:
    std::optional<Error> m_error;
};

using Status = Result<void>;

// A failure with `message`: `return fail(tr("..."));` from a function returning Result or Status.
inline Error fail(QString message)
{
    return Error{std::move(message)};
}

} // namespace kestrum
