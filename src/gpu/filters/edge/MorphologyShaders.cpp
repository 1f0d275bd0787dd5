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

/// The places of the centre and the neighbours on both sides, as the fragment shader writes them, with how far off they
/// lie in steps.
struct Place {
    std::string text;
    int steps;
};

std::vector<Place> placesOf(MorphologyPlaces places, unsigned radius)
{
    std::vector<Place> all{{kCentre, 0}};
    for (unsigned steps = 1; steps <= radius; ++steps) {
        const int away = static_cast<int>(steps);
        if (places == MorphologyPlaces::HandedOver) {
            all.push_back({std::string(kSteps[steps - 1]) + "PositiveTextureCoordinate", away});
            all.push_back({std::string(kSteps[steps - 1]) + "NegativeTextureCoordinate", -away});
            continue;
        }
        const std::string distance = std::to_string(steps) + ".0 * texelStep";
        all.push_back({std::string(kCentre) + " + " + distance, away});
        all.push_back({std::string(kCentre) + " - " + distance, -away});
    }
    return all;
}

/// What one shader hands to the other: a place each, or the centre and the step.
std::vector<std::string> varyingsOf(MorphologyPlaces places, unsigned radius)
{
    if (places == MorphologyPlaces::Computed)
        return {kCentre, "texelStep"};
    std::vector<std::string> names;
    for (const Place& place : placesOf(places, radius))
        names.push_back(place.text);
    return names;
}

std::string assignment(const std::string& varying, int steps)
{
    return "    " + varying + " = inputTextureCoordinate.xy + " + std::to_string(steps) + ".0 * offset;\n";
}

} // namespace

std::string morphologyVertexShader(MorphologyPlaces places, unsigned radius)
{
    const unsigned reach = usableRadius(radius);
    std::string text = R"(attribute vec4 position;
attribute vec4 inputTextureCoordinate;

uniform float texelWidthOffset;
uniform float texelHeightOffset;

)";
    for (const std::string& name : varyingsOf(places, reach))
        text += "varying vec2 " + name + ";\n";
    text += R"(
void main()
{
    gl_Position = position;

    vec2 offset = vec2(texelWidthOffset, texelHeightOffset);
)";
    if (places == MorphologyPlaces::Computed)
        return text + assignment(kCentre, 0) + "    texelStep = offset;\n}\n";
    for (const Place& place : placesOf(places, reach))
        text += assignment(place.text, place.steps);
    return text + "}\n";
}

std::string morphologyFragmentShader(Morphology morphology, MorphologyChannels channels, MorphologyPlaces places,
                                     unsigned radius)
{
    const unsigned reach = usableRadius(radius);
    const bool red = channels == MorphologyChannels::Red;
    const auto valueAt = [&](const std::string& place) {
        return "texture2D(inputImageTexture, " + place + (red ? ").r" : ")");
    };
    // Low precision holds the values of a texture; places in it need more.
    std::string text = "precision lowp float;\n\nuniform sampler2D inputImageTexture;\n\n";
    for (const std::string& name : varyingsOf(places, reach))
        text += "varying highp vec2 " + name + ";\n";
    text.append("\nvoid main()\n{\n    ").append(red ? "float" : "vec4");
    text.append(" value = " + valueAt(kCentre) + ";\n");
    const std::string choose = morphology == Morphology::Dilation ? "max" : "min";
    for (const Place& place : placesOf(places, reach)) {
        if (place.steps != 0)
            text.append("    value = " + choose + "(value, " + valueAt(place.text) + ");\n");
    }
    return text + "    gl_FragColor = " + (red ? "vec4(value, value, value, 1.0)" : "value") + ";\n}\n";
}

} // namespace lamina
