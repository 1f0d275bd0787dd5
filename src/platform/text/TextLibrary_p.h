#pragma once

#include <hb.h>
#include <pango/pangofc-font.h>
#include <pango/pangoft2.h>

namespace lamina {

/// The functions of Pango and of what it stands on that we use; loaded when the first text is laid out.
struct TextLibrary {
    /// Null when it is not there.
    static const TextLibrary* shared();

    decltype(&g_object_unref) unref;
    decltype(&g_free) free;
    decltype(&g_utf8_make_valid) makeValid;

    decltype(&pango_ft2_font_map_new) newFontMap;
    decltype(&pango_font_map_create_context) createContext;
    decltype(&pango_context_set_round_glyph_positions) setRoundGlyphPositions;
    decltype(&pango_context_load_font) loadFont;
    decltype(&pango_font_description_new) newDescription;
    decltype(&pango_font_description_free) freeDescription;
    decltype(&pango_font_description_set_family) setFamily;
    decltype(&pango_font_description_set_weight) setWeight;
    decltype(&pango_font_description_set_absolute_size) setAbsoluteSize;

    decltype(&pango_layout_new) newLayout;
    decltype(&pango_layout_set_text) setText;
    decltype(&pango_layout_set_font_description) setFontDescription;
    decltype(&pango_layout_set_width) setWidth;
    decltype(&pango_layout_set_height) setHeight;
    decltype(&pango_layout_set_wrap) setWrap;
    decltype(&pango_layout_set_ellipsize) setEllipsize;
    decltype(&pango_layout_is_ellipsized) isEllipsized;
    decltype(&pango_layout_get_line_count) getLineCount;

    decltype(&pango_layout_get_iter) getIter;
    decltype(&pango_layout_iter_free) freeIter;
    decltype(&pango_layout_iter_next_run) nextRun;
    decltype(&pango_layout_iter_next_line) nextLine;
    decltype(&pango_layout_iter_get_run_readonly) getRun;
    decltype(&pango_layout_iter_get_line_readonly) getLine;
    decltype(&pango_layout_iter_get_run_extents) getRunExtents;
    decltype(&pango_layout_iter_get_line_extents) getLineExtents;
    decltype(&pango_layout_iter_get_line_yrange) getLineYRange;
    decltype(&pango_layout_iter_get_baseline) getBaseline;
    decltype(&pango_layout_line_get_resolved_direction) getDirection;

    decltype(&pango_font_get_hb_font) getHbFont;
    decltype(&hb_font_get_glyph_shape) getGlyphShape;
    decltype(&hb_draw_funcs_create) createDrawFuncs;
    decltype(&hb_draw_funcs_set_move_to_func) setMoveTo;
    decltype(&hb_draw_funcs_set_line_to_func) setLineTo;
    decltype(&hb_draw_funcs_set_quadratic_to_func) setQuadraticTo;
    decltype(&hb_draw_funcs_set_cubic_to_func) setCubicTo;
    decltype(&hb_draw_funcs_set_close_path_func) setClosePath;
};

} // namespace lamina
