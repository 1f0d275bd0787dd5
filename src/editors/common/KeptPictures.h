#pragma once

#include "editors/common/RecordValue.h"
#include "platform/base/Result.h"
#include "platform/image/pixels/CGImage.h"
#include "platform/image/pixels/UIImage.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace lamina {

/// The pictures of kept records, lossless, each a file in the records' folder that is named by its contents' hash: one
/// that several records or places name is there once. One thread at a time.
class KeptPictures {
public:
    /// The folder need not be there until something is kept.
    explicit KeptPictures(std::string folder);

    /// The value that names the picture in a record; its file is written unless it is there. The empty picture is a
    /// value too. What goes wrong is told by `endRecord`.
    RecordValue keep(const UIImage& picture);
    /// The picture of such a value, equal to the one that was kept in pixels, scale and orientation. False when the
    /// value is none, or the file is missing or damaged.
    bool find(const RecordValue& value, UIImage& picture);

    /// Begins to collect what is kept for a record.
    void beginRecord();
    /// The names of its files, or why one could not be written.
    Result<std::vector<std::string>> endRecord();

    /// Reads the files of these names ahead, so that `find` is quick. False when one of them can't be read.
    bool load(const std::vector<std::string>& names);
    /// Lets go of all pictures in memory but those of these names.
    void forgetOthers(const std::vector<std::string>& names);

private:
    struct Held {
        std::string name;
        CGImage kept;   ///< what was given to `keep`; or none
        CGImage loaded; ///< what the file holds; or none, while nobody has read it
    };
    std::string nameOf(const CGImage& image);
    Result<std::string> write(const CGImage& image) const;
    CGImage pixelsOf(const std::string& name);
    CGImage readPixels(const std::string& name) const;
    std::size_t roomLeft() const;

    std::string m_folder;
    std::vector<Held> m_held;
    std::vector<std::string> m_named; ///< by the record under way
    Outcome m_written = success();
};

/// Whether the name is one that `KeptPictures` gives to its files.
bool isKeptPictureName(std::string_view name);

} // namespace lamina
