#pragma once

#include "platform/base/Result.h"

#include <functional>
#include <string>

namespace lamina {

/// The one progress panel over whatever the window shows, by single calls: an `MBProgressHUD` in a view of its own,
/// which the window puts over all screens (`SVProgressHUD::overlayView`). All of it is usable from any thread, and
/// takes effect on the main one, in the order of the calls.
class SVProgressHUD {
public:
    /// The looks that are told: style 0 light; animation 0 fade; mask 0 none (what lies below can be used), 4 a dark
    /// veil that lets nothing through. Others are taken for the nearest of these.
    static void setDefaultStyle(int style);
    static void setDefaultAnimationType(int type);
    static void setDefaultMaskType(int type);

    /// Shows the panel with a text and a turning indicator, anew where one is shown already.
    static void showWithStatus(const std::string& status);
    /// The share that is done, 0 to 1: the indicator becomes a ring. Nothing where no panel is shown.
    static void setProgress(double progress);
    /// Gives the panel a button "Cancel", which runs this on the main thread, once. Empty: no button.
    static void setCancelAction(std::function<void()> cancel);
    /// The panel stays and names what went wrong, with a button "Close", which takes it away and then runs `closed`.
    /// With `action`, a second choice beside it stands in `actionTitle` and runs that instead.
    static void showFailure(const Error& error, std::function<void()> closed = {}, const std::string& actionTitle = {},
                            std::function<void()> action = {});
    /// Takes the panel away.
    static void dismiss();
};

} // namespace lamina
