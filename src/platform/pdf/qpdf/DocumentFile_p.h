#pragma once

#include "platform/base/Result.h"
#include "platform/pdf/PDFModule_p.h"

#include <functional>
#include <map>
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFObjGen.hh>
#include <string>

namespace lamina {

/// An error of a callback on its way through code that knows exceptions alone.
struct CallbackFailure {
    Error error;
};

/// Streams whose bytes are made while they are written. The object after each is its length.
using WrittenStreams = std::map<QPDFObjGen, std::function<Outcome(const PDFSink&)>>;

/// Writes a document's objects with a plain table of places, and a checksum as its ID. qpdf's own writer would gather
/// each stream in memory, twice over: more than a large picture takes. Throws CallbackFailure.
void writeDocument(QPDF& document, const std::string& version, const WrittenStreams& streams, const PDFSink& sink);

} // namespace lamina
