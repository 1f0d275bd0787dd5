#pragma once

#include "cli/editors/EditorSteps.h"
#include "platform/base/CGGeometry.h"
#include "platform/view/UIWindow.h"

#include <optional>
#include <string>

namespace lamina {

class UIView;
class UIViewController;

/// The screens of the application without a window, for scripts that go through them as a user would. One at a time; on
/// the main thread, whose queue scripts pump.
class ScriptStage {
public:
    /// The screen that controllers see: its size in points, and `scale` pixels a point.
    ScriptStage(CGSize size, double scale);

    /// Owns the screens; no window is opened.
    UIWindow& window() { return m_window; }
    /// Until all that was asked for has happened.
    static void letTransitionsRun();
    /// What an alert over the screen tells, without its full stop; nothing where there is none.
    static std::optional<std::string> alertOver(const UIViewController& screen);

private:
    UIWindow m_window;
};

/// Puts the sticker of that tag in the canvas where the step wants it, as fingers would. Nothing where there is none.
void placeSticker(UIView& canvas, int tag, const StickerStep& step);

} // namespace lamina
