#pragma once

#include "editors/common/RecordValue.h"
#include "platform/base/CGAffineTransform.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/UIColor.h"

#include <array>
#include <nlohmann/json.hpp>

/// How the values that compositions are made of stand in a record, beside what the library knows by itself.
namespace lamina {

/// Runs `read`, which takes values out of a record and says whether they make sense; false also where one is missing
/// or of another kind.
template <class Read>
bool readRecordValue(Read read)
{
    try {
        return read();
    } catch (const nlohmann::json::exception&) {
        return false;
    }
}

// Found by the library beside the types.

inline void to_json(RecordValue& value, const CGPoint& point)
{
    value = std::array{point.x, point.y};
}
inline void from_json(const RecordValue& value, CGPoint& point)
{
    const auto read = value.get<std::array<double, 2>>();
    point = {read[0], read[1]};
}

inline void to_json(RecordValue& value, const CGSize& size)
{
    value = std::array{size.width, size.height};
}
inline void from_json(const RecordValue& value, CGSize& size)
{
    const auto read = value.get<std::array<double, 2>>();
    size = {read[0], read[1]};
}

inline void to_json(RecordValue& value, const UIColor& color)
{
    value = std::array{color.red, color.green, color.blue, color.alpha};
}
inline void from_json(const RecordValue& value, UIColor& color)
{
    const auto read = value.get<std::array<double, 4>>();
    color = {read[0], read[1], read[2], read[3]};
}

inline void to_json(RecordValue& value, const CGAffineTransform& t)
{
    value = std::array{t.a, t.b, t.c, t.d, t.tx, t.ty};
}
inline void from_json(const RecordValue& value, CGAffineTransform& transform)
{
    const auto read = value.get<std::array<double, 6>>();
    transform = {read[0], read[1], read[2], read[3], read[4], read[5]};
}

} // namespace lamina
