#pragma once

#include "platform/base/Result.h"

#include <string>
#include <string_view>
#include <vector>

namespace lamina {

/// A graphics device that EGL offers. Hardware comes first where it is chosen freely.
struct GLDevice {
    int index = 0;            ///< its place in EGL's list
    bool software = false;    ///< draws on the processor (Mesa's llvmpipe)
    std::string drmFile = {}; ///< "/dev/dri/card0" or "/dev/dri/renderD128"; empty where there is none
};

/// The devices to try, best first, as `wanted` says: empty: hardware in EGL's order, then software; "hardware" or
/// "software": those alone; a number: EGL's index; anything else: the DRM file. The error names the wish and what there
/// is.
Result<std::vector<GLDevice>> devicesInOrder(const std::vector<GLDevice>& all, std::string_view wanted);

/// The one connection to the graphics driver, without a window. Opened on first use, by the first thread that asks;
/// never closed. The environment variable LAMINA_EGL_DEVICE chooses the device, by the rules of `devicesInOrder`.
///
/// EGL's own handles are kept as plain pointers so that its headers, and what they include of window systems, stay away
/// from everybody else.
class GLDisplay {
public:
    /// The connection, or why there is none ("OpenGL ES", "no driver offers OpenGL ES 2.0 ..."). The outcome of the
    /// first call stands for the whole process. From any thread.
    static const Result<GLDisplay>& shared();

    void* eglDisplay() const { return m_display; }
    /// The configuration for contexts and surfaces: RGBA of 8 bits.
    void* eglConfig() const { return m_config; }
    /// Whether a context may be current without any surface.
    bool supportsSurfaceless() const { return m_surfaceless; }
    const GLDevice& device() const { return m_device; }

private:
    friend struct GLDisplayOpening;
    void* m_display = nullptr;
    void* m_config = nullptr;
    bool m_surfaceless = false;
    GLDevice m_device;
};

} // namespace lamina
