#include "platform/host/system/PictureClipboard.h"

#include "platform/base/Localization.h"
#include "platform/files/FileURL.h"
#include "platform/image/codecs/PictureFormats.h"

#include <QMimeData>
#include <QStringList>
#include <QUrl>

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>

namespace lamina {

namespace {

/// MIME types in which a picture may be taken; the best first.
const QStringList& exchangedTypes()
{
    static const QStringList types = [] {
        QStringList all;
        for (const PictureFormat& format : pictureFormats())
            for (const std::string_view type : format.mimeTypes)
                if (format.isExchanged)
                    all.append(QString::fromUtf8(type.data(), static_cast<qsizetype>(type.size())));
        return all;
    }();
    return types;
}

std::optional<PhotoSource> pastedPicture(const QMimeData& offered)
{
    for (const QString& type : exchangedTypes()) {
        const QByteArray bytes = offered.hasFormat(type) ? offered.data(type) : QByteArray();
        if (!bytes.isEmpty())
            return PhotoSource::fromBytes({bytes.begin(), bytes.end()}, localizedString("pasted picture"));
    }
    return std::nullopt;
}

} // namespace

bool offersPictures(const QMimeData& offered)
{
    return offered.hasUrls() ||
           std::ranges::any_of(exchangedTypes(), [&](const QString& type) { return offered.hasFormat(type); });
}

Result<std::vector<PhotoSource>> picturesOf(const QMimeData& offered)
{
    std::vector<PhotoSource> pictures;
    std::optional<Error> elsewhere;
    for (const QUrl& url : offered.urls()) {
        Result<std::string> path = pathOfFileURL(url.toEncoded().toStdString());
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
