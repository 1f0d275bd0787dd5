#pragma once

#include "platform/base/CGGeometry.h"

#include <optional>
#include <string>

namespace lamina {

/// Why a drawing came to nothing, for who has to tell it: while one of these lives it hears of what fails on the way,
/// anywhere in the process, in place of the log. Of several the youngest hears.
///
/// A frame that could not be made is not an end: what is drawn from it is black. Who hands on a result asks here first.
/// From any thread; they end in the reverse order of their beginnings.
class DrawingFailures {
public:
    DrawingFailures();
    ~DrawingFailures();
    DrawingFailures(const DrawingFailures&) = delete;
    DrawingFailures& operator=(const DrawingFailures&) = delete;

    /// The first cause, as "graphics memory is short for 6000 x 4000 pixels"; nothing while all is well.
    std::optional<std::string> first() const;

    /// Tells the youngest one, or the log where there is none.
    static void note(const std::string& cause);
    /// `cause` "for W x H pixels".
    static void note(const std::string& cause, IntSize pixels);

private:
    DrawingFailures* m_former;
    std::optional<std::string> m_first;
};

} // namespace lamina
