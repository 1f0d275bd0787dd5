#include "gpu/filters/color/GPUImageToneCurveFilter.h"

#include "gpu/core/GPUImageStage.h"
#include "gpu/core/TypedValue.h"
#include "gpu/core/VideoProcessingQueue.h"
#include "gpu/filters/color/ColorShaders.h"
#include "platform/base/Log.h"
#include "platform/image/pixels/CGImage.h"
#include "platform/image/pixels/PixelBuffer.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace lamina {

namespace {

constexpr int kEntries = 256;
const GPUImageToneCurveFilter::Points kStraight{{0, 0}, {0.5, 0.5}, {1, 1}};

constexpr const char* kDeclarations = R"(
uniform highp sampler2D toneCurveTexture;

vec4 entryFor(float value)
{
    return texture2D(toneCurveTexture, vec2((value * 255.0 + 0.5) / 256.0, 0.5));
}
)";

constexpr const char* kStatements = R"(
    gl_FragColor = vec4(entryFor(color.r).r, entryFor(color.g).g, entryFor(color.b).b, color.a);
)";

/// What a curve makes of a number. In single precision, in which what the spline has rounded is lost again.
int through(const std::vector<float>& curve, int number)
{
    const float value = curve[static_cast<std::size_t>(number)] + static_cast<float>(number);
    return static_cast<int>(std::clamp(value, 0.0F, 255.0F));
}

/// The first curve acts after each of the others.
CGImage tableOf(std::span<const std::vector<float>> curves)
{
    const CGImageLayout layout = CGImageLayout::rgba(kEntries, 1, CGImageAlphaInfo::Last);
    PixelBuffer bytes = PixelBuffer::allocate(layout.byteCount());
    if (!bytes)
        return {};
    for (int i = 0; i < kEntries; ++i) {
        std::uint8_t* entry = bytes.data() + 4 * static_cast<std::ptrdiff_t>(i);
        for (std::size_t channel = 0; channel < 3; ++channel)
            entry[channel] = static_cast<std::uint8_t>(through(curves[0], through(curves[channel + 1], i)));
        entry[3] = 255;
    }
    return CGImage::make(layout, std::move(bytes));
}

/// The error of a file that leaves a curve open.
Outcome checkCurves(const Result<GPUImageACVFile>& file, const std::string& path)
{
    if (!file)
        return Error{path, file.error().cause};
    for (const auto curve :
         {GPUImageACVFile::RGBComposite, GPUImageACVFile::Red, GPUImageACVFile::Green, GPUImageACVFile::Blue}) {
        if (file->points(curve).empty())
            return Error{path, "one of its curves has no points"};
    }
    return success();
}

FilterProperty fileProperty()
{
    // No file is no wish.
    return {"pointsWithACVURL",
            FilePath{},
            {},
            "",
            "All four curves from a curve file (.acv)",
            [](GPUImageStage& filter, const TypedValue& value) {
                const std::string& path = std::get<FilePath>(value).path;
                if (path.empty())
                    return;
                if (const Outcome set = dynamic_cast<GPUImageToneCurveFilter&>(filter).setPointsWithACVURL(path); !set)
                    logError(set.error().message());
            },
            [](const TypedValue& value) {
                const std::string& path = std::get<FilePath>(value).path;
                return path.empty() ? success() : checkCurves(GPUImageACVFile::makeWithContentsOfFile(path), path);
            }};
}

/// A new filter with what `set` sets.
template <class Set>
Result<std::shared_ptr<GPUImageToneCurveFilter>> madeWith(const Set& set)
{
    auto filter = std::make_shared<GPUImageToneCurveFilter>();
    if (const Outcome outcome = set(*filter); !outcome)
        return outcome.error();
    return filter;
}

} // namespace

GPUImageToneCurveFilter::GPUImageToneCurveFilter()
    : GPUImageFilter(colorShader(kDeclarations, kStatements))
    , m_toneCurveTextureUniform(uniformIndex("toneCurveTexture"))
{
    for (const auto curve :
         {GPUImageACVFile::RGBComposite, GPUImageACVFile::Red, GPUImageACVFile::Green, GPUImageACVFile::Blue})
        prepare(curve, kStraight);
    updateToneCurveTexture();
}

FilterDescription GPUImageToneCurveFilter::describe()
{
    using Self = GPUImageToneCurveFilter;
    const auto curve = [](const char* name, auto setter, const char* help) {
        return filterProperty(name, setter, kStraight, {0, 1}, "", help);
    };
    return filterDescription<Self>(
        "GPUImageToneCurveFilter", "colour", 1, "Tone curves for each channel and for all together",
        {curve("rgbCompositeControlPoints", &Self::setRgbCompositeControlPoints, "Curve of all three channels"),
         curve("redControlPoints", &Self::setRedControlPoints, "Curve of red: inputs and outputs"),
         curve("greenControlPoints", &Self::setGreenControlPoints, "Curve of green"),
         curve("blueControlPoints", &Self::setBlueControlPoints, "Curve of blue"), fileProperty()});
}

Result<std::shared_ptr<GPUImageToneCurveFilter>>
GPUImageToneCurveFilter::makeWithACVData(std::span<const std::uint8_t> data)
{
    return madeWith([&](GPUImageToneCurveFilter& filter) {
        return filter.setPoints(GPUImageACVFile::makeWithACVFileData(data), {});
    });
}

Result<std::shared_ptr<GPUImageToneCurveFilter>> GPUImageToneCurveFilter::makeWithACV(const std::string& name)
{
    return makeWithACVURL(name + ".acv");
}

Result<std::shared_ptr<GPUImageToneCurveFilter>> GPUImageToneCurveFilter::makeWithACVURL(const std::string& path)
{
    return madeWith([&](GPUImageToneCurveFilter& filter) { return filter.setPointsWithACVURL(path); });
}

Outcome GPUImageToneCurveFilter::setPointsWithACV(const std::string& name)
{
    return setPointsWithACVURL(name + ".acv");
}

Outcome GPUImageToneCurveFilter::setPointsWithACVURL(const std::string& path)
{
    return setPoints(GPUImageACVFile::makeWithContentsOfFile(path), path);
}

Outcome GPUImageToneCurveFilter::setPoints(const Result<GPUImageACVFile>& file, const std::string& path)
{
    if (Outcome usable = checkCurves(file, path); !usable)
        return usable;
    runSynchronouslyOnVideoProcessingQueue([&] {
        for (const auto curve :
             {GPUImageACVFile::RGBComposite, GPUImageACVFile::Red, GPUImageACVFile::Green, GPUImageACVFile::Blue})
            prepare(curve, file->points(curve));
        updateToneCurveTexture();
    });
    return success();
}

void GPUImageToneCurveFilter::setRgbCompositeControlPoints(const Points& points)
{
    setControlPoints(GPUImageACVFile::RGBComposite, points);
}

void GPUImageToneCurveFilter::setRedControlPoints(const Points& points)
{
    setControlPoints(GPUImageACVFile::Red, points);
}

void GPUImageToneCurveFilter::setGreenControlPoints(const Points& points)
{
    setControlPoints(GPUImageACVFile::Green, points);
}

void GPUImageToneCurveFilter::setBlueControlPoints(const Points& points)
{
    setControlPoints(GPUImageACVFile::Blue, points);
}

void GPUImageToneCurveFilter::prepare(GPUImageACVFile::Curve curve, const Points& points)
{
    m_points[curve] = points;
    m_curves[curve] = getPreparedSplineCurve(points);
}

void GPUImageToneCurveFilter::setControlPoints(GPUImageACVFile::Curve curve, const Points& points)
{
    runSynchronouslyOnVideoProcessingQueue([&] {
        prepare(curve, points);
        updateToneCurveTexture();
    });
}

void GPUImageToneCurveFilter::updateToneCurveTexture()
{
    runSynchronouslyOnVideoProcessingQueue([this] {
        const auto isShort = [](const std::vector<float>& curve) { return curve.size() < std::size_t{kEntries}; };
        if (std::ranges::any_of(m_curves, isShort))
            return;
        const CGImage table = tableOf(m_curves);
        for (std::size_t i = 0; i < table.bytes().size(); ++i) {
            if (i % 4 < m_tables.size())
                m_tables[i % 4][i / 4] = table.bytes()[i];
        }
        if (m_toneCurveTexture)
            m_toneCurveTexture->replace(table, {{0, 0}, {kEntries, 1}});
        else
            m_toneCurveTexture = std::make_unique<PictureTexture>(table);
    });
}

FilterKernel GPUImageToneCurveFilter::kernel() const
{
    return kernels::tableKernel(m_tables);
}

void GPUImageToneCurveFilter::bindFurtherInputs()
{
    bindInput(m_toneCurveTexture->framebuffer(), kFirstTextureUnit + 1, m_toneCurveTextureUniform);
}

} // namespace lamina
