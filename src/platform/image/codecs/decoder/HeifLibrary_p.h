#pragma once

#include <libheif/heif.h>

namespace lamina {

/// The functions of libheif that the HEIC decoder uses; the library is loaded with the first picture that needs it.
struct HeifLibrary {
    /// Null when the library isn't installed. Usable from any thread.
    static const HeifLibrary* shared();

    decltype(&heif_context_alloc) contextAlloc;
    decltype(&heif_context_free) contextFree;
    decltype(&heif_context_set_maximum_image_size_limit) setMaximumImageSizeLimit;
    decltype(&heif_context_read_from_reader) readFromReader;
    decltype(&heif_context_get_primary_image_handle) getPrimaryImageHandle;
    decltype(&heif_image_handle_release) handleRelease;
    decltype(&heif_image_handle_get_width) handleWidth;
    decltype(&heif_image_handle_get_height) handleHeight;
    decltype(&heif_image_handle_has_alpha_channel) handleHasAlpha;
    decltype(&heif_image_handle_is_premultiplied_alpha) handleIsPremultiplied;
    decltype(&heif_image_handle_get_luma_bits_per_pixel) handleLumaBits;
    decltype(&heif_image_handle_get_color_profile_type) handleProfileType;
    decltype(&heif_image_handle_get_raw_color_profile_size) handleProfileSize;
    decltype(&heif_image_handle_get_raw_color_profile) handleProfile;
    decltype(&heif_decoding_options_alloc) optionsAlloc;
    decltype(&heif_decoding_options_free) optionsFree;
    decltype(&heif_decode_image) decodeImage;
    decltype(&heif_image_release) imageRelease;
    decltype(&heif_image_get_width) imageWidth;
    decltype(&heif_image_get_height) imageHeight;
    decltype(&heif_image_get_bits_per_pixel_range) imageBits;
    decltype(&heif_image_get_plane_readonly) imagePlane;
};

} // namespace lamina
