#include "cli/filters/FilterSheet.h"

#include "cli/filters/FilterDrawing.h"
#include "cli/filters/FilterParsing.h"
#include "gpu/core/FilterRegistry.h"
#include "gpu/filters/FilterCatalogue.h"
#include "gpu/filters/color/LookupTables.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/UIColor.h"
#include "platform/image/drawing/CGContext.h"
#include "platform/image/drawing/UIBezierPath.h"
#include "platform/image/drawing/UIImageDrawing.h"
#include "platform/image/pixels/CGImage.h"
#include "platform/image/pixels/PixelBuffer.h"
#include "platform/text/TextLayout.h"
#include "platform/text/UIFont.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <utility>

namespace lamina {

namespace {

constexpr int kColumns = 6;
constexpr double kGap = 20;
constexpr double kHeadingHeight = 48;
constexpr double kLabelHeight = 36;
constexpr double kLeastFactor = 0.75; // to which letters of a long name shrink before it is cut
const UIColor kInk{0.13, 0.13, 0.15, 1};
const UIColor kPaleInk{0.42, 0.42, 0.46, 1};
const UIColor kEmpty{0.93, 0.93, 0.94, 1};

const Error kNoMemory{"filters", "memory is short"};

CGSize inPixels(const UIImage& picture)
{
    const IntSize size = picture.pixelSize();
    return {static_cast<double>(size.width), static_cast<double>(size.height)};
}

/// The largest size of the same proportions within the place, in whole pixels; never enlarged.
CGSize fitting(CGSize size, CGSize place)
{
    const double scale = std::min({1.0, place.width / size.width, place.height / size.height});
    return {std::max(1.0, std::round(size.width * scale)), std::max(1.0, std::round(size.height * scale))};
}

UIImage reduced(const UIImage& picture)
{
    const CGSize size = fitting(inPixels(picture), {kSheetPictureSide, kSheetPictureSide});
    std::optional<CGContext> context = CGContext::image(size, false, 1);
    if (!context)
        return {};
    drawInRect(picture, *context, {{}, size});
    return context->makeUIImage();
}

/// A colour of the disc at a place from -1 to 1, straight: red grows rightwards, green upwards, blue outwards.
void putDiscPixel(double x, double y, std::uint8_t* pixel)
{
    constexpr double kEdge = 0.8;
    const double away = std::hypot(x, y);
    const double values[] = {0.5 + 0.5 * x, 0.5 - 0.5 * y, away, (kEdge - away) / 0.2};
    for (const double value : values)
        *pixel++ = static_cast<std::uint8_t>(std::lround(std::clamp(value, 0.0, 1.0) * 255));
}

/// Round, in the middle of a picture of this size.
UIImage disc(IntSize size)
{
    const CGImageLayout layout = CGImageLayout::rgba(size.width, size.height, CGImageAlphaInfo::Last);
    PixelBuffer buffer = PixelBuffer::allocate(layout.byteCount());
    const double side = std::min(size.width, size.height);
    for (int i = 0; buffer && i < size.width * size.height; ++i) {
        const int column = i % size.width;
        const int row = i / size.width;
        putDiscPixel((2.0 * column + 1 - size.width) / side, (2.0 * row + 1 - size.height) / side,
                     buffer.data() + 4L * i);
    }
    return UIImage(CGImage::make(layout, std::move(buffer)));
}

/// White points on black, for what takes marked ones: anywhere, but the same ones every time.
UIImage scatteredPoints(IntSize size)
{
    constexpr int kPoints = 400;
    const CGImageLayout layout = CGImageLayout::rgba(size.width, size.height, CGImageAlphaInfo::NoneSkipLast);
    PixelBuffer buffer = PixelBuffer::zeroed(layout.byteCount());
    std::minstd_rand random;
    for (int i = 0; buffer && i < kPoints; ++i)
        std::fill_n(buffer.data() + random() % (layout.byteCount() / 4) * 4, 4, 255);
    return UIImage(CGImage::make(layout, std::move(buffer)));
}

/// Draws from top to bottom, and measures without a context.
class Sheet {
public:
    explicit Sheet(CGSize picture, std::optional<CGContext> context = std::nullopt)
        : m_picture(picture)
        , m_context(std::move(context))
    {
    }

    static double width() { return kGap + kColumns * (kSheetPictureSide + kGap); }
    double height() const { return m_y + (m_column > 0 ? rowHeight() : 0) + kGap; }
    UIImage picture() { return m_context->makeUIImage(); }

    void addHeading(const std::string& title)
    {
        if (std::exchange(m_column, 0) > 0)
            m_y += rowHeight();
        addText(title, UIFont::systemFontOfSize(26, UIFontWeight::Semibold), kInk, {kGap, m_y + 6}, width());
        m_y += kHeadingHeight;
    }

    /// `draw`: gives the picture, and isn't called to measure.
    template <class Draw>
    void addPicture(const std::string& name, const std::string& note, Draw draw)
    {
        const double x = kGap + m_column * (kSheetPictureSide + kGap);
        if (m_context)
            fillPlace(x, draw());
        const double labels = m_y + m_picture.height;
        addText(name, UIFont::systemFontOfSize(13, UIFontWeight::Medium), kInk, {x, labels + 2}, kSheetPictureSide);
        addText(note, UIFont::systemFontOfSize(11), kPaleInk, {x, labels + 19}, kSheetPictureSide);
        if (++m_column == kColumns) {
            m_column = 0;
            m_y += rowHeight();
        }
    }

private:
    /// What has hardly any pixels, as an average or a histogram, fills its place.
    CGSize shownSize(CGSize size) const
    {
        const bool isTiny = size.width * 8 < m_picture.width || size.height * 8 < m_picture.height;
        return isTiny ? m_picture : fitting(size, m_picture);
    }
    double rowHeight() const { return m_picture.height + kLabelHeight + kGap; }

    void fillPlace(double x, const Result<UIImage>& picture)
    {
        if (picture) {
            drawInRect(*picture, *m_context, {{x, m_y}, shownSize(inPixels(*picture))});
            return;
        }
        m_context->setFillColor(kEmpty);
        m_context->fillRect({{x, m_y}, m_picture});
        addText(picture.error().cause, UIFont::systemFontOfSize(12), kPaleInk, {x + 8, m_y + 8}, m_picture.width - 16,
                4);
    }

    void addText(const std::string& text, const UIFont& font, const UIColor& color, CGPoint place, double width,
                 int lines = 1)
    {
        if (!m_context)
            return;
        TextStyle style{font};
        style.alignment = NSTextAlignment::Left;
        style.numberOfLines = lines;
        const double needed = lines == 1 ? layoutText(text, style).size.width : 0;
        if (needed > width)
            style.font.size *= std::max(width / needed * 0.999, kLeastFactor);
        UIBezierPath letters = layoutText(text, style, width).outlines;
        letters.applyTransform(CGAffineTransform::translation(place.x, place.y));
        m_context->setFillColor(color);
        m_context->fillPath(letters);
    }

    CGSize m_picture;
    std::optional<CGContext> m_context;
    double m_y = kGap;
    int m_column = 0;
};

/// What the filters work on.
struct Samples {
    UIImage photo;
    UIImage overlay;

    Result<UIImage> through(const FilterDescription& filter) const
    {
        if (filter.isGenerator)
            return generatedPicture(filter, filter.sample, photo.pixelSize());
        std::vector<UIImage> pictures{photo};
        for (std::size_t slot = 1; slot < static_cast<std::size_t>(filter.inputs); ++slot) {
            Result<UIImage> further = inputNamed(filter.inputNames.at(slot));
            if (!further)
                return further;
            pictures.push_back(std::move(*further));
        }
        return filteredPicture(filter, filter.sample, pictures);
    }

    Result<UIImage> inputNamed(std::string_view name) const
    {
        if (name == "table")
            return UIImage(lookupTable("lookup_amatorka.png"));
        const FilterDescription* voronoi = filterCatalogue().find("GPUImageJFAVoronoiFilter");
        if (name == "diagram" && voronoi)
            return filteredPicture(*voronoi, voronoi->sample, {scatteredPoints(photo.pixelSize())});
        return overlay;
    }
};

std::string joined(const std::vector<std::string>& texts)
{
    std::string all;
    for (const std::string& text : texts)
        all += (all.empty() ? "" : "  ") + text;
    return all;
}

void fill(Sheet& sheet, const std::vector<FilterFamily>& families, const Samples& samples)
{
    sheet.addPicture("The photo", "", [&]() -> Result<UIImage> { return samples.photo; });
    for (const FilterFamily& family : families) {
        sheet.addHeading(family.title());
        for (const FilterDescription* filter : family.filters) {
            sheet.addPicture(filter->className, joined(settingTexts(filter->sample)),
                             [&] { return samples.through(*filter); });
        }
    }
}

} // namespace

Result<UIImage> filterSheet(const std::vector<FilterFamily>& families, const UIImage& photo, const UIImage& overlay)
{
    const UIImage shown = reduced(photo);
    const Samples samples{shown, overlay ? reduced(overlay) : disc(shown.pixelSize())};
    if (!samples.photo || !samples.overlay)
        return kNoMemory;
    const CGSize picture = inPixels(samples.photo);
    Sheet measure(picture);
    fill(measure, families, samples);
    std::optional<CGContext> context = CGContext::image({Sheet::width(), measure.height()}, true, 1);
    if (!context)
        return kNoMemory;
    context->setFillColor(UIColor::white());
    context->fillRect({{}, {Sheet::width(), measure.height()}});
    Sheet sheet(picture, std::move(context));
    fill(sheet, families, samples);
    return sheet.picture();
}

} // namespace lamina
