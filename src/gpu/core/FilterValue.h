#pragma once

#include "gpu/core/GPUVectors.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/Result.h"

#include <string>
#include <string_view>
#include <variant>

namespace lamina {

/// A value of a filter's property. Its alternative is the property's type; names of types are those of
/// `filterValueTypeName`.
using FilterValue =
    std::variant<float, int, bool, CGPoint, CGSize, GPUVector3, GPUVector4, GPUMatrix3x3, GPUMatrix4x4, std::string>;

/// "number", "integer", "flag", "point", "size", "color" (three numbers), "vector" (four), "matrix3", "matrix4",
/// "text".
std::string_view filterValueTypeName(const FilterValue& value);

/// How such a value is written, for help: "X,Y", "WxH", "A,B,C;D,E,F;G,H,I" ...
std::string_view filterValueSyntax(const FilterValue& value);

/// Reads a value of the type that `like` has. Numbers are finite, in the C locale, nothing may follow. The error's
/// subject is the text.
Result<FilterValue> parseFilterValue(std::string_view text, const FilterValue& like);

/// As `parseFilterValue` would read it: the shortest digits that give the same value back.
std::string formatFilterValue(const FilterValue& value);

} // namespace lamina
