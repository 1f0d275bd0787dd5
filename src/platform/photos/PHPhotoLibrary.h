#pragma once

#include <functional>

namespace lamina {

/// Whether the user lets the application into the photo library. The values are the platform's.
enum class PHAuthorizationStatus { NotDetermined = 0, Restricted = 1, Denied = 2, Authorized = 3, Limited = 4 };

/// The library as a whole. Main thread only, but for the answer of an authoriser.
class PHPhotoLibrary {
public:
    using StatusHandler = std::function<void(PHAuthorizationStatus)>;

    /// Who decides about access, where something stands between the application and the folders.
    struct Authorizer {
        /// The status now.
        std::function<PHAuthorizationStatus()> status;
        /// Asks the user and answers once, from any thread, at once or later. Empty: the status is the answer.
        std::function<void(StatusHandler)> request;
    };

    /// `Authorized` while no authoriser is installed: a desktop lets its programs read the user's pictures.
    static PHAuthorizationStatus authorizationStatus();
    /// The handler hears the answer once, on the thread on which the authoriser gives it.
    static void requestAuthorization(StatusHandler handler);
    /// Without a `status` function: none.
    static void setAuthorizer(Authorizer authorizer);
};

} // namespace lamina
