// Writes the documents that check_documents.py judges, beside the bytes of the pictures in them:
//
//   pdf_documents FOLDER           FOLDER/NAME.pdf, FOLDER/PICTURE.bin
//   pdf_documents FOLDER NAME      that document alone

#include "TestPictures.h"
#include "export/functions/PDFPrintFunction.h"
#include "export/functions/PDFStandardFunction.h"
#include "export/functions/PrintProfile.h"
#include "platform/files/FileWriting.h"

#include <algorithm>
#include <cstdio>
#include <functional>
#include <map>
#include <string>
#include <vector>

namespace lamina::test {
namespace {

CGImage inks(int width, int height, const CGColorSpace& space)
{
    const CGImageLayout layout = packedLayout({width, height}, bitmapInfo(CGImageAlphaInfo::None), 8, 32, space);
    return makePicture(layout, [](int x, int y) {
        const auto ramp = [](int value) { return static_cast<std::uint8_t>(value % 256); };
        return Rgba{ramp(7 * x), ramp(5 * y), ramp(3 * x + y), ramp(x * y)};
    });
}

std::map<std::string, UIImage> pictures()
{
    const Result<CGColorSpace> coated = printColorSpace();
    const CGImageLayout deep = packedLayout({20, 10}, bitmapInfo(CGImageAlphaInfo::None), 16, 48);
    std::vector<std::uint8_t> deepBytes(deep.byteCount());
    std::generate(deepBytes.begin(), deepBytes.end(), [i = 0]() mutable { return static_cast<std::uint8_t>(i += 37); });
    return {
        {"chart", UIImage(chartPicture(19, 13, CGImageAlphaInfo::NoneSkipLast))},
        {"clear", UIImage(chartPicture(19, 20))},
        {"dot", UIImage(solidPicture(1, 1, {10, 200, 30, 255}))},
        {"tall", UIImage(noisePicture(1, 5000, CGImageAlphaInfo::NoneSkipLast))},
        {"noise", UIImage(noisePicture(700, 400, CGImageAlphaInfo::NoneSkipLast))},
        {"ramp", UIImage(rampPicture(600, 504, 40))},
        {"gray", UIImage(bytePicture(16, 9, [](int x, int y) { return 16 * x + y; }))},
        {"inks", UIImage(inks(33, 21, CGColorSpace::deviceCMYK()))},
        {"coated", UIImage(inks(240, 180, coated ? *coated : CGColorSpace::deviceCMYK()))},
        {"deep", UIImage(pictureFromBytes(deep, deepBytes))},
        {"turned", UIImage(chartPicture(19, 13, CGImageAlphaInfo::NoneSkipLast), 2, UIImageOrientation::Right)},
    };
}

using Documents = std::map<std::string, std::function<Result<std::string>(const PDFSettings&)>>;

Documents documents(const std::map<std::string, UIImage>& all)
{
    Documents documents;
    const auto plain = [](const UIImage& image) {
        return [&](const PDFSettings& how) { return PDFStandardFunction::shared().createPDF(image, how); };
    };
    for (const auto& [name, picture] : all)
        documents["plain-" + name] = plain(picture);
    documents["notes-standard"] = [&](const PDFSettings& how) {
        return PDFStandardFunction::shared().createNotesPDF(all.at("ramp"), kPDFNoteText, how);
    };
    const PDFPrintFunction& print = PDFPrintFunction::shared();
    for (const std::string name : {"ramp", "coated"}) {
        const UIImage& image = all.at(name);
        documents["notes-" + name] = [&](const PDFSettings& how) {
            return print.createNotesPDF(image, kPDFNoteText, how);
        };
        documents["cropnote-" + name] = [&](const PDFSettings& how) {
            return print.createCropAndNotePDF(image, 20, kPDFNoteText, how);
        };
        documents["print-" + name] = plain(image);
        for (const char* kind : {"crop-", "fine-"})
            documents[kind + name] = [&](const PDFSettings& how) { return print.createCropMarksPDF(image, 20, how); };
    }
    return documents;
}

bool writePictures(const std::map<std::string, UIImage>& all, const std::string& folder)
{
    for (const auto& [name, picture] : all)
        if (!writeFileAtomically(std::string(folder).append("/").append(name).append(".bin"),
                                 bytesOf(picture.cgImage())))
            return false;
    const auto data = PDFPrintFunction::shared().pdfData(all.at("chart"));
    return data && writeFileAtomically(folder + "/data-chart.pdf", *data);
}

/// `only`: the one that is wanted; empty: all.
int writeDocuments(const std::string& folder, const std::string& only)
{
    const std::map<std::string, UIImage> all = pictures();
    if (only.empty() && !writePictures(all, folder))
        return 1;
    for (const auto& [name, create] : documents(all)) {
        PDFSettings settings;
        settings.place = {folder, name + ".pdf"};
        settings.forPrint = name.starts_with("print");
        settings.pixelsPerInch = name.starts_with("fine") ? 300 : 72;
        if (!only.empty() && name != only)
            continue;
        if (const Result<std::string> path = create(settings); !path) {
            std::fputs(path.error().message().c_str(), stderr);
            return 1;
        }
    }
    return 0;
}

} // namespace
} // namespace lamina::test

int main(int count, char** arguments)
{
    return lamina::test::writeDocuments(arguments[1], count > 2 ? arguments[2] : "");
}
