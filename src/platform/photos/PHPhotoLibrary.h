#pragma once

#include "platform/base/Result.h"

#include <functional>

namespace lamina {

/// Whether the user lets the application into the photo library. The values are the platform's.
enum class PHAuthorizationStatus { NotDetermined = 0, Restricted = 1, Denied = 2, Authorized = 3, Limited = 4 };

/// The library as a whole. Main thread only, but for the status, the changes and the answer of an authoriser.
class PHPhotoLibrary {
public:
    using StatusHandler = std::function<void(PHAuthorizationStatus)>;

    /// Who decides about access, where something stands between the application and the folders.
    struct Authorizer {
        /// The status now, asked from any thread.
        std::function<PHAuthorizationStatus()> status;
        /// Asks the user and answers once, from any thread, at once or later. Empty: the status is the answer.
        std::function<void(StatusHandler)> request;
    };

    /// `Authorized` while no authoriser is installed: a desktop lets its programs read the user's pictures. From any
    /// thread.
    static PHAuthorizationStatus authorizationStatus();
    /// The handler hears the answer once, on the thread on which the authoriser gives it.
    static void requestAuthorization(StatusHandler handler);
    /// Without a `status` function: none.
    static void setAuthorizer(Authorizer authorizer);

    /// Hears how a change has ended: done as a whole, or not at all and why. The error's subject is the file or folder
    /// concerned.
    using ChangeHandler = std::function<void(const Outcome& outcome)>;

    /// Changes the library: `changes` makes requests (see `PHAssetCreationRequest`), which are carried out when it
    /// returns, and the handler hears of it. Both are called once, on the library's own queue, one change after the
    /// other; where access is not given, only the handler is. Returns at once; the main queue counts as busy until the
    /// handler has run. Usable from any thread.
    static void performChanges(std::function<void()> changes, ChangeHandler handler);
};

} // namespace lamina
