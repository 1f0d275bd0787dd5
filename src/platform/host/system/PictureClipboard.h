#pragma once

#include "platform/base/Result.h"
#include "platform/image/pixels/UIImage.h"
#include "platform/photos/PhotoSource.h"

#include <QByteArray>
#include <QMimeData>

#include <memory>
#include <string>
#include <vector>

namespace lamina {

/// Whether `picturesOf` is likely to find something, by the offered types alone: cheap enough to be asked while
/// something is dragged about.
bool offersPictures(const QMimeData& offered);

/// The pictures in what was dropped or pasted: all files of this device, in their order; else the first of the picture
/// formats that the other side offers, named "pasted picture". Files are not opened here.
///
/// Empty when it holds nothing of that kind. An error when all it holds are links to elsewhere; its cause is
/// English. Main thread.
Result<std::vector<PhotoSource>> picturesOf(const QMimeData& offered);

/// What goes to the clipboard: a picture, as bytes of PNG, a file, or both.
struct CopiedThing {
    QByteArray png;       ///< empty: what is copied is no picture
    std::string filePath; ///< empty: there is no file
};

/// The picture and its file, or the file alone, whose picture is then read where it is one; one of the two is not
/// empty. Takes its time; usable from any thread.
Result<CopiedThing> copiedThing(const UIImage& image, const std::string& filePath);

/// The same as the clipboard takes it: picture and list of files. Main thread.
std::unique_ptr<QMimeData> mimeDataOf(const CopiedThing& thing);

} // namespace lamina
