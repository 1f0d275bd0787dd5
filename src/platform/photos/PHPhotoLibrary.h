#pragma once

#include "platform/base/Result.h"
#include "platform/photos/PHAsset.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace lamina {

class PHPhotoLibraryChangeObserver;

/// Whether the user lets the application into the photo library. The values are the platform's.
enum class PHAuthorizationStatus { NotDetermined = 0, Restricted = 1, Denied = 2, Authorized = 3, Limited = 4 };

/// The library as a whole: the pictures in the user's folder for pictures, in further folders, and in files that were
/// added for this process alone. It is read in the background, from the first time on that it is asked for, and
/// watched; what comes, goes or changes is told to observers, whoever has done it. Main thread only, where nothing else
/// is said.
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

    /// While no authoriser is installed: `Authorized`, as a desktop lets its programs read the user's pictures, but
    /// `Denied` where there is a folder of the library and none of them may be read. From any thread.
    static PHAuthorizationStatus authorizationStatus();
    /// The handler hears the answer once, on the thread on which the authoriser gives it.
    static void requestAuthorization(StatusHandler handler);
    /// Without a `status` function: none. From any thread.
    static void setAuthorizer(Authorizer authorizer);

    /// False in a sandbox into which no folder of the library is let: the system's own chooser shows them then, and
    /// what it gives can be added by `addFiles`. From any thread.
    static bool showsFolders();

    /// Folders that belong to the library beside the user's own for pictures; each is an album, whatever it lies in.
    /// Another list takes the place of the last one, and the folders are read again. From any thread.
    static void setFurtherFolders(std::vector<std::string> folders);
    static std::vector<std::string> furtherFolders();

    /// Whether all folders have been gone through once, so that a picture that isn't there doesn't exist. From any
    /// thread.
    static bool isComplete();
    /// Waits until they have, and until what each picture's file tells of itself has been read. From any thread, but
    /// not from one that a change waits for.
    static void waitUntilComplete();
    /// Goes through the folders again, for those whose changes nobody tells, such as shared ones. Returns at once; what
    /// is different is told to observers. From any thread.
    static void rescan();

    /// Hears the assets of the files, in their order, without those that can't be reached.
    using AssetsHandler = std::function<void(const std::vector<PHAsset>& assets)>;
    /// Shows picture files from outside the library's folders among all photos, until this process ends; nothing is
    /// copied. A file that lies in one of the folders is the asset that it is anyway. The handler is called once, on
    /// the main thread, which counts as busy until then. From any thread.
    static void addFiles(std::vector<std::string> paths, AssetsHandler handler);

    /// Lets the observer hear of every change from now on, for as long as it lives; observers are told in the order of
    /// these calls. One that is registered already stays where it is.
    static void registerChangeObserver(const std::weak_ptr<PHPhotoLibraryChangeObserver>& observer);
    /// It hears of nothing any more, not even of the change that is just being told to others.
    static void unregisterChangeObserver(const PHPhotoLibraryChangeObserver* observer);

    /// Hears how a change has ended: done as a whole, or not at all and why. The error's subject is the file or folder
    /// concerned.
    using ChangeHandler = std::function<void(const Outcome& outcome)>;

    /// Changes the library: `changes` makes requests (see `PHAssetChangeRequest`, `PHAssetCreationRequest`,
    /// `PHAssetCollectionChangeRequest`), which are carried out when it returns, and the handler hears of it; observers
    /// do afterwards. Both are called once, on the library's own queue, one change after the other; where access is not
    /// given, only the handler is. Returns at once; the main queue counts as busy until the handler has run. Usable
    /// from any thread.
    static void performChanges(std::function<void()> changes, ChangeHandler handler);
};

} // namespace lamina
