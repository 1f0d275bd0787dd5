#include "platform/text/TextLayout.h"

#include "platform/base/Log.h"
#include "platform/text/GlyphOutlines_p.h"
#include "platform/text/TextLibrary_p.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <mutex>

namespace lamina {

namespace {

constexpr double kUnitsPerPoint = PANGO_SCALE;
/// Beyond this a width is none: numbers of the layout must not overflow.
constexpr double kWidest = 50000;
constexpr double kLargestFont = 4000;

/// Fonts of the system, kept; one text is laid out at a time.
class Typesetter {
public:
    static Typesetter& shared()
    {
        static auto* const typesetter = new Typesetter; // never destroyed: threads may still ask
        return *typesetter;
    }

    TextLayout layout(const std::string& text, const TextStyle& style, double width);

    std::mutex mutex;
    std::string family;

private:
    struct LayoutDeleter {
        void operator()(PangoLayout* layout) const { TextLibrary::shared()->unref(layout); }
    };
    using Layout = std::unique_ptr<PangoLayout, LayoutDeleter>;

    bool prepare();
    /// To be freed by the caller.
    PangoFontDescription* description(const UIFont& font) const;
    void setFont(PangoLayout* layout, const UIFont& font) const;
    void limitLines(PangoLayout* layout, const TextStyle& style, double width) const;
    TextLayout outlined(PangoLayout* layout, const TextStyle& style, double width) const;

    const TextLibrary* m_library = nullptr;
    PangoContext* m_context = nullptr;
    bool m_prepared = false;
};

/// False where there is nothing to set texts with.
bool Typesetter::prepare()
{
    if (m_prepared)
        return m_context;
    m_prepared = true;
    m_library = TextLibrary::shared();
    if (!m_library)
        return false;
    PangoContext* const context = m_library->createContext(m_library->newFontMap());
    m_library->setRoundGlyphPositions(context, FALSE);
    PangoFontDescription* const any = description({});
    PangoFont* const font = m_library->loadFont(context, any);
    m_library->freeDescription(any);
    if (!font) {
        logError("there are no fonts");
        return false;
    }
    m_library->unref(font);
    m_context = context;
    return true;
}

PangoFontDescription* Typesetter::description(const UIFont& font) const
{
    PangoFontDescription* const made = m_library->newDescription();
    const std::string& named = font.family.empty() ? family : font.family;
    m_library->setFamily(made, named.empty() ? "sans-serif" : named.c_str());
    m_library->setWeight(made, static_cast<PangoWeight>(font.weight));
    m_library->setAbsoluteSize(made, std::min(font.size, kLargestFont) * kUnitsPerPoint);
    return made;
}

void Typesetter::setFont(PangoLayout* layout, const UIFont& font) const
{
    PangoFontDescription* const named = description(font);
    m_library->setFontDescription(layout, named);
    m_library->freeDescription(named);
}

PangoEllipsizeMode ellipsizeModeOf(const TextStyle& style)
{
    if (style.numberOfLines != 1 || style.lineBreakMode == NSLineBreakMode::TruncatingTail)
        return PANGO_ELLIPSIZE_END;
    return style.lineBreakMode == NSLineBreakMode::TruncatingHead ? PANGO_ELLIPSIZE_START : PANGO_ELLIPSIZE_MIDDLE;
}

/// The last of `count` lines ends here.
int bottomOfLine(const TextLibrary& library, PangoLayout* layout, int count)
{
    PangoLayoutIter* const place = library.getIter(layout);
    for (int line = 1; line < count; ++line)
        library.nextLine(place);
    int bottom = 0;
    library.getLineYRange(place, nullptr, &bottom);
    library.freeIter(place);
    return bottom;
}

void Typesetter::limitLines(PangoLayout* layout, const TextStyle& style, double width) const
{
    m_library->setWrap(layout, PANGO_WRAP_WORD_CHAR);
    m_library->setWidth(layout, static_cast<int>(std::ceil(std::min(width, kWidest) * kUnitsPerPoint)));
    if (style.numberOfLines == 1) {
        m_library->setEllipsize(layout, ellipsizeModeOf(style));
    } else if (style.numberOfLines > 1 && m_library->getLineCount(layout) > style.numberOfLines) {
        const int bottom = bottomOfLine(*m_library, layout, style.numberOfLines);
        m_library->setEllipsize(layout, PANGO_ELLIPSIZE_END);
        m_library->setHeight(layout, bottom);
    }
}

/// From a line's present left end to where it is to stand.
double shiftOf(const PangoRectangle& line, bool fromRight, NSTextAlignment alignment, double width)
{
    const double room = width * kUnitsPerPoint - line.width;
    double left = fromRight && alignment == NSTextAlignment::Natural ? room : 0;
    if (alignment == NSTextAlignment::Center)
        left = room / 2;
    else if (alignment == NSTextAlignment::Right)
        left = room;
    return left - line.x;
}

TextLayout Typesetter::outlined(PangoLayout* layout, const TextStyle& style, double width) const
{
    TextLayout result;
    PangoRectangle line;
    PangoLayoutIter* place = m_library->getIter(layout);
    do {
        m_library->getLineExtents(place, nullptr, &line);
        result.size.width = std::max(result.size.width, line.width / kUnitsPerPoint);
        result.size.height = (line.y + line.height) / kUnitsPerPoint;
    } while (m_library->nextLine(place));
    m_library->freeIter(place);
    result.lineCount = m_library->getLineCount(layout);
    result.truncated = m_library->isEllipsized(layout);

    const double room = width < kWidest ? width : result.size.width;
    place = m_library->getIter(layout);
    do {
        PangoLayoutRun* const run = m_library->getRun(place);
        if (!run)
            continue; // the end of a line
        m_library->getLineExtents(place, nullptr, &line);
        const bool fromRight = m_library->getDirection(m_library->getLine(place)) == PANGO_DIRECTION_RTL;
        PangoRectangle extents;
        m_library->getRunExtents(place, nullptr, &extents);
        addGlyphs(*m_library, *run, extents.x + shiftOf(line, fromRight, style.alignment, room),
                  m_library->getBaseline(place), result.outlines);
    } while (m_library->nextRun(place));
    m_library->freeIter(place);
    result.outlines.applyTransform(CGAffineTransform::scaling(1 / kUnitsPerPoint, 1 / kUnitsPerPoint));
    return result;
}

TextLayout Typesetter::layout(const std::string& text, const TextStyle& style, double width)
{
    if (!prepare())
        return {};
    // One line is the first paragraph's.
    const std::string shown = style.numberOfLines == 1 ? text.substr(0, text.find('\n')) : text;
    if (shown.empty())
        return {};
    const Layout layout(m_library->newLayout(m_context));
    char* const valid = m_library->makeValid(shown.data(), static_cast<gssize>(shown.size()));
    m_library->setText(layout.get(), valid, -1);
    m_library->free(valid);
    setFont(layout.get(), style.font);
    limitLines(layout.get(), style, width);
    return outlined(layout.get(), style, width);
}

} // namespace

TextLayout layoutText(const std::string& text, const TextStyle& style, double width)
{
    if (text.empty() || !(style.font.size > 0) || !(width > 0))
        return {};
    Typesetter& typesetter = Typesetter::shared();
    const std::scoped_lock lock(typesetter.mutex);
    return typesetter.layout(text, style, width);
}

void setSystemFontFamily(const std::string& family)
{
    Typesetter& typesetter = Typesetter::shared();
    const std::scoped_lock lock(typesetter.mutex);
    typesetter.family = family;
}

} // namespace lamina
