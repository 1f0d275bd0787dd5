#pragma once

#include "platform/base/Result.h"
#include "platform/media/MediaModule_p.h"

namespace lamina {

/// `MediaModule::writeStill`.
Outcome writeStill(const StillFilm& still, const FilmSettings& settings);
/// `MediaModule::convert`.
Outcome convertClip(const ClipFile& clip, const MediaModule::SizeRule& size, const FilmSettings& settings);

} // namespace lamina
