#pragma once

#include "platform/base/CGGeometry.h"
#include "platform/gl/GLHeaders.h"

#include <cstdint>

namespace lamina {

/// What GL draws a view's frames into: a renderbuffer of a size with a framebuffer around it. The shared context
/// presents one by handing its pixels over. On the video processing queue, its end too, with the context current.
class DisplayDrawable {
public:
    explicit DisplayDrawable(IntSize size);
    ~DisplayDrawable();
    DisplayDrawable(const DisplayDrawable&) = delete;
    DisplayDrawable& operator=(const DisplayDrawable&) = delete;

    /// Draws go here from now on, over all of it. False: the device has none of this size.
    bool activate();
    /// Has the context present what was drawn: its pixels, R G B A of 8 bits without gaps, in GL's order of rows.
    /// False: the device has not given them.
    bool present(std::uint8_t* pixels);

private:
    static bool presentBound(GLenum target);
    void read();

    IntSize m_size;
    GLuint m_displayFramebuffer = 0;
    GLuint m_displayRenderbuffer = 0;
    bool m_isComplete = false;
    std::uint8_t* m_destination = nullptr; ///< while it is presented
};

} // namespace lamina
