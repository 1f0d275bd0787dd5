#include "platform/base/History.h"

#include <gtest/gtest.h>
#include <string>

namespace lamina {
namespace {

/// All states from the oldest on, with the current one in brackets.
std::string all(History<char> history)
{
    const char current = history.current();
    while (history.canUndo())
        history.undo();
    std::string text;
    for (;; history.redo()) {
        const char state = history.current();
        text += state == current ? std::string{'[', state, ']'} : std::string{state};
        if (!history.canRedo())
            return text;
    }
}

History<char> after(const std::string& steps, std::size_t limit = History<char>::kDefaultLimit)
{
    History<char> history('a', limit);
    for (const char state : steps)
        history.record(state);
    return history;
}

TEST(History, WalksBackAndForthAndStopsAtItsEnds)
{
    History<char> history = after("bc");
    EXPECT_EQ(history.undo(), 'b');
    EXPECT_EQ(history.undo(), 'a');
    EXPECT_EQ(history.undo(), 'a');
    EXPECT_EQ(all(history), "[a]bc");
    EXPECT_EQ(history.redo(), 'b');
    EXPECT_EQ(history.redo(), 'c');
    EXPECT_EQ(history.redo(), 'c');
    EXPECT_EQ(all(history), "ab[c]");
}

TEST(History, RecordingAndTakingBackForgetWhatWasUndone)
{
    History<char> history = after("bcd");
    history.undo();
    history.amend('x');
    EXPECT_EQ(all(history), "ab[x]d");
    history.undo();
    history.record('y');
    EXPECT_EQ(all(history), "ab[y]");
    history.undo();
    history.takeBack();
    history.takeBack();
    EXPECT_EQ(all(history), "[a]");
}

TEST(History, ForgetsTheOldestStepsBeyondItsLimit)
{
    EXPECT_EQ(all(after("bcdef", 3)), "cde[f]");
    EXPECT_EQ(all(after("bc", 0)), "[c]");
}

} // namespace
} // namespace lamina
