#include "platform/pdf/PDFWriting.h"

#include "platform/base/Causes.h"
#include "platform/files/FileCauses.h"
#include "platform/files/FileWriting.h"
#include "platform/image/pixels/ColorConversion.h"
#include "platform/pdf/DocumentDate_p.h"
#include "platform/pdf/PDFModule_p.h"
#include "platform/pdf/PictureSamples_p.h"
#include "platform/pdf/SystemFont_p.h"

#include <cerrno>
#include <cmath>
#include <cstdio>
#include <memory>
#include <span>
#include <utility>

namespace lamina {

namespace {

struct CloseFile {
    void operator()(std::FILE* file) const { std::fclose(file); }
};

bool isPossible(const PDFPage& page)
{
    return std::isfinite(page.size.width) && std::isfinite(page.size.height) && page.size.width > 0 &&
           page.size.height > 0 && page.picture.isMeasurable();
}

/// The profile by which the picture's numbers are read; none in a document for one printing condition.
std::span<const std::uint8_t> profileOf(const PictureSamples& samples, const PDFPage& page)
{
    if (samples.picture.colors != PDFColors::CMYK)
        return sRGBProfile();
    const std::span<const std::uint8_t> profile = samples.space.iccProfile();
    const bool usable = !page.intent && profileModel(profile) == CGColorSpace::Model::CMYK;
    return usable ? profile : std::span<const std::uint8_t>();
}

/// Makes the document and hands it to the sink.
Outcome makeDocument(const UIImage& picture, const PDFPage& page, const PDFWatch& watch, const PDFSink& sink)
{
    if (!picture)
        return Error{{}, "there is no picture"};
    if (!isPossible(page))
        return Error{{}, "such a page can't be written"};
    const Result<const PDFModule*> module = pdfModule();
    if (!module)
        return module.error();
    Result<std::vector<std::uint8_t>> font = std::vector<std::uint8_t>();
    if (page.text)
        font = readNoteFont();
    if (!font)
        return font.error();
    if (watch.cancelled && *watch.cancelled)
        return Error{{}, cause::kCancelled};
    const Result<PictureSamples> samples = pictureSamples(picture, watch);
    if (!samples)
        return samples.error();
    if (page.intent && samples->picture.colors != PDFColors::CMYK)
        return Error{{}, "the picture is not in the colours of print"};
    return (*module)->write({&page, samples->picture, samples->alpha, profileOf(*samples, page), *font, documentDate()},
                            sink);
}

/// By the path that is given, as it comes.
Outcome fillFile(const std::string& path, const std::function<Outcome(const PDFSink&)>& make)
{
    std::unique_ptr<std::FILE, CloseFile> file(std::fopen(path.c_str(), "wbe"));
    if (!file)
        return Error{path, writingFailure(errno)};
    Outcome made = make([&](std::span<const std::uint8_t> bytes) -> Outcome {
        if (std::fwrite(bytes.data(), 1, bytes.size(), file.get()) != bytes.size())
            return Error{path, writingFailure(errno)};
        return success();
    });
    if (made && std::fclose(file.release()) != 0)
        return Error{path, writingFailure(errno)};
    return made;
}

} // namespace

Outcome writePDF(const UIImage& picture, const PDFPage& page, const std::string& path, const PDFWatch& watch)
{
    return writeFileAtomically(path, [&](const std::string& descriptorPath) {
        return fillFile(descriptorPath, [&](const PDFSink& sink) { return makeDocument(picture, page, watch, sink); });
    });
}

Result<std::vector<std::uint8_t>> pdfBytes(const UIImage& picture, const PDFPage& page, const PDFWatch& watch)
{
    std::vector<std::uint8_t> bytes;
    const Outcome made = makeDocument(picture, page, watch, [&](std::span<const std::uint8_t> more) {
        bytes.insert(bytes.end(), more.begin(), more.end());
        return success();
    });
    if (!made)
        return made.error();
    return bytes;
}

} // namespace lamina
