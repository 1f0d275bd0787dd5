#pragma once

#include <QDeadlineTimer>
#include <QString>

#include <functional>

namespace lamina {

/// Jumps to the names of a list as somebody types them. What is typed within a second belongs together; one letter
/// again and again goes from one such name to the next. Main thread.
class TypeAhead {
public:
    /// The name of a row; empty: it has none.
    using NameOf = std::function<QString(int row)>;

    /// How long letters that are typed one after another make one name; default a second.
    void setMemory(int milliseconds) { m_memory = milliseconds; }

    /// Takes what was typed further, and gives the row whose name begins with all of it, in any case: the next one
    /// after `current` for a first letter, else that one or a later one, round the list of `count` rows. −1: there is
    /// none, or nothing to be seen was typed.
    int rowForTyping(const QString& text, int current, int count, const NameOf& nameOf);

private:
    int m_memory = 1000;
    QString m_typed;
    QDeadlineTimer m_typedUntil;
};

} // namespace lamina
