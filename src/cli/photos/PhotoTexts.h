#pragma once

#include "picker/CollectionItem.h"
#include "platform/photos/PHAsset.h"

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

namespace lamina {

/// How paths are written on standard output.
enum class PathForm {
    Line,     ///< as they are, one a line; one that a terminal would obey (`shownText`) is quoted, and so stays one
    Terminal, ///< the same, but quoted wherever a shell would not take it for one word
    Null      ///< as they are, each with a byte 0 behind it
};

/// A path with what ends it. A quoted one is a word of any shell: '...' or, with bytes that a terminal can't show,
/// "$(printf '...')". As paths are absolute, nothing else begins with these.
std::string pathText(const std::string& path, PathForm form);

/// What programs read of an asset: identifier and path; its "url" where the path is no UTF-8, since text can't hold it
/// then: what is none of it is replaced by U+FFFD.
nlohmann::ordered_json placeAsJSON(const PHAsset& asset);
/// The same with width, height and date.
nlohmann::ordered_json assetAsJSON(const PHAsset& asset);

/// "2026-11-21T09:05:00Z", of seconds since the beginning of 1970, UTC. Years before 0 and after 9999 become these.
std::string isoDate(double seconds);

/// For people, aligned.
std::string albumsAsText(const std::vector<CollectionItem>& albums);
/// For programs.
std::string albumsAsJSON(const std::vector<CollectionItem>& albums);

} // namespace lamina
