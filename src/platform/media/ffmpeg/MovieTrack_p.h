#pragma once

#include "platform/base/Result.h"
#include "platform/media/CMSampleBuffer.h"

namespace lamina {

/// A track of a movie that is written piece by piece.
class MovieTrack {
public:
    virtual ~MovieTrack() = default;

    /// Whether the file knows of what it is, so that it can be begun.
    virtual bool isDescribed() const = 0;
    /// Has it describe itself without a piece.
    virtual Outcome describeEmpty() = 0;
    /// Takes a piece whose time counts from the movie's beginning; what lies before is cut.
    virtual Outcome write(const CMSampleBuffer& piece) = 0;
    /// Nothing comes any more.
    virtual Outcome finish() = 0;
};

} // namespace lamina
