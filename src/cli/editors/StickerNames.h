#pragma once

#include "editors/stickers/StickerCatalogue.h"
#include "platform/base/Result.h"

#include <string_view>

namespace lamina {

/// The sticker that is called so: by the name of its drawing ("big117") or by its English word ("Sun", "ice-cream"), in
/// which case does not count and a hyphen is a blank. The cause of the error suggests the nearest.
Result<const StickerEntry*> stickerNamed(std::string_view text);

} // namespace lamina
