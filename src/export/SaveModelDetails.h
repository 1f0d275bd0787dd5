#pragma once

#include "export/functions/ExportWork.h"
#include "platform/image/pixels/UIImage.h"

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace lamina {

/// What an exporter hands on: made once its work is done, read by the share screen. A plain value.
struct SaveModelDetails {
    SaveModelDetails(UIImage shareimage_, std::string sharedURL_, SavingtypeMethod saveType_)
        : shareimage(std::move(shareimage_))
        , sharedURL(std::move(sharedURL_))
        , saveType(saveType_)
    {
    }

    UIImage shareimage;        ///< what the share screen shows, and what a JPG saves and shares; never empty
    std::string sharedURL;     ///< path of the file that was written; empty: none (a JPG without a chosen place)
    SavingtypeMethod saveType; ///< the type that made it
    /// JPG: the file as it is to be stored, at the quality that was chosen, so that a library doesn't encode the
    /// picture anew. Null: there is none.
    std::shared_ptr<const std::vector<std::uint8_t>> bytes = {};
    double quality = 1; ///< JPG: with which `bytes` were encoded, 0 to 1
    /// The user chose where the file is, after it could not be written to its own place: the photo library has no copy
    /// of it, unless the share screen makes one.
    bool placeWasChosen = false;
};

} // namespace lamina
