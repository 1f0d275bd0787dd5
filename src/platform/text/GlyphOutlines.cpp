#include "platform/text/GlyphOutlines_p.h"

#include "platform/base/CGGeometry.h"

namespace lamina {

namespace {

/// Where the outline of one letter goes. HarfBuzz counts y upwards.
struct Pen {
    UIBezierPath& path;
    CGPoint origin;

    CGPoint at(float x, float y) const { return {origin.x + x, origin.y - y}; }
};

Pen& penOf(void* data)
{
    return *static_cast<Pen*>(data);
}

void moveTo(hb_draw_funcs_t*, void* pen, hb_draw_state_t*, float x, float y, void*)
{
    penOf(pen).path.moveToPoint(penOf(pen).at(x, y));
}

void lineTo(hb_draw_funcs_t*, void* pen, hb_draw_state_t*, float x, float y, void*)
{
    penOf(pen).path.addLineToPoint(penOf(pen).at(x, y));
}

/// The cubic curve that a quadratic one is: its controls lie two thirds of the way to the one control.
void quadraticTo(hb_draw_funcs_t*, void* pen, hb_draw_state_t* state, float cx, float cy, float x, float y, void*)
{
    const auto towards = [](float from, float control) { return from + (control - from) * 2 / 3; };
    penOf(pen).path.addCurveToPoint(penOf(pen).at(x, y),
                                    penOf(pen).at(towards(state->current_x, cx), towards(state->current_y, cy)),
                                    penOf(pen).at(towards(x, cx), towards(y, cy)));
}

void cubicTo(hb_draw_funcs_t*, void* pen, hb_draw_state_t*, float ax, float ay, float bx, float by, float x, float y,
             void*)
{
    penOf(pen).path.addCurveToPoint(penOf(pen).at(x, y), penOf(pen).at(ax, ay), penOf(pen).at(bx, by));
}

void closePath(hb_draw_funcs_t*, void* pen, hb_draw_state_t*, void*)
{
    penOf(pen).path.closePath();
}

hb_draw_funcs_t* drawFunctions(const TextLibrary& library)
{
    static hb_draw_funcs_t* const functions = [&] {
        hb_draw_funcs_t* const made = library.createDrawFuncs();
        library.setMoveTo(made, moveTo, nullptr, nullptr);
        library.setLineTo(made, lineTo, nullptr, nullptr);
        library.setQuadraticTo(made, quadraticTo, nullptr, nullptr);
        library.setCubicTo(made, cubicTo, nullptr, nullptr);
        library.setClosePath(made, closePath, nullptr, nullptr);
        return made;
    }();
    return functions;
}

/// A letter that no font has: a box as wide as the room that is left for it.
void addBox(CGPoint origin, double width, UIBezierPath& path)
{
    const CGRect outer = CGRect(origin.x, origin.y - width, width, width).insetBy(width / 8, width / 8);
    path.appendPath(UIBezierPath::withRect(outer));
    const CGRect inner = outer.insetBy(width / 12, width / 12);
    path.appendPath(UIBezierPath::polygon({{inner.minX(), inner.minY()},
                                           {inner.minX(), inner.maxY()},
                                           {inner.maxX(), inner.maxY()},
                                           {inner.maxX(), inner.minY()}}));
}

} // namespace

void addGlyphs(const TextLibrary& library, const PangoGlyphItem& run, double x, double baseline, UIBezierPath& path)
{
    PangoFont* const named = run.item->analysis.font;
    hb_font_t* const font = named ? library.getHbFont(named) : nullptr;
    for (int i = 0; i < run.glyphs->num_glyphs; ++i) {
        const PangoGlyphInfo& glyph = run.glyphs->glyphs[i];
        const CGPoint origin{x + glyph.geometry.x_offset, baseline + glyph.geometry.y_offset - run.y_offset};
        x += glyph.geometry.width;
        if (glyph.glyph == PANGO_GLYPH_EMPTY)
            continue;
        Pen pen{path, origin};
        if (!font || (glyph.glyph & PANGO_GLYPH_UNKNOWN_FLAG))
            addBox(origin, glyph.geometry.width, path);
        else
            library.getGlyphShape(font, glyph.glyph, drawFunctions(library), &pen);
    }
}

} // namespace lamina
