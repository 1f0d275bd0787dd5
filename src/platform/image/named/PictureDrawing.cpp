#include "platform/image/named/PictureDrawing_p.h"

#include "platform/base/CGGeometry.h"
#include "platform/base/UIColor.h"
#include "platform/image/drawing/UIBezierPath.h"

#include <algorithm>
#include <cstddef>

namespace lamina {

namespace {

/// Reads a drawing's numbers in turn and does what its verbs say.
class PictureReader {
public:
    PictureReader(CGContext& context, const float* numbers)
        : m_context(context)
        , m_next(numbers)
    {
    }

    void take(char verb)
    {
        switch (verb) {
        case 'P':
            m_path = {};
            break;
        case 'M':
            m_path.moveToPoint(point());
            break;
        case 'L':
            m_path.addLineToPoint(point());
            break;
        case 'C':
            addCurve();
            break;
        case 'Z':
            m_path.closePath();
            break;
        case 'F':
        case 'E':
            fill(verb == 'E');
            break;
        case 'S':
            stroke();
            break;
        case 'G':
            m_context.saveGState();
            m_context.setAlpha(number());
            m_context.beginTransparencyLayer();
            break;
        case 'g':
            m_context.endTransparencyLayer();
            m_context.restoreGState();
            break;
        default:
            break;
        }
    }

private:
    double number() { return *m_next++; }
    CGPoint point()
    {
        const double x = number();
        return {x, number()};
    }
    UIColor color()
    {
        UIColor color;
        for (double* component : {&color.red, &color.green, &color.blue, &color.alpha})
            *component = number();
        return color;
    }

    void addCurve()
    {
        const CGPoint control1 = point();
        const CGPoint control2 = point();
        m_path.addCurveToPoint(point(), control1, control2);
    }

    void fill(bool evenOdd)
    {
        m_context.setFillColor(color());
        m_path.usesEvenOddFillRule = evenOdd;
        m_context.fillPath(m_path);
    }

    void stroke()
    {
        m_context.setStrokeColor(color());
        m_path.lineWidth = number();
        m_path.lineCap = static_cast<UIBezierPath::LineCap>(number());
        m_path.lineJoin = static_cast<UIBezierPath::LineJoin>(number());
        m_path.miterLimit = number();
        m_path.lineDashPhase = number();
        const auto dashes = static_cast<std::ptrdiff_t>(number());
        m_path.lineDash.assign(m_next, m_next + dashes);
        m_next += dashes;
        m_context.strokePath(m_path);
    }

    CGContext& m_context;
    const float* m_next;
    UIBezierPath m_path;
};

} // namespace

const PictureRecord* findPicture(std::string_view name)
{
    const auto& records = kPictureTable.records;
    const auto found = std::lower_bound(records.begin(), records.end(), name,
                                        [](const PictureRecord& record, auto wanted) { return record.name < wanted; });
    return found != records.end() && found->name == name ? &*found : nullptr;
}

void drawPicture(const PictureRecord& record, CGContext& context)
{
    PictureReader reader(context, &kPictureTable.numbers[record.firstNumber]);
    for (const char verb : kPictureTable.verbs.substr(record.firstVerb, record.verbCount))
        reader.take(verb);
}

} // namespace lamina
