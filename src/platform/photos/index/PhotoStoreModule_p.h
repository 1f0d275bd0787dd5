#pragma once

#include "platform/base/Result.h"
#include "platform/photos/index/PhotoStore_p.h"

#include <functional>
#include <memory>
#include <string>
#include <string_view>

/// What the module with SQLite does, as functions that are looked up when it is loaded. It shares no state with the
/// libraries of the program: what it has to say in the log it hands back.
namespace lamina {

/// A file of rows to be opened.
struct PhotoStoreFile {
    std::string path;     ///< made where it is missing, in a folder that is there, for the owner alone
    std::string identity; ///< of a file that is made
    std::function<void(std::string_view text)> warn;
};

/// The functions. Every error is a value without a subject; nothing is thrown.
struct PhotoStoreModule {
    const char* version; ///< of Lamina, which must be the program's
    /// A damaged file, or one of another version, is made anew, with what can be read of a damaged one.
    Result<std::unique_ptr<PhotoStore>> (*open)(PhotoStoreFile file);
    /// What can be read of a file that can't be written; nothing of one that isn't there.
    StoreContents (*read)(const std::string& path);
};

/// The name under which the module gives its functions: `const PhotoStoreModule* laminaPhotoStoreModule()`.
inline constexpr const char* kPhotoStoreModuleEntry = "laminaPhotoStoreModule";

/// The module, loaded when it is first asked for. The error, without a subject, is the same at every call.
Result<const PhotoStoreModule*> photoStoreModule();

} // namespace lamina
