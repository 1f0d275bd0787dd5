#include "platform/host/system/PictureClipboard.h"

#include "platform/base/Localization.h"
#include "platform/host/system/LocalFile.h"

#include <QMimeData>
#include <QUrl>

#include <algorithm>
#include <array>
#include <optional>

namespace lamina {

namespace {

/// Those that lose nothing where others have to turn the picture into something first; the best first.
const std::array kByteFormats = {
    QStringLiteral("image/png"),  QStringLiteral("image/jpeg"), QStringLiteral("image/webp"),
    QStringLiteral("image/tiff"), QStringLiteral("image/bmp"),
};

std::optional<PhotoSource> pastedPicture(const QMimeData& offered)
{
    for (const QString& format : kByteFormats) {
        const QByteArray bytes = offered.hasFormat(format) ? offered.data(format) : QByteArray();
        if (!bytes.isEmpty())
            return PhotoSource::fromBytes({bytes.begin(), bytes.end()}, localizedString("pasted picture"));
    }
    return std::nullopt;
}

} // namespace

bool offersPictures(const QMimeData& offered)
{
    return offered.hasUrls() || std::any_of(kByteFormats.begin(), kByteFormats.end(),
                                            [&](const QString& format) { return offered.hasFormat(format); });
}

Result<std::vector<PhotoSource>> picturesOf(const QMimeData& offered)
{
    std::vector<PhotoSource> pictures;
    std::optional<Error> elsewhere;
    for (const QUrl& url : offered.urls()) {
        Result<std::string> path = localFilePath(url);
        if (path)
            pictures.push_back(PhotoSource::fromFile(*std::move(path)));
        else if (!elsewhere)
            elsewhere = path.error();
    }
    if (!pictures.empty())
        return pictures;
    // A picture dragged out of a browser comes as its address and as its bytes.
    if (std::optional<PhotoSource> pasted = pastedPicture(offered))
        return std::vector{*std::move(pasted)};
    if (elsewhere)
        return *elsewhere;
    return pictures;
}

} // namespace lamina
