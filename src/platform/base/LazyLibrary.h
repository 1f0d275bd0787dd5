#pragma once

#include <dlfcn.h>

namespace lamina {

/// A shared library that is loaded when it is first needed and then stays. For those that bring many others along:
/// linked in the ordinary way they would cost each run of a command some milliseconds, used or not. Whoever uses it
/// links ${CMAKE_DL_LIBS}.
///
/// The caller keeps one table of functions per library in a local static, which makes the loading safe for threads, and
/// names their types by `decltype` of the declarations in the library's header.
class LazyLibrary {
public:
    /// `name`: with the version that the header belongs to, such as "libtiff.so.6".
    explicit LazyLibrary(const char* name)
        : m_handle(dlopen(name, RTLD_LAZY | RTLD_LOCAL))
        , m_complete(m_handle != nullptr)
    {
    }

    /// Sets `function` to the named one; to null, and `complete` to false, when it is not there.
    template <class Function>
    void find(Function& function, const char* symbol)
    {
        void* address = m_handle ? dlsym(m_handle, symbol) : nullptr;
        function = reinterpret_cast<Function>(address);
        m_complete = m_complete && address != nullptr;
    }

    /// Whether the library was found, with every function asked for so far.
    bool complete() const { return m_complete; }

private:
    void* m_handle;
    bool m_complete;
};

} // namespace lamina
