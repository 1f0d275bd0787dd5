#pragma once

#include "platform/base/UIColor.h"

#include <optional>
#include <string>
#include <string_view>

namespace lamina {

/// "#RRGGBB", each component to the nearest of 255 steps; alpha is not told. From any thread.
std::string hexText(const UIColor& color);

/// The opaque colour of 3 or 6 hexadecimal digits, with "#" before them or without; blanks around it are left aside.
/// Three digits stand for themselves twice. Nothing for any other text. From any thread.
std::optional<UIColor> colorFromHexText(std::string_view text);

} // namespace lamina
