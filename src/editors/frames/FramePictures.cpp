#include "editors/frames/FramePictures.h"

#include "editors/frames/Frames.h"
#include "platform/image/drawing/CGContext.h"
#include "platform/image/drawing/UIBezierPath.h"
#include "platform/image/named/NamedPictures.h"

#include <functional>
#include <optional>

namespace lamina {

namespace {

/// How wide lines are, as a part of the picture's edge.
constexpr double kThumbnailCut = 1 / 30.0;
constexpr double kIconCut = 1 / 13.0;
constexpr double kPrintCut = 1 / 48.0;

constexpr UIColor kIconRest{58 / 255.0, 59 / 255.0, 62 / 255.0, 1};
constexpr UIColor kIconLit{139 / 255.0, 141 / 255.0, 148 / 255.0, 1};
constexpr UIColor kIconSelected{1, 95 / 255.0, 152 / 255.0, 1};

/// A picture whose user space is the canvas's, the slots' square filling it.
class FrameDrawing {
public:
    FrameDrawing(int frame, double side, double screenHeight, double edge)
        : m_shape(frameShape(frame, side, screenHeight))
    {
        if (m_shape.outlines.empty() || !isMeasurable(m_shape.slot.size))
            return;
        m_context = CGContext::image({edge, edge}, false, 0);
        if (!m_context)
            return;
        m_context->scaleCTM(edge / m_shape.slot.size.width, edge / m_shape.slot.size.height);
        m_context->translateCTM(-m_shape.slot.minX(), -m_shape.slot.minY());
    }

    const FrameShape& shape() const { return m_shape; }
    explicit operator bool() const { return m_context.has_value(); }
    CGContext& context() { return *m_context; }

    /// Draws the slots from the lowest on.
    void drawSlots(const std::function<void(std::size_t slot, const UIBezierPath& outline)>& draw)
    {
        for (const std::size_t slot : m_shape.order)
            draw(slot, m_shape.outlines[slot]);
    }

    /// `width` as a part of the edge.
    void strokeCuts(double width)
    {
        UIBezierPath cuts = frameCuts(m_shape);
        cuts.lineWidth = width * m_shape.slot.size.width;
        m_context->strokePath(cuts);
    }

    /// Takes away what lies along the cuts.
    void clearCuts(double width)
    {
        m_context->setBlendMode(CGBlendMode::Clear);
        strokeCuts(width);
    }

    void fill(const UIBezierPath& outline, const UIColor& color)
    {
        m_context->setFillColor(color);
        m_context->fillPath(outline);
    }

private:
    FrameShape m_shape;
    std::optional<CGContext> m_context;
};

} // namespace

FrameColors FrameColors::plain()
{
    return {{106 / 255.0, 108 / 255.0, 116 / 255.0, 1},
            {169 / 255.0, 171 / 255.0, 179 / 255.0, 1},
            {33 / 255.0, 33 / 255.0, 33 / 255.0, 1}};
}

FrameColors FrameColors::active()
{
    return {{216 / 255.0, 17 / 255.0, 89 / 255.0, 1}, {1, 157 / 255.0, 191 / 255.0, 1}, plain().cut};
}

UIImage frameThumbnail(int frame, double side, double screenHeight, double edge, const FrameColors& colors)
{
    FrameDrawing drawing(frame, side, screenHeight, edge);
    if (!drawing)
        return {};
    drawing.fill(UIBezierPath::withRect(drawing.shape().slot), colors.cut);
    drawing.drawSlots([&](std::size_t slot, const UIBezierPath& outline) {
        drawing.fill(outline, slot == 0 ? colors.first : colors.rest);
    });
    drawing.context().setStrokeColor(colors.cut);
    drawing.strokeCuts(kThumbnailCut);
    return drawing.context().makeUIImage();
}

UIImage frameSlotIcon(int frame, std::size_t slot, double side, double screenHeight, double edge, bool selected)
{
    FrameDrawing drawing(frame, side, screenHeight, edge);
    if (!drawing || slot >= drawing.shape().outlines.size())
        return {};
    drawing.drawSlots([&](std::size_t i, const UIBezierPath& outline) {
        drawing.fill(outline, i != slot ? kIconRest : selected ? kIconSelected : kIconLit);
    });
    drawing.clearCuts(kIconCut);
    return drawing.context().makeUIImage();
}

UIImage framePrint(int frame, double side, double screenHeight, double edge, std::span<const std::string_view> pictures)
{
    FrameDrawing drawing(frame, side, screenHeight, edge);
    if (!drawing)
        return {};
    drawing.drawSlots([&](std::size_t slot, const UIBezierPath& outline) {
        if (slot >= pictures.size())
            return;
        drawing.context().saveGState();
        drawing.context().clipToPath(outline);
        drawImageNamed(pictures[slot], drawing.context(), drawing.shape().slot);
        drawing.context().restoreGState();
    });
    drawing.clearCuts(kPrintCut);
    return drawing.context().makeUIImage();
}

} // namespace lamina
