#pragma once

#include <cassert>
#include <string>
#include <utility>
#include <variant>

namespace lamina {

/// What went wrong, in two parts so that whoever shows it can place them: the thing concerned (a file's path, an
/// option) and the cause in plain words, without a full stop: {"beach.jpg", "the file is empty"}.
struct Error {
    std::string subject;
    std::string cause;
};

/// A value, or the error that stood in its way.
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

    bool ok() const { return m_content.index() == 0; }
    explicit operator bool() const { return ok(); }

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

    const Error& error() const
    {
        assert(!ok());
        return std::get<1>(m_content);
    }

private:
    std::variant<T, Error> m_content;
};

/// The outcome of work that has no value to give.
using Outcome = Result<std::monostate>;

} // namespace lamina
