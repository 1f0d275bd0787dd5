#pragma once

#include "export/functions/PDFStandardFunction.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/Result.h"
#include "platform/image/pixels/UIImage.h"
#include "platform/pdf/PDFPage.h"

#include <string>
#include <vector>

namespace lamina {

/// The picture's size on its page: points, or less where a point of it is less than 1/72 inch.
CGSize sizeOnPage(const UIImage& image, const PDFSettings& settings);

/// The picture alone.
PDFPage plainPage(CGSize picture);
/// The picture at half its size, with a note below it.
PDFPage notesPage(CGSize picture, const std::string& note);
/// The line of a note below a picture of this size.
PDFText noteText(CGSize picture, const std::string& note);
/// The eight marks, two at each corner of what lies `margin` within the page's edges.
std::vector<CGRect> cropMarks(CGSize page, double margin);

/// Writes the page under `name`, unless the settings say otherwise: its path.
Result<std::string> writePage(const UIImage& image, PDFPage page, const std::string& name, const PDFSettings& settings);

} // namespace lamina
