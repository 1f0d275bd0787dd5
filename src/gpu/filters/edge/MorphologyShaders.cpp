// Dilation and erosion of grey values by a flat square, which is a line down after a line across (Serra, Image Analysis
// and Mathematical Morphology, 1982).

#include "gpu/filters/edge/MorphologyShaders.h"

#include <algorithm>
#include <array>
#include <vector>

namespace lamina {

namespace {

constexpr std::array<const char*, kLargestMorphologyRadius> kSteps{"oneStep", "twoSteps", "threeSteps", "fourSteps"};
constexpr const char* kCentre = "centerTextureCoordinate";

unsigned usableRadius(unsigned radius)
{
    return std::clamp(radius, 1U, kLargestMorphologyRadius);
}

std::string neighbour(unsigned steps, const char* side)
{
    return std::string(kSteps[steps - 1]) + side + "TextureCoordinate";
}

/// The centre and the neighbours on both sides.
std::vector<std::string> places(unsigned radius)
{
    std::vector<std::string> names{kCentre};
    for (unsigned steps = 1; steps <= radius; ++steps) {
        names.push_back(neighbour(steps, "Positive"));
        names.push_back(neighbour(steps, "Negative"));
    }
    return names;
}

} // namespace

std::string morphologyVertexShader(unsigned radius)
{
    const unsigned reach = usableRadius(radius);
    std::string text = R"(attribute vec4 position;
attribute vec4 inputTextureCoordinate;

uniform float texelWidthOffset;
uniform float texelHeightOffset;

)";
    for (const std::string& name : places(reach))
        text += "varying vec2 " + name + ";\n";
    text += R"(
void main()
{
    gl_Position = position;

    vec2 offset = vec2(texelWidthOffset, texelHeightOffset);
    centerTextureCoordinate = inputTextureCoordinate.xy;
)";
    for (unsigned steps = 1; steps <= reach; ++steps) {
        const std::string way = "inputTextureCoordinate.xy";
        const std::string distance = std::to_string(steps) + ".0 * offset;\n";
        text.append("    ")
            .append(neighbour(steps, "Negative"))
            .append(" = ")
            .append(way)
            .append(" - ")
            .append(distance);
        text.append("    ")
            .append(neighbour(steps, "Positive"))
            .append(" = ")
            .append(way)
            .append(" + ")
            .append(distance);
    }
    return text + "}\n";
}

std::string morphologyFragmentShader(Morphology morphology, MorphologyChannels channels, unsigned radius)
{
    const std::vector<std::string> names = places(usableRadius(radius));
    const bool red = channels == MorphologyChannels::Red;
    const auto valueAt = [&](const std::string& name) {
        return "texture2D(inputImageTexture, " + name + (red ? ").r" : ")");
    };
    // Low precision holds the values of a texture; places in it need more.
    std::string text = "precision lowp float;\n\nuniform sampler2D inputImageTexture;\n\n";
    for (const std::string& name : names)
        text += "varying highp vec2 " + name + ";\n";
    text.append("\nvoid main()\n{\n    ").append(red ? "float" : "vec4");
    text.append(" value = " + valueAt(kCentre) + ";\n");
    const std::string choose = morphology == Morphology::Dilation ? "max" : "min";
    for (const std::string& name : names) {
        if (name != kCentre)
            text.append("    value = " + choose + "(value, " + valueAt(name) + ");\n");
    }
    return text + "    gl_FragColor = " + (red ? "vec4(value, value, value, 1.0)" : "value") + ";\n}\n";
}

} // namespace lamina
