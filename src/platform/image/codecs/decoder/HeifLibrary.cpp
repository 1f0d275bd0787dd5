#include "platform/image/codecs/decoder/HeifLibrary_p.h"

#include "platform/base/LazyLibrary.h"

namespace lamina {

const HeifLibrary* HeifLibrary::shared()
{
    static const auto loaded = [] {
        struct {
            HeifLibrary table{};
            bool complete = false;
        } result;
        HeifLibrary& table = result.table;
        LazyLibrary library("libheif.so.1");
        library.find(table.contextAlloc, "heif_context_alloc");
        library.find(table.contextFree, "heif_context_free");
        library.find(table.setMaximumImageSizeLimit, "heif_context_set_maximum_image_size_limit");
        library.find(table.readFromReader, "heif_context_read_from_reader");
        library.find(table.getPrimaryImageHandle, "heif_context_get_primary_image_handle");
        library.find(table.handleRelease, "heif_image_handle_release");
        library.find(table.handleWidth, "heif_image_handle_get_width");
        library.find(table.handleHeight, "heif_image_handle_get_height");
        library.find(table.handleHasAlpha, "heif_image_handle_has_alpha_channel");
        library.find(table.handleIsPremultiplied, "heif_image_handle_is_premultiplied_alpha");
        library.find(table.handleLumaBits, "heif_image_handle_get_luma_bits_per_pixel");
        library.find(table.handleProfileType, "heif_image_handle_get_color_profile_type");
        library.find(table.handleProfileSize, "heif_image_handle_get_raw_color_profile_size");
        library.find(table.handleProfile, "heif_image_handle_get_raw_color_profile");
        library.find(table.optionsAlloc, "heif_decoding_options_alloc");
        library.find(table.optionsFree, "heif_decoding_options_free");
        library.find(table.decodeImage, "heif_decode_image");
        library.find(table.imageRelease, "heif_image_release");
        library.find(table.imageWidth, "heif_image_get_width");
        library.find(table.imageHeight, "heif_image_get_height");
        library.find(table.imageBits, "heif_image_get_bits_per_pixel_range");
        library.find(table.imagePlane, "heif_image_get_plane_readonly");

        // Loads the codecs that some distributions keep as plug-ins; newer versions do it by themselves.
        decltype(&heif_init) init = nullptr;
        library.find(init, "heif_init");
        result.complete = library.complete();
        if (result.complete)
            init(nullptr);
        return result;
    }();
    return loaded.complete ? &loaded.table : nullptr;
}

} // namespace lamina
