#pragma once

#include <string>

namespace lamina {

/// The mark of a tick: the picture it shows is its state.
struct CheckMark {
    static constexpr const char* kUnticked = "ic_checkbox";
    static constexpr const char* kTicked = "ic_checkbox1";

    std::string image = kUnticked;

    /// A tap. Whatever is not unticked becomes so. Gives whether it is ticked now.
    bool toggle()
    {
        const bool ticks = image == kUnticked || image.empty();
        image = ticks ? kTicked : kUnticked;
        return ticks;
    }
};

} // namespace lamina
