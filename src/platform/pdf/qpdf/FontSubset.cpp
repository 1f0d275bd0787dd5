#include "platform/pdf/qpdf/FontSubset_p.h"

#include <cstddef>
#include <hb-ot.h>
#include <hb-subset.h>
#include <hb.h>
#include <memory>
#include <set>
#include <zlib.h>

namespace lamina {

namespace {

/// Gives an object of HarfBuzz back.
template <auto destroy>
struct Release {
    template <class Object>
    void operator()(Object* object) const
    {
        destroy(object);
    }
};
using Blob = std::unique_ptr<hb_blob_t, Release<hb_blob_destroy>>;
using Face = std::unique_ptr<hb_face_t, Release<hb_face_destroy>>;
using Font = std::unique_ptr<hb_font_t, Release<hb_font_destroy>>;
using Letters = std::unique_ptr<hb_buffer_t, Release<hb_buffer_destroy>>;
using SubsetInput = std::unique_ptr<hb_subset_input_t, Release<hb_subset_input_destroy>>;

Face faceOf(std::span<const std::uint8_t> font)
{
    const Blob blob(hb_blob_create_or_fail(reinterpret_cast<const char*>(font.data()),
                                           static_cast<unsigned>(font.size()), HB_MEMORY_MODE_READONLY, nullptr,
                                           nullptr));
    return Face(blob ? hb_face_create(blob.get(), 0) : nullptr);
}

std::span<const hb_glyph_info_t> infos(hb_buffer_t* letters)
{
    unsigned count = 0;
    const hb_glyph_info_t* first = hb_buffer_get_glyph_infos(letters, &count);
    return {first, count};
}

/// What each glyph stands for: the letters from its own to those of the next one.
std::map<unsigned, std::string> textsOf(std::span<const hb_glyph_info_t> glyphs, const std::string& text)
{
    std::set<std::size_t> begins{text.size()};
    for (const hb_glyph_info_t& glyph : glyphs)
        begins.insert(glyph.cluster);
    std::map<unsigned, std::string> texts;
    for (const hb_glyph_info_t& glyph : glyphs)
        texts.try_emplace(glyph.codepoint, text, glyph.cluster, *begins.upper_bound(glyph.cluster) - glyph.cluster);
    return texts;
}

/// Sets the line. `unit` makes thousandths of the font's own measures.
void setLine(hb_font_t* font, double unit, const std::string& text, FontSubset& subset)
{
    const Letters letters(hb_buffer_create());
    hb_buffer_add_utf8(letters.get(), text.data(), static_cast<int>(text.size()), 0, -1);
    hb_buffer_guess_segment_properties(letters.get());
    hb_shape(font, letters.get(), nullptr, 0);
    const std::span<const hb_glyph_info_t> glyphs = infos(letters.get());
    const hb_glyph_position_t* const positions = hb_buffer_get_glyph_positions(letters.get(), nullptr);
    for (std::size_t i = 0; i < glyphs.size(); ++i) {
        const unsigned number = glyphs[i].codepoint;
        subset.line.push_back({number, positions[i].x_advance * unit, positions[i].x_offset * unit});
        subset.widths[number] = hb_font_get_glyph_h_advance(font, number) * unit;
    }
    subset.texts = textsOf(glyphs, text);
}

void takeMeasures(hb_font_t* font, double unit, FontSubset& subset)
{
    hb_font_extents_t extents{};
    hb_font_get_h_extents(font, &extents);
    subset.ascent = extents.ascender * unit;
    subset.descent = extents.descender * unit;
    hb_position_t capHeight = extents.ascender;
    hb_ot_metrics_get_position(font, HB_OT_METRICS_TAG_CAP_HEIGHT, &capHeight);
    subset.capHeight = capHeight * unit;

    constexpr unsigned kBoxPlace = 36; // of xMin in the table "head"
    const Blob head(hb_face_reference_table(hb_font_get_face(font), HB_TAG('h', 'e', 'a', 'd')));
    unsigned size = 0;
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(hb_blob_get_data(head.get(), &size));
    for (std::size_t i = 0; i < subset.box.size() && size >= kBoxPlace + 8; ++i) {
        const std::uint8_t* value = bytes + kBoxPlace + 2 * i;
        subset.box[i] = static_cast<std::int16_t>(value[0] << 8 | value[1]) * unit;
    }
}

/// The glyphs of the line alone, under their own numbers, and what draws them.
SubsetInput subsetInput(const FontSubset& subset)
{
    SubsetInput input(hb_subset_input_create_or_fail());
    if (!input)
        return input;
    for (const auto& [number, width] : subset.widths)
        hb_set_add(hb_subset_input_glyph_set(input.get()), number);
    hb_subset_input_set_flags(input.get(), HB_SUBSET_FLAGS_RETAIN_GIDS | HB_SUBSET_FLAGS_NO_HINTING);
    hb_set_t* dropped = hb_subset_input_set(input.get(), HB_SUBSET_SETS_DROP_TABLE_TAG);
    for (const hb_tag_t table : {HB_TAG('c', 'm', 'a', 'p'), HB_TAG('n', 'a', 'm', 'e'), HB_TAG('p', 'o', 's', 't'),
                                 HB_TAG('O', 'S', '/', '2'), HB_TAG('G', 'D', 'E', 'F'), HB_TAG('G', 'P', 'O', 'S'),
                                 HB_TAG('G', 'S', 'U', 'B')})
        hb_set_add(dropped, table);
    return input;
}

/// Six letters that tell parts of the same font apart.
std::string partName(const std::string& program)
{
    uLong value = crc32_z(0, reinterpret_cast<const Bytef*>(program.data()), program.size());
    std::string name;
    for (int i = 0; i < 6; ++i, value /= 26)
        name.push_back(static_cast<char>('A' + value % 26));
    return name;
}

} // namespace

Result<FontSubset> subsetFont(std::span<const std::uint8_t> font, const std::string& text)
{
    const Error damaged{{}, "the font Liberation Sans Bold is damaged"};
    const Face face = faceOf(font);
    if (!face || hb_face_get_glyph_count(face.get()) == 0)
        return damaged;
    const Font shaper(hb_font_create(face.get()));
    const double unit = 1000.0 / hb_face_get_upem(face.get());
    FontSubset subset;
    setLine(shaper.get(), unit, text, subset);
    takeMeasures(shaper.get(), unit, subset);
    const SubsetInput input = subsetInput(subset);
    const Face part(input ? hb_subset_or_fail(face.get(), input.get()) : nullptr);
    if (!part)
        return damaged;
    const Blob program(hb_face_reference_blob(part.get()));
    unsigned size = 0;
    const char* bytes = hb_blob_get_data(program.get(), &size);
    subset.program.assign(bytes, size);
    subset.name = partName(subset.program) + "+LiberationSans-Bold";
    return subset;
}

} // namespace lamina
