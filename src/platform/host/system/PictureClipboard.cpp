#include "platform/host/system/PictureClipboard.h"

#include "platform/base/Localization.h"
#include "platform/files/FileURL.h"
#include "platform/image/codecs/PictureEncoding.h"
#include "platform/image/codecs/PictureFormats.h"
#include "platform/photos/PhotoLoading.h"

#include <QStringList>
#include <QUrl>

#include <algorithm>
#include <cstdint>
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

Result<CopiedThing> copiedThing(const UIImage& image, const std::string& filePath)
{
    CopiedThing thing{{}, filePath};
    UIImage picture = image;
    if (!picture && pictureFormatForFileName(filePath)) {
        Result<UIImage> read = loadUpright(PhotoSource::fromFile(filePath), {});
        if (!read)
            return read.error();
        picture = *std::move(read);
    }
    if (!picture)
        return thing;
    const Result<std::vector<std::uint8_t>> png =
        encodePNG(picture.upright().cgImage(), localizedString("The picture"));
    if (!png)
        return png.error();
    thing.png = QByteArray(reinterpret_cast<const char*>(png->data()), static_cast<qsizetype>(png->size()));
    return thing;
}

std::unique_ptr<QMimeData> mimeDataOf(const CopiedThing& thing)
{
    auto data = std::make_unique<QMimeData>();
    if (!thing.png.isEmpty())
        data->setData(QStringLiteral("image/png"), thing.png);
    if (!thing.filePath.empty()) {
        const QByteArray url = QByteArray::fromStdString(fileURLOfPath(thing.filePath));
        data->setData(QStringLiteral("text/uri-list"), url + "\r\n");
        data->setData(QStringLiteral("x-special/gnome-copied-files"), "copy\n" + url);
    }
    return data;
}

} // namespace lamina
