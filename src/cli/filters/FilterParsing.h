#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/core/TypedValue.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/Result.h"

#include <cstddef>
#include <string>
#include <vector>

namespace lamina {

/// The filter of this class. The error names the nearest one.
Result<const FilterDescription*> filterNamed(const std::string& className);

/// Reads "PROPERTY=VALUE" texts in their order; operations are "NAME=VALUE,VALUE..." by the whole name or its first
/// keyword, and a bare name where they take nothing. The error's subject is the text; its cause says how the value is
/// written, in which unit, or names the nearest property.
Result<FilterSettings> parseSettings(const FilterDescription& filter, const std::vector<std::string>& texts);

/// A value as it may be typed: itself, or what stands for it where it is empty.
std::string exampleOf(const TypedValue& value);

/// An operation as it may be typed: "setMin:gamma:=0,1".
std::string argumentExample(const FilterSelector& selector);

/// Settings as texts that `parseSettings` reads.
std::vector<std::string> settingTexts(const FilterSettings& settings);

/// The value of `--size`: whole pixels, written WxH; more than any device draws is cut down to that.
Result<IntSize> parsePixelSize(const std::string& text);

/// "1 picture", "2 pictures".
std::string countedPictures(std::size_t count);

} // namespace lamina
