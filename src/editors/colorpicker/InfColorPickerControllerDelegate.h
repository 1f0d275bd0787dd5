#pragma once

namespace lamina {

class InfColorPickerController;

/// Hears of a colour picker. Main thread.
class InfColorPickerControllerDelegate {
public:
    virtual ~InfColorPickerControllerDelegate() = default;

    /// The user is done: `resultColor` is what they want, whether they have changed it or not. The delegate closes the
    /// picker. Not called where the user leaves without an answer.
    virtual void colorPickerControllerDidFinish(InfColorPickerController& picker) = 0;
    /// Whether the next one is to be called. Default: it is not.
    virtual bool hearsColorChanges() const { return false; }
    /// The result is another colour now. Default: nothing.
    virtual void colorPickerControllerDidChangeColor(InfColorPickerController&) {}
};

} // namespace lamina
