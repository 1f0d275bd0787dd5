#pragma once

#include "platform/base/Result.h"
#include "platform/media/MediaModule_p.h"
#include "platform/media/MovieWriting_p.h"

#include <memory>
#include <string>

namespace lamina {

/// `MediaModule::writeStill`.
Outcome writeStill(const StillFilm& still, const FilmSettings& settings);
/// `MediaModule::convert`.
Outcome convertClip(const ClipFile& clip, const MediaModule::SizeRule& size, const FilmSettings& settings);
/// `MediaModule::writeMovie`.
Result<std::unique_ptr<MovieWriting>> writeMovie(const char* container);
/// `MediaModule::rewriteMovie`.
Outcome rewriteMovie(const std::string& fragments, const FilmSettings& settings);

} // namespace lamina
