#include "export/ExporterViewController.h"

#include "export/ExportScenes.h"
#include "export/SaveModelDetails.h"
#include "export/SavingTypeController.h"
#include "export/SavingTypes.h"
#include "export/functions/ClipThumbnail.h"
#include "hud/BusyPanel.h"
#include "hud/SVProgressHUD.h"
#include "platform/base/Causes.h"
#include "platform/base/Localization.h"
#include "platform/base/Log.h"
#include "platform/view/FailureAlert.h"
#include "platform/view/PictureWork.h"
#include "platform/view/UIDocumentPickerViewController.h"
#include "platform/view/UIStoryboard.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <utility>
#include <vector>

namespace lamina {

namespace {

/// The panel is told of steps that can be seen.
constexpr double kProgressStep = 0.01;

/// Hands the panel every step that can be seen.
std::function<void(double)> shownProgress()
{
    return [shown = 0.0](double share) mutable {
        if (share < shown + kProgressStep)
            return;
        shown = share;
        SVProgressHUD::setProgress(share);
    };
}

} // namespace

/// One export, as it was asked for.
struct ExporterViewController::Job {
    Job(SavingtypeMethod type_, ExportSource source_, const ExportOptions& options_, ExportPlace place_)
        : type(type_)
        , source(std::move(source_))
        , options(options_)
        , place(std::move(place_))
    {
    }

    SavingtypeMethod type;
    ExportSource source;
    ExportOptions options;
    ExportPlace place;
    std::atomic<bool> cancelled = false;
};

ExporterViewController::ExporterViewController(SavingtypeMethod type, double pictureHeight)
    : SheetViewController(kSheetRadius)
    , m_saveType(type)
    , m_pictureHeight(pictureHeight)
{
}

ExporterViewController::~ExporterViewController()
{
    abandonWork();
}

void ExporterViewController::viewWillDisappear(bool animated)
{
    SheetViewController::viewWillDisappear(animated);
    abandonWork();
}

/// Nobody waits for a frame or a result any more.
void ExporterViewController::abandonWork()
{
    if (m_gone)
        *m_gone = true;
    if (!m_job)
        return;
    std::exchange(m_job, nullptr)->cancelled = true;
    SVProgressHUD::dismiss();
}

void ExporterViewController::setSavingDelegate(std::weak_ptr<DataPassingToShareController> delegate)
{
    m_savingDelegate = std::move(delegate);
}

QString ExporterViewController::typeTitle() const
{
    return QString::fromStdString(localizedString(kSavingTypeTitles[indexOf(m_saveType)]));
}

QString ExporterViewController::typeIcon() const
{
    return QString::fromUtf8(kSavingTypeIcons[indexOf(m_saveType)]);
}

QString ExporterViewController::infoLbl() const
{
    if (m_shareImage)
        return {};
    return QString::fromStdString(
        localizedString(QT_TRANSLATE_NOOP("Lamina", "The audio and video won’t function with the current export type. "
                                                    "Try downloading the file as an MP4 video.")));
}

IntSize ExporterViewController::filePixels() const
{
    return m_tobeSavedimage.pixelSize();
}

QString ExporterViewController::filePixelsText() const
{
    const IntSize pixels = filePixels();
    if (pixels.width < 1 || pixels.height < 1)
        return {};
    return QString::fromStdString(localizedText(QT_TRANSLATE_NOOP("Lamina", "%1 × %2 pixels"),
                                                {std::to_string(pixels.width), std::to_string(pixels.height)}));
}

bool ExporterViewController::isReady() const
{
    return m_tobeSavedimage && !m_job && isClosable();
}

void ExporterViewController::viewDidLoad()
{
    SheetViewController::viewDidLoad();
    emit inputChanged();
    if (!m_shareImage)
        return loadFrame();
    setSheetHeight(m_pictureHeight);
    m_tobeSavedimage = m_shareImage;
    takeWorkingImage();
}

void ExporterViewController::takeWorkingImage()
{
    emit optionsChanged();
    emit stateChanged();
}

void ExporterViewController::loadFrame()
{
    if (m_videoUrl.empty())
        return;
    m_loading = true;
    m_gone = std::make_shared<std::atomic<bool>>(false);
    emit stateChanged();
    inBackground<Result<UIImage>>(
        weak_from_this(),
        [path = m_videoUrl, gone = m_gone] { return thumbnailOfVideo(path, kClipThumbnailTime, gone.get()); },
        [this](const Result<UIImage>& frame) { frameArrived(frame); });
}

void ExporterViewController::frameArrived(const Result<UIImage>& frame)
{
    if (*m_gone)
        return;
    m_loading = false;
    if (frame) {
        m_tobeSavedimage = *frame;
        takeWorkingImage();
        return;
    }
    emit stateChanged();
    presentFailure(*this, localizedString(QT_TRANSLATE_NOOP("Lamina", "Can’t open the clip")), frame.error());
}

void ExporterViewController::toggle(CheckMark& mark, bool& option)
{
    option = mark.toggle();
    emit optionsChanged();
}

void ExporterViewController::handlefileTap()
{
    if (!isClosable() || presentedViewController())
        return;
    const auto chooser = UIStoryboard::named(kMainStoryboard)->instantiate<SavingTypeController>(exportscene::kChooser);
    if (!chooser)
        return;
    chooser->setDelegate(std::static_pointer_cast<ExporterViewController>(shared_from_this()));
    chooser->setSelectedIndex(saveTypeNumber());
    chooser->setIsimage(static_cast<bool>(m_shareImage));
    chooser->setModalPresentationStyle(UIModalPresentationStyle::OverCurrentContext);
    present(chooser, true);
}

void ExporterViewController::selectedtypeWithType(SavingtypeMethod type)
{
    if (type == m_saveType || !isClosable())
        return;
    leave([self = std::static_pointer_cast<ExporterViewController>(shared_from_this()), type] {
        self->clearBackground();
        if (const auto heard = self->delegate())
            heard->methodCallWithType(type);
    });
}

void ExporterViewController::downloadbtnAction()
{
    if (isReady())
        startExport({});
}

ExportSource ExporterViewController::source() const
{
    return {m_tobeSavedimage, m_shareImage ? std::string() : m_videoUrl};
}

void ExporterViewController::startExport(const ExportPlace& place)
{
    m_job = std::make_shared<Job>(m_saveType, source(), options(), place);
    emit stateChanged();
    emit closableChanged();
    showBusyPanel([job = m_job] { job->cancelled = true; });
    inBackground<Result<ExportedFile>>(
        weak_from_this(),
        [job = m_job] {
            return runExport(job->type, job->source, job->options, job->place,
                             {.progress = shownProgress(), .cancelled = &job->cancelled});
        },
        [this, job = m_job](const Result<ExportedFile>& result) { exportEnded(job, result); });
}

void ExporterViewController::exportEnded(const std::shared_ptr<Job>& job, const Result<ExportedFile>& result)
{
    if (m_job != job)
        return;
    m_job = nullptr;
    emit stateChanged();
    emit closableChanged();
    if (!result && result.error().cause != cause::kCancelled)
        return showFailure(*job, result.error());
    SVProgressHUD::dismiss();
    if (result)
        handOver(*job, *result);
}

void ExporterViewController::handOver(const Job& job, const ExportedFile& file)
{
    SaveModelDetails details(file.picture, file.path, job.type);
    if (!file.bytes.empty())
        details.bytes = std::make_shared<const std::vector<std::uint8_t>>(file.bytes);
    details.quality = job.options.quality;
    details.placeWasChosen = job.place.isChosen();
    if (const auto heard = savingDelegate())
        heard->dataPassingDetails(details);
}

void ExporterViewController::showFailure(const Job& job, const Error& error)
{
    logError(error.message());
    // Where the file could not be written another place may do; what can't be read, or made, is no better there.
    if (error.subject.empty() || error.subject == job.source.clip)
        return SVProgressHUD::showFailure(error);
    const auto another = [weak = weak_from_this()] {
        if (const auto self = std::static_pointer_cast<ExporterViewController>(weak.lock()))
            self->chooseAnotherPlace();
    };
    SVProgressHUD::showFailure(error, {}, localizedString(QT_TRANSLATE_NOOP("Lamina", "Another place…")), another);
}

void ExporterViewController::chooseAnotherPlace()
{
    if (!isReady() || presentedViewController())
        return;
    const auto answer = [weak = weak_from_this()](const std::optional<UIDocumentPlace>& place) {
        const auto self = std::static_pointer_cast<ExporterViewController>(weak.lock());
        if (!self || !place || !self->isReady())
            return;
        const std::filesystem::path path(place->path);
        self->startExport({path.parent_path().string(), path.filename().string()});
    };
    present(std::make_shared<UIDocumentPickerViewController>(kSuggestedFileNames[indexOf(m_saveType)], answer), true);
}

} // namespace lamina
