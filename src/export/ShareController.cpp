#include "export/ShareController.h"

#include "export/LibrarySaving_p.h"
#include "export/SavingTypes.h"
#include "export/ShareSheet.h"
#include "imageops/ImageGeometry.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/DispatchQueue.h"
#include "platform/base/Localization.h"
#include "platform/base/Log.h"
#include "platform/base/NumberText.h"
#include "platform/image/codecs/PictureEncoding.h"
#include "platform/photos/AssetPicture.h"
#include "platform/photos/PHAsset.h"
#include "platform/view/FailureAlert.h"
#include "platform/view/PictureWork.h"
#include "platform/view/PresentationHost.h"
#include "platform/view/UIAlertController.h"
#include "platform/view/UIViewAnimation.h"

#include <QCoreApplication>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <utility>
#include <variant>
#include <vector>

namespace lamina {

namespace {

/// Pixels of the preview's longer side: a print of 480 points at three pixels each.
constexpr int kPreviewSide = 1440;

constexpr const char* kImageSaved = QT_TRANSLATE_NOOP("Lamina", "Your Image has been saved in Photos.");
constexpr const char* kSharePDF = QT_TRANSLATE_NOOP("Lamina", "Click on below icons to share PDF Document");

/// What a type says and does here, in the order of the types.
struct ShareType {
    const char* toast;
    enum { Nothing, BeforeSheet, AfterSheet } library; ///< whether and when it is put into the photo library
};
constexpr std::array<ShareType, kSavingTypeCount> kTypes{{
    {kImageSaved, ShareType::BeforeSheet},
    {kImageSaved, ShareType::BeforeSheet},
    {kSharePDF, ShareType::Nothing},
    {kSharePDF, ShareType::Nothing},
    {QT_TRANSLATE_NOOP("Lamina", "Click on below icons to share SVG"), ShareType::Nothing},
    {QT_TRANSLATE_NOOP("Lamina", "Your Video has been saved in Photos"), ShareType::AfterSheet},
    {kImageSaved, ShareType::Nothing}, // its exporter has put it there
}};

const ShareType& shareType(SavingtypeMethod type)
{
    return kTypes[indexOf(type)];
}

PromotionStep& promotionStep()
{
    static auto* const step = new PromotionStep;
    return *step;
}

std::string nameOf(const std::string& path)
{
    return std::filesystem::path(path).filename().string();
}

/// "Saved as beach.png.", a long name without its middle: its beginning and its end tell most.
std::string savedAs(const std::string& path)
{
    constexpr qsizetype kLongest = 28;
    constexpr qsizetype kEnd = 12;
    QString name = QString::fromStdString(nameOf(path));
    if (name.size() > kLongest)
        name = name.left(kLongest - kEnd - 1) + QStringLiteral("…") + name.right(kEnd);
    return localizedText("Saved as %1.", {name.toStdString()});
}

/// In the units of file managers, a thousand each: "2.4 MB", "87 kB".
std::string sizeText(std::uintmax_t bytes)
{
    constexpr double kKilo = 1e3;
    constexpr double kMega = 1e6;
    const auto size = static_cast<double>(bytes);
    return size < 999'500 ? fixedText(std::max(1.0, size / kKilo), 0) + " kB" : fixedText(size / kMega, 1) + " MB";
}

UIImage reduced(const UIImage& image)
{
    const IntSize size = image.pixelSize();
    const int longer = std::max(size.width, size.height);
    if (longer <= kPreviewSide)
        return image;
    const float factor = static_cast<float>(kPreviewSide) / static_cast<float>(longer);
    return scaleByFactor(UIImage(image.upright().cgImage()), factor);
}

} // namespace

ShareController::ShareController()
    : m_details(UIImage(), {}, SavingtypeMethod::jpg)
{
    setModalPresentationStyle(UIModalPresentationStyle::OverCurrentContext);
}

void ShareController::setDetails(const SaveModelDetails& details)
{
    m_details = details;
}

void ShareController::setPromotionStep(PromotionStep step)
{
    promotionStep() = std::move(step);
}

void ShareController::viewDidLoad()
{
    UIViewController::viewDidLoad();
    m_file = sharevideoURL();
    makePreview();
    finishJob();
    m_toastTimer = DispatchTimer(DispatchQueue::main(), kToastAfter, [this] {
        m_toastDue = true;
        showToast();
    });
    if (promotionStep().makeCoordinator)
        m_promotionTimer = DispatchTimer(DispatchQueue::main(), kPromotionAfter, [this] { DelayFun(); });
}

void ShareController::viewWillDisappear(bool animated)
{
    UIViewController::viewWillDisappear(animated);
    m_toastTimer.cancel();
}

void ShareController::backBtn()
{
    dismiss(true);
}

/// The library and the sheet, each in the place that it has for the type.
void ShareController::finishJob()
{
    const bool goesToLibrary = shareType(fetchData()).library != ShareType::Nothing && !m_details.placeWasChosen;
    const bool afterSheet = shareType(fetchData()).library == ShareType::AfterSheet;
    if (goesToLibrary && !afterSheet)
        saveToLibrary();
    shareNow();
    if (goesToLibrary && afterSheet)
        saveToLibrary();
    if (goesToLibrary)
        return;
    learnFile();
    announce(m_details.placeWasChosen ? savedAs(m_file) : localizedString(shareType(fetchData()).toast));
}

void ShareController::shareNow()
{
    if (presentedViewController() || isSheetOpen())
        return;
    if (fetchData() == SavingtypeMethod::jpg)
        shareImageSheet(shareImage());
    else if (!sharevideoURL().empty())
        follow(presentShareSheet(sharevideoURL(), *this));
    else
        presentFailure(*this, localizedString("Can’t share"), {{}, QT_TRANSLATE_NOOP("Lamina", "no file was written")});
}

void ShareController::shareImageSheet(const UIImage& image)
{
    if (!image)
        return;
    const Sheet sheet = presentShareSheet(image, *this);
    if (m_saving == Saving::Under)
        sheet->expectFile();
    else if (!m_file.empty())
        sheet->setFile(m_file);
    follow(sheet);
}

void ShareController::follow(const Sheet& sheet)
{
    m_sheet = sheet;
    std::erase_if(m_sheets, [](const auto& former) { return former.expired(); });
    m_sheets.push_back(sheet);
    ++m_work;
    const auto weak = weak_from_this();
    sheet->setCompletionWithItemsHandler([this, weak](const UIActivityResult& result) {
        if (const auto self = weak.lock())
            sheetEnded(result);
    });
    connect(sheet.get(), &UIActivityViewController::gone, this, [this] {
        m_sheet.reset();
        DelayFun();
    });
}

void ShareController::sheetEnded(const UIActivityResult& result)
{
    if (result.completed && result.type == UIActivityType::Copy)
        announce(localizedString("Copied."));
    else if (result.completed && result.type == UIActivityType::SaveCopy)
        announce(savedAs(result.path));
    --m_work;
    presentPromotionSoon();
}

void ShareController::saveToLibrary()
{
    m_saving = Saving::Under;
    storeInLibrary(m_details, [this, weak = weak_from_this()](const Result<std::string>& path) {
        if (const auto self = weak.lock())
            librarySaved(path);
    });
}

void ShareController::librarySaved(const Result<std::string>& path)
{
    if (path)
        announce(localizedString(shareType(fetchData()).toast));
    saved(path);
    if (!path)
        offerAnotherPlace(path.error());
    presentPromotionSoon();
}

/// Where the result is now; what has a file of its own keeps that.
void ShareController::saved(const Result<std::string>& path)
{
    m_saving = path || !sharevideoURL().empty() ? Saving::Done : Saving::Failed;
    if (const auto handler = path ? std::exchange(m_savedHandler, {}) : nullptr)
        handler();
    if (path && sharevideoURL().empty())
        m_file = *path;
    for (const auto& known : std::vector(m_sheets))
        if (const Sheet sheet = known.lock(); sheet && (!sheet->file() || !*sheet->file()))
            sheet->setFile(path);
    learnFile();
}

void ShareController::offerAnotherPlace(const Error& error)
{
    const auto ask = [this, weak = weak_from_this()] {
        if (const auto self = weak.lock())
            askForPlace();
    };
    presentOverTop(*this, UIAlertController::make(localizedString("Not saved in Photos"), failureText(error),
                                                  {{localizedString("Another place"), UIAlertActionStyle::Default, ask},
                                                   {localizedString("Cancel"), UIAlertActionStyle::Cancel, {}}}));
}

void ShareController::askForPlace()
{
    const auto screen = presentedViewController();
    (screen ? *screen : *this)
        .present(std::make_shared<UIDocumentPickerViewController>(
                     kSuggestedFileNames[indexOf(fetchData())],
                     [this, weak = weak_from_this()](const std::optional<UIDocumentPlace>& place) {
                         const auto self = weak.lock();
                         if (self && place)
                             saveAt(*place);
                     }),
                 true);
}

void ShareController::saveAt(const UIDocumentPlace& place)
{
    ++m_work;
    inBackground<Outcome>(
        weak_from_this(), [details = m_details, place] { return storeAtPlace(details, place); },
        [this, place](const Outcome& outcome) {
            --m_work;
            if (outcome) {
                announce(savedAs(place.path));
                saved(place.path);
            } else {
                offerAnotherPlace(outcome.error());
            }
            presentPromotionSoon();
        });
}

void ShareController::learnFile()
{
    emit savedChanged();
    if (m_file.empty())
        return;
    inBackground<std::string>(
        weak_from_this(),
        [path = m_file] {
            std::error_code failure;
            const std::uintmax_t bytes = std::filesystem::file_size(path, failure);
            return failure ? std::string() : sizeText(bytes);
        },
        [this](const std::string& text) {
            m_fileSize = QString::fromStdString(text);
            emit savedChanged();
        });
}

QString ShareController::headline() const
{
    constexpr std::array kWords{QT_TRANSLATE_NOOP("Lamina", "Saving"), QT_TRANSLATE_NOOP("Lamina", "Saved"),
                                QT_TRANSLATE_NOOP("Lamina", "Not saved")};
    // What the library is still to have a copy of is saved already.
    const bool hasFile = !sharevideoURL().empty();
    return QString::fromStdString(localizedString(kWords[static_cast<std::size_t>(hasFile ? Saving::Done : m_saving)]));
}

QString ShareController::fileName() const
{
    return QString::fromStdString(nameOf(m_file));
}

void ShareController::makePreview()
{
    const bool fromFile = fetchData() == SavingtypeMethod::tiff;
    const IntSize size = shareImage().pixelSize();
    if (!fromFile && std::max(size.width, size.height) <= kPreviewSide)
        return setPreview(shareImage());
    inBackground<UIImage>(
        weak_from_this(),
        [fromFile, path = sharevideoURL(), image = shareImage()] {
            if (!fromFile)
                return reduced(image);
            PHAsset asset;
            asset.path = path;
            const Result<UIImage> read =
                loadAssetPicture({.asset = asset, .targetSize = {kPreviewSide, kPreviewSide}}, nullptr);
            return read ? *read : UIImage();
        },
        [this](UIImage preview) { setPreview(std::move(preview)); });
}

void ShareController::setPreview(UIImage preview)
{
    m_preview = std::move(preview);
    emit previewChanged();
}

double ShareController::previewAspect() const
{
    constexpr double kLongest = 2;
    const CGSize size = m_preview.size();
    return m_preview ? std::clamp(size.width / size.height, 1 / kLongest, kLongest) : 1;
}

void ShareController::announce(const std::string& text)
{
    m_toastLbl = QString::fromStdString(text);
    emit toastChanged();
    showToast();
}

/// Once it is time and there is something to tell. The message stands for a second and then fades over three; where
/// nothing is to move whoever shows it takes it away.
void ShareController::showToast()
{
    if (!m_toastDue || m_toastLbl.isEmpty() || !isAppearing())
        return;
    m_toastAlpha = 1;
    if (PresentationHost::current()->showsMotion())
        animate(kToastFades, kToastStands, {.curve = UIViewAnimationCurve::EaseOut}, [this] { m_toastAlpha = 0; });
}

void ShareController::dismissToast()
{
    m_toastAlpha = 0;
}

bool ShareController::isSheetOpen() const
{
    return !m_sheet.expired();
}

/// Nobody presents it any more; it may still be on its way out.
bool ShareController::isLeft() const
{
    return !presentingViewController();
}

/// It waits until the sheet has gone.
void ShareController::DelayFun()
{
    m_promotionDue = m_promotionDue || !m_promotionTimer.isPending();
    if (!m_promotionDue || isSheetOpen() || isLeft() || m_promotionCoordinator || !promotionStep().makeCoordinator)
        return;
    m_promotionCoordinator = promotionStep().makeCoordinator();
    if (!m_promotionCoordinator)
        return;
    m_promotionCoordinator->fetchPromotion([this, weak = weak_from_this()](const auto& result) {
        if (const auto* const error = std::get_if<PromotionError>(&result))
            return logDebug("no promotion: " + error->domain + " " + std::to_string(error->code) + " " +
                            error->description);
        DispatchQueue::main().async([this, weak, promotion = std::get<PromotionData>(result)] {
            if (const auto self = weak.lock())
                takePromotion(promotion);
        });
    });
}

void ShareController::takePromotion(const PromotionData& promotion)
{
    if (std::exchange(m_promotionTaken, true))
        return;
    m_promotion = promotion;
    presentPromotion();
}

/// Over this screen at rest and nothing else: it waits for what is being saved, shared or asked. A screen that is left
/// meanwhile shows none.
void ShareController::presentPromotion()
{
    if (!m_promotion || m_saving == Saving::Under || m_work > 0 || isLeft() || !promotionStep().makeScreen)
        return;
    if (const auto above = presentedViewController()) {
        connect(above.get(), &QObject::destroyed, this, &ShareController::presentPromotionSoon, Qt::UniqueConnection);
        return;
    }
    if (const auto screen = promotionStep().makeScreen(*std::exchange(m_promotion, std::nullopt)))
        present(screen, true);
}

/// An alert that tells how something has ended comes first.
void ShareController::presentPromotionSoon()
{
    DispatchQueue::main().async([this, weak = weak_from_this()] {
        if (const auto self = weak.lock())
            presentPromotion();
    });
}

} // namespace lamina
