#pragma once

#include <utility>

namespace lamina {

/// Runs what must be done at the end of a scope, whatever way that is left. It must not throw.
template <class Body>
class ScopeExit {
public:
    explicit ScopeExit(Body body)
        : m_body(std::move(body))
    {
    }
    ~ScopeExit() { m_body(); }
    ScopeExit(const ScopeExit&) = delete;
    ScopeExit& operator=(const ScopeExit&) = delete;

private:
    Body m_body;
};

} // namespace lamina
