// Makes a photo warmer or cooler with a filter of its own.

#include <cstdio>
#include <gpu/core/GPUImageContext.h>
#include <gpu/core/GPUImageFilter.h>
#include <gpu/filters/FilterCatalogue.h>
#include <platform/image/codecs/ImageSaving.h>
#include <platform/image/codecs/PictureDecoding.h>

using namespace lamina;

namespace {

constexpr const char* kWarmthFragmentShader = R"(
precision highp float;

varying vec2 textureCoordinate;
uniform sampler2D inputImageTexture;
uniform float warmth;

void main()
{
    vec4 color = texture2D(inputImageTexture, textureCoordinate);
    gl_FragColor = vec4(color.rgb + warmth * vec3(0.2, 0.0, -0.2), color.a);
}
)";

/// Moves colours towards red or blue.
///
///   out.rgb = in.rgb + warmth * (0.2, 0, -0.2),   out.a = in.a
///
/// `in` is straight, as stored.
class WarmthFilter : public GPUImageFilter {
public:
    WarmthFilter()
        : GPUImageFilter(kWarmthFragmentShader)
        , m_warmthUniform(uniformIndex("warmth"))
    {
        setWarmth(kDefaultWarmth);
    }

    /// -1 cool to 1 warm; 0 changes nothing. Default 0.5.
    float warmth() const { return m_warmth; }
    void setWarmth(float warmth)
    {
        m_warmth = warmth;
        setFloat(warmth, m_warmthUniform, m_filterProgram);
    }

    static FilterDescription describe()
    {
        return filterDescription<WarmthFilter>("WarmthFilter", "colour", 1, "Moves colours towards red or blue",
                                               {filterProperty("warmth", &WarmthFilter::setWarmth, kDefaultWarmth,
                                                               {-1, 1}, "", "Below 0 cooler, above 0 warmer")});
    }

private:
    static constexpr float kDefaultWarmth = 0.5F;

    GLint m_warmthUniform;
    float m_warmth = kDefaultWarmth;
};

int complain(const Error& error)
{
    std::fprintf(stderr, "warmth: %s: %s\n", error.subject.c_str(), error.cause.c_str());
    return 1;
}

/// The filter by its name, as the command, pipelines and settings files would ask for it.
Result<std::shared_ptr<GPUImageStage>> makeWarmthFilter(const char* warmth)
{
    const FilterDescription& description = *filterCatalogue().find("WarmthFilter");
    FilterSettings settings;
    if (warmth) {
        const FilterProperty& property = *description.property("warmth");
        const Result<TypedValue> value = parseValue(warmth, kindOf(property.fallback));
        if (!value)
            return value.error();
        settings.emplace_back(property.name, *value);
    }
    return makeFilter(description, settings);
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 3 && argc != 4) {
        std::fputs("usage: warmth PHOTO RESULT.png [WARMTH]\n", stderr);
        return 2;
    }
    filterCatalogue().add(WarmthFilter::describe());

    const Result<UIImage> photo = loadPicture(argv[1]);
    if (!photo)
        return complain(photo.error());
    // Without a graphics driver filters can be made and set, but give no picture.
    if (const Outcome available = GPUImageContext::availability(); !available)
        return complain(available.error());
    const auto filter = makeWarmthFilter(argc == 4 ? argv[3] : nullptr);
    if (!filter)
        return complain(filter.error());

    // The graph works on the pixels as they are stored, so the photo is turned first.
    const UIImage result = (*filter)->imageByFilteringImage(photo->upright());
    if (!result)
        return complain({argv[1], "the filter gave no picture"});
    const Outcome saved = saveImage(result, argv[2]);
    return saved ? 0 : complain(saved.error());
}
