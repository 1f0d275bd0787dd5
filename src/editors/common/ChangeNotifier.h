#pragma once

#include <functional>
#include <optional>
#include <utility>
#include <vector>

namespace lamina {

/// Tells of values that have changed since they were told last, so that a change that touches one of many properties
/// wakes only who watches that one. One thread.
class ChangeNotifier {
public:
    /// `read()` gives the value, a copyable one; `notify()` is called when it is not `same` as the one told before, and
    /// the first time. Both are kept.
    template <class Read, class Notify, class Same = std::equal_to<>>
    void watch(Read read, Notify notify, Same same = {})
    {
        using Value = std::decay_t<decltype(read())>;
        auto hasChanged = [read, same, told = std::optional<Value>()]() mutable {
            Value now = read();
            const bool changed = !told || !same(*told, now);
            told = std::move(now);
            return changed;
        };
        m_watches.push_back({std::move(hasChanged), std::move(notify)});
    }

    /// Compares all values first and then tells, in the order in which they were watched: who is told sees all as new.
    void tell()
    {
        std::vector<std::function<void()>> due;
        for (Watch& watch : m_watches) {
            if (watch.hasChanged())
                due.push_back(watch.notify);
        }
        for (const auto& notify : due)
            notify();
    }

private:
    struct Watch {
        std::function<bool()> hasChanged;
        std::function<void()> notify;
    };
    std::vector<Watch> m_watches;
};

} // namespace lamina
