#include "platform/text/TextLibrary_p.h"

#include "platform/base/LazyLibrary.h"
#include "platform/base/Log.h"

namespace lamina {

namespace {

void findLayoutFunctions(LazyLibrary& library, TextLibrary& table)
{
    library.find(table.newLayout, "pango_layout_new");
    library.find(table.setText, "pango_layout_set_text");
    library.find(table.setFontDescription, "pango_layout_set_font_description");
    library.find(table.setWidth, "pango_layout_set_width");
    library.find(table.setHeight, "pango_layout_set_height");
    library.find(table.setWrap, "pango_layout_set_wrap");
    library.find(table.setEllipsize, "pango_layout_set_ellipsize");
    library.find(table.isEllipsized, "pango_layout_is_ellipsized");
    library.find(table.getLineCount, "pango_layout_get_line_count");
    library.find(table.getIter, "pango_layout_get_iter");
    library.find(table.freeIter, "pango_layout_iter_free");
    library.find(table.nextRun, "pango_layout_iter_next_run");
    library.find(table.nextLine, "pango_layout_iter_next_line");
    library.find(table.getRun, "pango_layout_iter_get_run_readonly");
    library.find(table.getLine, "pango_layout_iter_get_line_readonly");
    library.find(table.getRunExtents, "pango_layout_iter_get_run_extents");
    library.find(table.getLineExtents, "pango_layout_iter_get_line_extents");
    library.find(table.getLineYRange, "pango_layout_iter_get_line_yrange");
    library.find(table.getBaseline, "pango_layout_iter_get_baseline");
    library.find(table.getDirection, "pango_layout_line_get_resolved_direction");
}

void findFontFunctions(LazyLibrary& library, TextLibrary& table)
{
    library.find(table.newFontMap, "pango_ft2_font_map_new");
    library.find(table.createContext, "pango_font_map_create_context");
    library.find(table.setRoundGlyphPositions, "pango_context_set_round_glyph_positions");
    library.find(table.loadFont, "pango_context_load_font");
    library.find(table.newDescription, "pango_font_description_new");
    library.find(table.freeDescription, "pango_font_description_free");
    library.find(table.setFamily, "pango_font_description_set_family");
    library.find(table.setWeight, "pango_font_description_set_weight");
    library.find(table.setAbsoluteSize, "pango_font_description_set_absolute_size");
    library.find(table.getHbFont, "pango_font_get_hb_font");
    library.find(table.getGlyphShape, "hb_font_get_glyph_shape");
    library.find(table.createDrawFuncs, "hb_draw_funcs_create");
    library.find(table.setMoveTo, "hb_draw_funcs_set_move_to_func");
    library.find(table.setLineTo, "hb_draw_funcs_set_line_to_func");
    library.find(table.setQuadraticTo, "hb_draw_funcs_set_quadratic_to_func");
    library.find(table.setCubicTo, "hb_draw_funcs_set_cubic_to_func");
    library.find(table.setClosePath, "hb_draw_funcs_set_close_path_func");
}

} // namespace

const TextLibrary* TextLibrary::shared()
{
    static const auto loaded = [] {
        struct {
            TextLibrary table{};
            bool complete = false;
        } result;
        LazyLibrary library("libpangoft2-1.0.so.0"); // finds what it stands on too: Pango, GLib, HarfBuzz
        library.find(result.table.unref, "g_object_unref");
        library.find(result.table.free, "g_free");
        library.find(result.table.makeValid, "g_utf8_make_valid");
        findFontFunctions(library, result.table);
        findLayoutFunctions(library, result.table);
        result.complete = library.complete();
        if (!result.complete)
            logError("there is no library for text (libpangoft2-1.0.so.0)");
        return result;
    }();
    return loaded.complete ? &loaded.table : nullptr;
}

} // namespace lamina
