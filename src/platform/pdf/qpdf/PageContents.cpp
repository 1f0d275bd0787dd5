#include "platform/pdf/qpdf/PageContents_p.h"

#include "platform/base/CGGeometry.h"

#include <charconv>
#include <cmath>
#include <string_view>

namespace lamina {

namespace {

/// Left, bottom, width and height on a page whose y runs up.
std::string flipped(const CGRect& rect, const PDFPage& page)
{
    return pdfNumbers({rect.minX(), page.size.height - rect.maxY(), rect.size.width, rect.size.height});
}

std::string pictureContents(const PDFPage& page)
{
    const CGRect& rect = page.picture;
    return "q " + pdfNumbers({rect.size.width, 0, 0, rect.size.height, rect.minX(), page.size.height - rect.maxY()}) +
           " cm /Picture Do Q\n";
}

std::string markContents(const PDFPage& page)
{
    std::string contents = page.intent ? "q /AllPlates CS 1 SCN 1 w\n" : "q 0 G 1 w\n";
    for (const CGRect& mark : page.marks)
        contents += flipped(mark, page) + " re S\n";
    return contents + "Q\n";
}

std::string hexDigits(unsigned number)
{
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    std::string digits;
    for (int shift = 12; shift >= 0; shift -= 4)
        digits.push_back(kDigits[number >> shift & 15]);
    return digits;
}

/// Glyphs with what the next one is moved by, to the left, beside its own width.
std::string lineContents(const FontSubset& font)
{
    std::string contents = "[";
    double pending = 0;
    for (const FontSubset::Glyph& glyph : font.line) {
        const double move = pending - glyph.offset;
        if (std::abs(move) > 1e-6)
            contents += pdfNumber(move);
        contents += "<" + hexDigits(glyph.number) + ">";
        pending = glyph.offset + font.widths.at(glyph.number) - glyph.advance;
    }
    return contents + "] TJ";
}

std::string textContents(const PDFPage& page, const FontSubset& font)
{
    const PDFText& text = *page.text;
    const double baseline = page.size.height - text.rect.minY() - text.size * font.ascent / 1000;
    return "q " + flipped(text.rect, page) + " re W n\n" + (page.intent ? "0 0 0 1 k" : "0 g") + "\nBT /Notes " +
           pdfNumber(text.size) + " Tf " + pdfNumbers({text.rect.minX(), baseline}) + " Td " + lineContents(font) +
           " ET Q\n";
}

} // namespace

std::string pdfNumber(double value)
{
    char digits[400]; // the most that a double has without exponent
    const auto end = std::to_chars(digits, digits + sizeof digits, value, std::chars_format::fixed).ptr;
    return {digits, end};
}

std::string pdfNumbers(std::initializer_list<double> values)
{
    std::string numbers;
    for (const double value : values)
        numbers += (numbers.empty() ? "" : " ") + pdfNumber(value);
    return numbers;
}

std::string pageContents(const PDFPage& page, const FontSubset* font)
{
    std::string contents = pictureContents(page);
    if (!page.marks.empty())
        contents += markContents(page);
    if (page.text && font)
        contents += textContents(page, *font);
    return contents;
}

} // namespace lamina
