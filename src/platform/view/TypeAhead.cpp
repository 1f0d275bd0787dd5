#include "platform/view/TypeAhead.h"

#include <algorithm>

namespace lamina {

namespace {

int findRow(const QString& start, int first, int count, const TypeAhead::NameOf& nameOf)
{
    for (int i = 0; i < count; ++i) {
        const int row = (std::max(0, first) + i) % count;
        if (nameOf(row).startsWith(start, Qt::CaseInsensitive))
            return row;
    }
    return -1;
}

} // namespace

int TypeAhead::rowForTyping(const QString& text, int current, int count, const NameOf& nameOf)
{
    const bool goesOn = !m_typed.isEmpty() && !m_typedUntil.hasExpired();
    // A space at the start presses the row.
    if (text.isEmpty() || !text.front().isPrint() || (!goesOn && text.front().isSpace()))
        return -1;
    m_typed = goesOn ? m_typed + text : text;
    m_typedUntil.setRemainingTime(m_memory);
    const bool oneLetter = m_typed.count(m_typed.front(), Qt::CaseInsensitive) == m_typed.size();
    const int first = m_typed.size() == 1 ? current + 1 : current;
    if (const int row = findRow(m_typed, first, count, nameOf); row >= 0 || !oneLetter)
        return row;
    return findRow(m_typed.first(1), current + 1, count, nameOf);
}

} // namespace lamina
