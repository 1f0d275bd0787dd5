#pragma once

#include "platform/base/Result.h"

#include <functional>
#include <string>

namespace lamina {

/// The one progress panel over whatever the window shows, by single calls: an `MBProgressHUD` in a view of its own,
/// which the window puts over all screens (`ProgressOverlay`). All of it is usable from any thread, and takes effect
/// on the main one, in the order of the calls; a call from the main thread at once.
///
/// While there is a panel with a dark veil, or one with a button, no touch and no key reaches what lies below, from the
/// call that shows it to the one that dismisses it. The key for a step back presses its button.
class SVProgressHUD {
public:
    /// The look of the panels that come: 0 light, which others are taken for.
    static void setDefaultStyle(int style);
    /// How they come and go, as `MBProgressHUDAnimation` has it.
    static void setDefaultAnimationType(int type);
    /// What lies around them: 0 nothing, and what lies below can be used; 4 a dark veil that lets nothing through.
    /// Others are taken for 0.
    static void setDefaultMaskType(int type);

    /// Shows the panel with a text and a turning indicator, anew where one is shown already: without button, and after
    /// a failure too. What is dismissed within 150 ms is not seen at all.
    static void showWithStatus(const std::string& status);
    /// The share that is done, 0 to 1: the indicator becomes a ring. Nothing where no panel is shown.
    static void setProgress(double progress);
    /// Gives the panel a button "Cancel", which runs this on the main thread, once. Empty: no button.
    /// Nothing where no panel is shown, or a failure.
    static void setCancelAction(std::function<void()> cancel);
    /// The panel stays and names what went wrong, with a button "Close", which takes it away and then runs `closed`.
    /// With `action`, a second choice beside it stands in `actionTitle` and runs that instead.
    static void showFailure(const Error& error, std::function<void()> closed = {}, const std::string& actionTitle = {},
                            std::function<void()> action = {});
    /// Takes the panel away.
    static void dismiss();
};

} // namespace lamina
