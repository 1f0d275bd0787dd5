#pragma once

#include "platform/base/Result.h"

#include <memory>
#include <string>

namespace lamina {

class UIAlertController;
class UIViewController;

/// Presents the alert over whatever is on top of the screens that `screen` stands among, once the transitions that were
/// asked for before are over: over what it or a container of it presents, over what that presents, and so on. Should
/// `screen` leave meanwhile, the alert goes over those that stay. Main thread.
void presentOverTop(UIViewController& screen, std::shared_ptr<UIAlertController> alert);

/// The path with the home folder as "~", as people know it, and a sign for what can't be shown.
std::string shownPath(const std::string& path);

/// "SUBJECT: cause." in the user's language, with the home folder as "~"; the cause, which is translated here and
/// nowhere before, stands alone where there is no subject.
std::string failureText(const Error& error);

/// Tells the user of a failure, as `presentOverTop` does: an alert with the given title, already in the user's
/// language, the `failureText` and the one button OK. Main thread.
void presentFailure(UIViewController& screen, std::string title, const Error& error);

/// Tells the user in the same way that a photo, which is used all the same, is damaged: `warning` is what its decoder
/// says of it, under the photo's name. Nothing is told where the cause is empty. Main thread.
void presentDamage(UIViewController& screen, const Error& warning);

} // namespace lamina
