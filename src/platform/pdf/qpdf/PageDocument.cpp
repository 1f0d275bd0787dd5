#include "platform/pdf/qpdf/PageDocument_p.h"

#include "platform/base/CGGeometry.h"
#include "platform/base/Result.h"
#include "platform/pdf/qpdf/FontSubset_p.h"
#include "platform/pdf/qpdf/PageContents_p.h"

#include <optional>
#include <qpdf/QPDFObjectHandle.hh>
#include <qpdf/QUtil.hh>
#include <string_view>
#include <utility>

namespace lamina {

namespace {

QPDFObjectHandle text(const std::string& utf8)
{
    return QPDFObjectHandle::newUnicodeString(utf8);
}

QPDFObjectHandle name(const std::string& word)
{
    return QPDFObjectHandle::newName("/" + word);
}

/// On the page, whose y runs up.
QPDFObjectHandle box(const CGRect& rect, const PDFPage& page)
{
    return QPDFObjectHandle::parse(
        "[" + pdfNumbers({rect.minX(), page.size.height - rect.maxY(), rect.maxX(), page.size.height - rect.minY()}) +
        "]");
}

std::string hex(std::string_view bytes)
{
    return QUtil::hex_encode(std::string(bytes));
}

/// 256 greys as R G B.
std::string greyTable()
{
    std::string table;
    for (int value = 0; value < 256; ++value)
        table.append(3, static_cast<char>(value));
    return table;
}

/// What each glyph stands for, for whoever reads or copies the text.
std::string unicodeMap(const FontSubset& font)
{
    std::string map = "/CIDInit /ProcSet findresource begin 12 dict begin begincmap\n"
                      "/CIDSystemInfo << /Registry (Adobe) /Ordering (UCS) /Supplement 0 >> def\n"
                      "/CMapName /Adobe-Identity-UCS def /CMapType 2 def\n"
                      "1 begincodespacerange <0000> <FFFF> endcodespacerange\n";
    for (const auto& [number, letters] : font.texts) {
        const std::string code{static_cast<char>(number >> 8), static_cast<char>(number & 0xFF)};
        const std::string utf16 = QUtil::utf8_to_utf16(letters).substr(2); // after the mark of its byte order
        map += "1 beginbfchar <" + hex(code) + "> <" + hex(utf16) + "> endbfchar\n";
    }
    return map + "endcmap CMapName currentdict /CMap defineresource pop end end\n";
}

std::string widths(const FontSubset& font)
{
    std::string list = "[";
    for (const auto& [number, width] : font.widths)
        list += std::to_string(number) + " [" + pdfNumber(width) + "] ";
    return list + "]";
}

} // namespace

PageDocument::PageDocument(const PDFParts& parts)
    : m_parts(parts)
    , m_page(*parts.page)
{
    m_document.emptyPDF();
    addPage();
    if (m_page.intent)
        addIntent();
    addInfo();
}

void PageDocument::write(const PDFSink& sink)
{
    writeDocument(m_document, m_page.intent ? "1.3" : "1.4", m_streams, sink);
}

/// An object of its own.
QPDFObjectHandle PageDocument::add(const std::string& object)
{
    return m_document.makeIndirectObject(QPDFObjectHandle::parse(&m_document, object));
}

QPDFObjectHandle PageDocument::addStream(const std::string& bytes, const std::string& entries)
{
    QPDFObjectHandle stream = m_document.newStream(bytes);
    stream.replaceDict(QPDFObjectHandle::parse(&m_document, "<< " + entries + " >>"));
    stream.getDict().replaceKey("/Length", QPDFObjectHandle::newInteger(static_cast<long long>(bytes.size())));
    return stream;
}

/// What the picture's numbers mean. Greys are a table of sRGB's, since they have no profile of their own.
QPDFObjectHandle PageDocument::colorSpace()
{
    const bool inks = m_parts.picture.colors == PDFColors::CMYK;
    const char* const device = inks ? "/DeviceCMYK" : "/DeviceRGB";
    if (m_parts.profile.empty())
        return QPDFObjectHandle::newName(device);
    const std::string profile(m_parts.profile.begin(), m_parts.profile.end());
    const std::string count = inks ? "4" : "3";
    const QPDFObjectHandle stream = addStream(profile, "/N " + count + " /Alternate " + device);
    const QPDFObjectHandle space =
        m_document.makeIndirectObject(QPDFObjectHandle::newArray({name("ICCBased"), stream}));
    if (m_parts.picture.colors != PDFColors::Gray)
        return space;
    return QPDFObjectHandle::newArray(
        {name("Indexed"), space, QPDFObjectHandle::newInteger(255), QPDFObjectHandle::newString(greyTable())});
}

QPDFObjectHandle PageDocument::addSamples(const PDFSamples& samples, const QPDFObjectHandle& space)
{
    QPDFObjectHandle stream = m_document.newStream();
    QPDFObjectHandle length = add("0"); // is known, and written, behind it
    const std::string width = std::to_string(samples.size.width);
    std::string entries = "/Type /XObject /Subtype /Image /BitsPerComponent 8 /Filter /FlateDecode /Width " + width +
                          " /Height " + std::to_string(samples.size.height);
    if (samples.predicted)
        entries += " /DecodeParms << /Predictor 15 /Columns " + width + " /Colors " +
                   std::to_string(componentCount(samples.colors)) + " >>";
    stream.replaceDict(QPDFObjectHandle::parse("<< " + entries + " >>"));
    stream.getDict().replaceKey("/ColorSpace", space);
    stream.getDict().replaceKey("/Length", length);
    m_streams[stream.getObjGen()] = samples.write;
    return stream;
}

QPDFObjectHandle PageDocument::addPicture()
{
    QPDFObjectHandle picture = addSamples(m_parts.picture, colorSpace());
    if (m_parts.alpha)
        picture.getDict().replaceKey("/SMask", addSamples(*m_parts.alpha, name("DeviceGray")));
    return picture;
}

QPDFObjectHandle PageDocument::addFont(const FontSubset& font)
{
    const std::string fontName = " /FontName /" + font.name;
    QPDFObjectHandle program = addStream(font.program, "/Length1 " + std::to_string(font.program.size()));
    constexpr const char* kOwnLetters = "4"; // numbered by the font itself and by no alphabet
    QPDFObjectHandle descriptor = add("<< /Type /FontDescriptor" + fontName + " /Flags " + kOwnLetters +
                                      " /ItalicAngle 0 /StemV 140 /FontBBox [" +
                                      pdfNumbers({font.box[0], font.box[1], font.box[2], font.box[3]}) + "] /Ascent " +
                                      pdfNumber(font.ascent) + " /Descent " + pdfNumber(font.descent) + " /CapHeight " +
                                      pdfNumber(font.capHeight) + " /FontFile2 " + program.unparse() + " >>");
    QPDFObjectHandle letters =
        add("<< /Type /Font /Subtype /CIDFontType2 /BaseFont /" + font.name +
            " /CIDSystemInfo << /Registry (Adobe) /Ordering (Identity) /Supplement 0 >> /CIDToGIDMap /Identity /W " +
            widths(font) + " /FontDescriptor " + descriptor.unparse() + " >>");
    return add("<< /Type /Font /Subtype /Type0 /BaseFont /" + font.name + " /Encoding /Identity-H /DescendantFonts [" +
               letters.unparse() + "] /ToUnicode " + addStream(unicodeMap(font), {}).unparse() + " >>");
}

void PageDocument::addPage()
{
    QPDFObjectHandle resources =
        QPDFObjectHandle::parse(&m_document, "<< /XObject << /Picture " + addPicture().unparse() + " >> >>");
    std::optional<FontSubset> font;
    if (m_page.text) {
        Result<FontSubset> subset = subsetFont(m_parts.font, m_page.text->text);
        if (!subset)
            throw CallbackFailure{subset.error()};
        font = *std::move(subset);
        resources.replaceKey("/Font",
                             QPDFObjectHandle::parse(&m_document, "<< /Notes " + addFont(*font).unparse() + " >>"));
    }
    if (m_page.intent && !m_page.marks.empty()) // the colour of every plate; where it can't be, black
        resources.replaceKey("/ColorSpace",
                             QPDFObjectHandle::parse("<< /AllPlates [/Separation /All /DeviceCMYK << /FunctionType 2 "
                                                     "/Domain [0 1] /C0 [0 0 0 0] /C1 [1 1 1 1] /N 1 >>] >>"));

    QPDFObjectHandle page = add("<< /Type /Page >>");
    page.replaceKey("/MediaBox", box({{}, m_page.size}, m_page));
    if (m_page.trim) {
        page.replaceKey("/TrimBox", box(*m_page.trim, m_page));
        page.replaceKey("/BleedBox", box(*m_page.trim, m_page));
    }
    if (m_parts.alpha)
        page.replaceKey("/Group", QPDFObjectHandle::parse("<< /S /Transparency /CS /DeviceRGB >>"));
    page.replaceKey("/Resources", resources);
    page.replaceKey("/Contents", addStream(pageContents(m_page, font ? &*font : nullptr), {}));
    m_document.addPage(page, true);
}

void PageDocument::addIntent()
{
    const PDFOutputIntent& intent = *m_page.intent;
    const std::string profile(intent.deflatedProfile.begin(), intent.deflatedProfile.end());
    QPDFObjectHandle entry = QPDFObjectHandle::parse("<< /Type /OutputIntent /S /GTS_PDFX >>");
    entry.replaceKey("/OutputConditionIdentifier", text(intent.condition));
    entry.replaceKey("/RegistryName", text(intent.registry));
    entry.replaceKey("/Info", text(intent.info));
    entry.replaceKey("/DestOutputProfile", addStream(profile, "/N 4 /Alternate /DeviceCMYK /Filter /FlateDecode"));
    m_document.getRoot().replaceKey("/OutputIntents", QPDFObjectHandle::newArray({entry}));
}

void PageDocument::addInfo()
{
    QPDFObjectHandle info = QPDFObjectHandle::parse("<< /Creator (Lamina) /Trapped /False >>");
    info.replaceKey("/Producer", text(std::string("Lamina ") + LAMINA_VERSION));
    info.replaceKey("/Title", text(m_page.title));
    info.replaceKey("/CreationDate", text(m_parts.date));
    info.replaceKey("/ModDate", text(m_parts.date));
    if (m_page.intent) {
        info.replaceKey("/GTS_PDFXVersion", text("PDF/X-1:2001"));
        info.replaceKey("/GTS_PDFXConformance", text("PDF/X-1a:2001"));
    }
    m_document.getTrailer().replaceKey("/Info", m_document.makeIndirectObject(info));
}

} // namespace lamina
