#pragma once

#include <locale.h>

namespace lamina {

/// Numbers are read and written with points, in this thread, for as long as it lives: x264 notes its settings in the
/// film as the locale writes them.
class PlainNumbers {
public:
    PlainNumbers()
        : m_plain(::newlocale(LC_NUMERIC_MASK, "C", nullptr))
        , m_former(m_plain ? ::uselocale(m_plain) : nullptr)
    {
    }
    ~PlainNumbers()
    {
        if (!m_plain)
            return;
        ::uselocale(m_former);
        ::freelocale(m_plain);
    }
    PlainNumbers(const PlainNumbers&) = delete;
    PlainNumbers& operator=(const PlainNumbers&) = delete;

private:
    locale_t m_plain;
    locale_t m_former;
};

} // namespace lamina
