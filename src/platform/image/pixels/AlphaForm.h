#pragma once

namespace lamina {

/// What alpha does to the colours beside it: nothing, or they are multiplied by it.
enum class AlphaForm { Straight, Premultiplied };

} // namespace lamina
