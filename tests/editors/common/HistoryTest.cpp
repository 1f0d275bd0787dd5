#include "editors/common/History.h"

#include "TestPictures.h"

#include <gtest/gtest.h>
#include <string>

namespace lamina::test {
namespace {

/// A letter, and pictures by their numbers.
struct Page {
    char letter = 'a';
    std::vector<UIImage> pictures;

    friend bool operator==(const Page& one, const Page& other) { return one.letter == other.letter; }
    friend std::size_t byteCount(const Page& page, PictureMemory& counted)
    {
        std::size_t bytes = 0;
        for (const UIImage& picture : page.pictures)
            bytes += counted.add(picture);
        return bytes;
    }
};
using Pages = History<Page>;

/// All states from the oldest on, with the current one in brackets.
std::string all(Pages history)
{
    const char current = history.current().letter;
    while (history.canUndo())
        history.undo();
    std::string text;
    for (;; history.redo()) {
        const char state = history.current().letter;
        text += state == current ? std::string{'[', state, ']'} : std::string{state};
        if (!history.canRedo())
            return text;
    }
}

Pages after(const std::string& steps, HistoryLimits limits = {})
{
    Pages history({'a', {}}, limits);
    for (const char state : steps)
        history.record({state, {}});
    return history;
}

TEST(History, WalksBackAndForthAndStopsAtItsEnds)
{
    Pages history = after("bc");
    for (const char letter : {'b', 'a', 'a'})
        EXPECT_EQ(history.undo().letter, letter);
    EXPECT_EQ(all(history), "[a]bc");
    for (const char letter : {'b', 'c', 'c'})
        EXPECT_EQ(history.redo().letter, letter);
    EXPECT_EQ(all(history), "ab[c]");
}

TEST(History, RecordingAndTakingBackForgetWhatWasUndone)
{
    Pages history = after("bcd");
    history.undo();
    history.amend({'x', {}});
    EXPECT_EQ(all(history), "ab[x]d");
    history.undo();
    history.record({'y', {}});
    EXPECT_EQ(all(history), "ab[y]");
    history.undo();
    history.takeBack();
    history.takeBack();
    EXPECT_EQ(all(history), "[a]");
}

TEST(History, ForgetsTheOldestBeyondItsSteps)
{
    EXPECT_EQ(all(after("bcdef", {.steps = 3})), "cde[f]");
    EXPECT_EQ(all(after("bc", {.steps = 0})), "[c]");
}

TEST(History, ForgetsTheOldestBeyondItsBytesAndCountsAPictureOnce)
{
    std::vector<UIImage> pictures;
    for (int i = 0; i < 4; ++i)
        pictures.emplace_back(solidPicture(5, 5, {})); // 100 bytes each
    const auto page = [&](char letter, std::initializer_list<std::size_t> numbers) {
        Page made{letter, {}};
        for (const std::size_t number : numbers)
            made.pictures.push_back(pictures[number]);
        return made;
    };
    Pages history(page('a', {0, 1}), {.bytes = 300});
    history.record(page('b', {0, 0, 1}));
    history.record(page('c', {0, 2}));
    EXPECT_EQ(all(history), "ab[c]"); // three pictures among all
    history.record(page('d', {0, 3}));
    EXPECT_EQ(all(history), "c[d]");
    history.undo();
    history.amend(page('x', {1, 2})); // what can be redone counts too; the current one stays, as large as it is
    EXPECT_EQ(all(history), "[x]d");
    history.record(page('e', {0, 1, 2, 3}));
    EXPECT_EQ(all(history), "x[e]"); // one step there is, whatever it weighs

    const UIImage masked(solidPicture(5, 5, {}).withMask(bytePicture(5, 5, [](int, int) { return 0; })));
    EXPECT_EQ(PictureMemory().add(masked), 125u);
    EXPECT_EQ(PictureMemory().add(UIImage()), 0u);
}

} // namespace
} // namespace lamina::test
