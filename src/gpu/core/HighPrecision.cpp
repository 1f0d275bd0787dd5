#include "gpu/core/HighPrecision.h"

namespace lamina {

std::string needingHighPrecision(const std::string& filter, const std::string& fragmentShader)
{
    return "#ifndef GL_FRAGMENT_PRECISION_HIGH\n#error " + filter +
           " needs high precision in fragment shaders, which this device lacks\n#endif\n" + fragmentShader;
}

} // namespace lamina
