#pragma once

#include <cassert>
#include <string>
#include <utility>
#include <variant>

namespace lamina {

/// What went wrong, in two parts so that the caller can place them: the thing concerned (a file's path, an option) and
/// the cause in plain English, without a full stop: {"beach.jpg", "the file is empty"}. A plain value.
struct Error {
    std::string subject; ///< may be empty where only the caller knows it
    std::string cause;   ///< translated by the one place that shows it (`localizedString`)

    /// "subject: cause" for logs and the command; the cause alone without a subject.
    std::string message() const { return subject.empty() ? cause : subject + ": " + cause; }
};

/// A value, or the error that stood in its way; converts from both. The same value from several threads: as `T` allows.
template <class T>
class [[nodiscard]] Result {
public:
    Result(T value)
        : m_content(std::move(value))
    {
    }
    Result(Error error)
        : m_content(std::move(error))
    {
    }

    /// Whether there is a value.
    bool ok() const { return m_content.index() == 0; }
    explicit operator bool() const { return ok(); }

    /// The value; there must be one (asserted in debug builds, `std::bad_variant_access` otherwise).
    T& value() &
    {
        assert(ok());
        return std::get<0>(m_content);
    }
    const T& value() const&
    {
        assert(ok());
        return std::get<0>(m_content);
    }
    T&& value() &&
    {
        assert(ok());
        return std::get<0>(std::move(m_content));
    }
    T& operator*() & { return value(); }
    const T& operator*() const& { return value(); }
    T&& operator*() && { return std::move(*this).value(); }
    T* operator->() { return &value(); }
    const T* operator->() const { return &value(); }

    /// The error; there must be one (asserted in debug builds, `std::bad_variant_access` otherwise).
    const Error& error() const
    {
        assert(!ok());
        return std::get<1>(m_content);
    }

private:
    std::variant<T, Error> m_content;
};

/// The outcome of work that has no value to give: `success()`, or an error.
using Outcome = Result<std::monostate>;

/// The outcome of work that was done.
inline Outcome success()
{
    return std::monostate{};
}

} // namespace lamina
