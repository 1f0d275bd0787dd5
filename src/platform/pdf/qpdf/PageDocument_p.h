#pragma once

#include "platform/pdf/PDFModule_p.h"
#include "platform/pdf/PDFPage.h"
#include "platform/pdf/qpdf/DocumentFile_p.h"

#include <qpdf/QPDF.hh>
#include <string>

namespace lamina {

/// A document of one page as objects, ready to be written.
class PageDocument {
public:
    /// `parts` must live as long as this. Throws CallbackFailure.
    explicit PageDocument(const PDFParts& parts);

    void write(const PDFSink& sink);

private:
    QPDFObjectHandle add(const std::string& object);
    QPDFObjectHandle addStream(const std::string& bytes, const std::string& entries);
    QPDFObjectHandle colorSpace();
    QPDFObjectHandle addSamples(const PDFSamples& samples, const QPDFObjectHandle& space);
    QPDFObjectHandle addPicture();
    QPDFObjectHandle addFont(const struct FontSubset& font);
    void addPage();
    void addIntent();
    void addInfo();

    const PDFParts& m_parts;
    const PDFPage& m_page;
    QPDF m_document;
    WrittenStreams m_streams;
};

} // namespace lamina
