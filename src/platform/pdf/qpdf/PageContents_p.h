#pragma once

#include "platform/pdf/PDFPage.h"
#include "platform/pdf/qpdf/FontSubset_p.h"

#include <string>

namespace lamina {

/// A number as documents write it: without exponent, with a point, as short as it can be.
std::string pdfNumber(double value);

/// Numbers with spaces between.
std::string pdfNumbers(std::initializer_list<double> values);

/// The operators that draw a page from the resources /Picture, /AllPlates and /Notes. `font`: where it has a text.
std::string pageContents(const PDFPage& page, const FontSubset* font);

} // namespace lamina
