// Draws every screen into pictures, for whoever judges the look: lamina_shots FOLDER [WIDTHxHEIGHT...]
#include "CameraShots.h"
#include "CollageShots.h"
#include "LiveShots.h"
#include "OwnHome.h"
#include "SamplePhotos.h"
#include "Shooter.h"
#include "WindowDriver.h"

#include "app/IncomingRequests.h"
#include "app/ViewController.h"
#include "editors/colorpicker/InfColorPickerController.h"
#include "export/ExportScenes.h"
#include "export/JPGController.h"
#include "export/MP4VideoController.h"
#include "export/PDFPrintController.h"
#include "export/PNGController.h"
#include "export/SVGController.h"
#include "export/SavingTypeController.h"
#include "export/ShareController.h"
#include "hud/ProgressOverlay.h"
#include "hud/SVProgressHUD.h"
#include "imageops/ImageGeometry.h"
#include "picker/YMSAlbumPickerViewController.h"
#include "picker/YMSPhotoPickerViewController.h"
#include "picker/YMSSinglePhotoViewController.h"
#include "platform/base/UIColor.h"
#include "platform/files/FileWriting.h"
#include "platform/image/codecs/PictureDecoding.h"
#include "platform/media/VideoExport.h"
#include "platform/photos/LibraryEngine_p.h"
#include "platform/photos/PictureFolders.h"
#include "platform/view/UIAlertController.h"
#include "platform/view/UIStoryboard.h"
#include "promotion/InterstitialPresentController.h"
#include "promotion/PromotionInstallation.h"

#include <QDir>
#include <QDragEnterEvent>
#include <QGuiApplication>
#include <QMimeData>
#include <QTemporaryDir>
#include <QUrl>

#include <cstdint>
#include <cstdio>
#include <utility>
#include <vector>

using namespace lamina;
using namespace lamina::test;

namespace {

const std::string kFirst = LAMINA_SAMPLES "/sea-sunset.jpg";
const std::string kSecond = LAMINA_SAMPLES "/city-rain.jpg";

/// The exporters' sheets over the editor, each with something chosen, and the two lists that they open.
class ExportShooter {
public:
    ExportShooter(Shooter& shooter, UIViewController& editor, UIImage picture)
        : m_shooter(shooter)
        , m_editor(editor)
        , m_picture(std::move(picture))
    {
    }

    void shootAll()
    {
        openFor<JPGController>(SavingtypeMethod::jpg, [](JPGController& sheet) { sheet.qualitySlideraction(0.55F); });
        shoot("save-jpg");
        openFor<PNGController>(SavingtypeMethod::png, [](PNGController& sheet) {
            sheet.sizeSliderAction(1.5F);
            sheet.handletrasnparentTap();
        });
        shoot("save-png");
        open(SavingtypeMethod::pdfStandard);
        shoot("save-pdf");
        const auto print = openFor<PDFPrintController>(SavingtypeMethod::pdfPrint, [](PDFPrintController& sheet) {
            sheet.handlecropTap();
            sheet.handleppiTap();
        });
        print->handleprofileTap();
        m_shooter.shoot("color-profile");
        print->profileSelected(1);
        shoot("save-print");
        openFor<SVGController>(SavingtypeMethod::svg, [](SVGController& sheet) { sheet.handletrasnparentTap(); });
        shoot("save-svg");
        openFor<MP4VideoController>(SavingtypeMethod::mp4, [](auto& sheet) { sheet.qualitySliderAction(0.8F); });
        shoot("save-mp4");
        open(SavingtypeMethod::tiff)->handlefileTap();
        m_shooter.shoot("type-of-tiff");
        m_shooter.driver().press(Qt::Key_Escape);
        shoot("save-tiff");
        shootClip();
    }

private:
    std::shared_ptr<ExporterViewController> open(SavingtypeMethod type, const std::string& clip = {})
    {
        const auto sheet = UIStoryboard::named(kMainStoryboard)
                               ->instantiate<ExporterViewController>(kExporterScenes[static_cast<int>(type)]);
        if (clip.empty())
            sheet->setShareImage(m_picture);
        sheet->setVideoUrl(clip);
        sheet->setModalPresentationStyle(UIModalPresentationStyle::OverCurrentContext);
        m_editor.present(sheet, true);
        m_shooter.driver().settle();
        return sheet;
    }
    template <class Sheet, class Choose>
    std::shared_ptr<Sheet> openFor(SavingtypeMethod type, const Choose& choose)
    {
        auto sheet = std::dynamic_pointer_cast<Sheet>(open(type));
        choose(*sheet);
        return sheet;
    }
    void shoot(const char* name)
    {
        m_shooter.shoot(name);
        m_shooter.driver().press(Qt::Key_Escape);
    }
    /// A film has another row suggested, and other types say what becomes of it.
    void shootClip()
    {
        const QTemporaryDir folder;
        const std::string clip = folder.filePath(QStringLiteral("clip.mp4")).toStdString();
        if (!writeStillVideo({.picture = m_picture, .seconds = 0.1, .soundFile = {}}, clip))
            return;
        const auto sheet = open(SavingtypeMethod::png, clip);
        WindowDriver::waitUntil([&] { return !sheet->isLoading(); });
        shoot("save-clip-as-png");
    }

    Shooter& m_shooter;
    UIViewController& m_editor;
    UIImage m_picture;
};

/// The end of an export: what was saved, and what can be done with it on a machine that can do everything.
void shootShare(Shooter& shooter, UIViewController& editor, const SaveModelDetails& details, const char* sheetName,
                const char* name)
{
    WindowDriver& driver = shooter.driver();
    const auto share = UIStoryboard::named(kMainStoryboard)->instantiate<ShareController>(exportscene::kShare);
    share->setDetails(details);
    share->setModalPresentationStyle(UIModalPresentationStyle::OverCurrentContext);
    editor.present(share, true);
    const auto told = [&] { return share->toastAlpha().value() > 0 && !share->fileSize().isEmpty(); };
    if (!driver.waitFor<UIActivityViewController>() || !WindowDriver::waitUntil(told))
        return;
    using Type = UIActivityType;
    driver.top<UIActivityViewController>()->setServed(
        {Type::OpenWith, Type::Mail, Type::Copy, Type::SaveCopy, Type::ShowInFolder, Type::Print});
    shooter.shoot(sheetName);
    driver.press(Qt::Key_Escape);
    shooter.shoot(name);
    driver.press(Qt::Key_Escape);
}

void shootShares(Shooter& shooter, UIViewController& editor, const UIImage& picture)
{
    const QString folder = QDir::homePath() + QStringLiteral("/Documents/Lamina");
    const std::string file = (folder + QStringLiteral("/UntitledPdf.pdf")).toStdString();
    if (!QDir().mkpath(folder) || !writeFileAtomically(file, std::vector<std::uint8_t>(2'345'678)))
        return;
    shootShare(shooter, editor, {picture, {}, SavingtypeMethod::jpg}, "send-jpg", "share-jpg");
    shootShare(shooter, editor, {picture, file, SavingtypeMethod::pdfPrint}, "send-pdf", "share-pdf");
    editor.present(std::make_shared<UIDocumentPickerViewController>("UntitledPdf.pdf", nullptr), true);
    WindowDriver::waitUntil([&] { return shooter.driver().item(QStringLiteral("Save here")) != nullptr; }, 5);
    shooter.shoot("place"); // no portal answers here
    shooter.driver().press(Qt::Key_Escape);
}

/// What may be recommended after an export, in the shapes of a shop's picture.
void shootPromotions(Shooter& shooter, UIViewController& editor)
{
    const Result<UIImage> photo = loadPicture(LAMINA_SAMPLES "/meadow.jpg");
    if (!photo)
        return;
    for (const auto& [name, size] :
         {std::pair{"recommended", CGSize{2000, 1125}}, {"recommended-upright", {900, 1400}}}) {
        const auto screen =
            UIStoryboard::named(kMainStoryboard)->instantiate<InterstitialPresentController>(kInterstitialScene);
        screen->setInterstititalImage(cropToSize(*photo, size, CropModeCenter));
        screen->setAppstoreLink("https://apps.example.org/postcards");
        screen->setModalPresentationStyle(UIModalPresentationStyle::CurrentContext);
        editor.present(screen, true);
        shooter.shoot(name);
        shooter.driver().press(Qt::Key_Tab);
        shooter.shoot((std::string(name) + "-focus").c_str());
        shooter.driver().press(Qt::Key_Escape);
    }
}

/// What other programs ask of the window while somebody works.
void shootIncoming(Shooter& shooter)
{
    WindowDriver& driver = shooter.driver();
    IncomingRequests requests(driver.application().screens().window(), [](const ApplicationRequest&) {
        return Outcome(Error{"lamina-app", "the program can’t be started"});
    });
    const auto shoot = [&](ApplicationRequest request, const char* name) {
        if (!requests.take(std::move(request)) || !driver.waitFor<UIAlertController>())
            return;
        shooter.shoot(name);
        driver.press(Qt::Key_Escape);
    };
    shoot({"", {kFirst, kSecond}, ""}, "incoming-photos");
    shoot({"three", {}, ""}, "incoming-entry");
    shoot({"", {}, "", Error{"Holiday/half copied.jpg", "permission denied"}}, "incoming-unreadable");
}

void shootPanels(Shooter& shooter)
{
    SVProgressHUD::setDefaultMaskType(4);
    SVProgressHUD::showWithStatus("Please Wait...");
    WindowDriver::waitUntil([] { return !ProgressOverlay::shared().text().isEmpty(); }, 5);
    shooter.shoot("busy");
    SVProgressHUD::setProgress(0.4);
    SVProgressHUD::setCancelAction([] {});
    shooter.shoot("busy-share");
    SVProgressHUD::showFailure({"Sea at sunset.pdf", "no space is left on the device"}, {}, "Save elsewhere", {});
    shooter.shoot("work-failed");
    shooter.driver().press(Qt::Key_Escape);
    shooter.driver().settle();
}

/// A colour in the making, as a finger and as keys find it.
void shootColorPicker(Shooter& shooter, UIViewController& editor)
{
    const auto picker = InfColorPickerController::colorPickerViewController();
    picker->setSourceColor({18 / 255.0, 19 / 255.0, 22 / 255.0, 1});
    picker->presentModallyOverViewController(editor);
    shooter.driver().waitFor<InfColorPickerController>();
    picker->takeHexText(QStringLiteral("#E5906F"));
    shooter.shoot("color-picker");
    shooter.driver().press(Qt::Key_Tab);
    shooter.shoot("color-picker-focus");
    shooter.driver().press(Qt::Key_Escape);
}

/// What the blend's tools open, with something done by each.
void shootTools(Shooter& shooter, BlendPhotoViewController& blend)
{
    blend.chooseTool(QStringLiteral("tools"));
    blend.chooseSubTool(QStringLiteral("horizontal"));
    blend.chooseSubTool(QStringLiteral("color"));
    shooter.driver().waitFor<InfColorPickerController>();
    if (const auto picker = shooter.driver().top<InfColorPickerController>()) {
        picker->setResultColor(UIColor{0.25, 0.75, 0.7, 1});
        picker->done();
        shooter.driver().waitFor<BlendPhotoViewController>();
    }
    shooter.shoot("blend-tools");
    blend.chooseTool(QStringLiteral("effects"));
    blend.slide(50, 34);
    blend.slide(52, 0.62);
    blend.undo();
    blend.redo(); // the sliders hear of it as they would after a step
    shooter.shoot("blend-effects");
    blend.chooseTool(QStringLiteral("stickers"));
    // As many as any window shows.
    WindowDriver::waitUntil([&] { return blend.stickerStrip()->property("count").toInt() >= 84; }, 5);
    shooter.shoot("blend-stickers");
    shooter.driver().press(Qt::Key_Tab);
    blend.chooseTool(QStringLiteral("stickers"));
    shooter.shoot("blend-closed");
    blend.resetBtn();
    blend.panBtn();
}

void shootRoad(const LaunchOptions& options, const QString& prefix)
{
    Shooter shooter(options, prefix);
    WindowDriver& driver = shooter.driver();
    shooter.shoot("home");
    driver.press(Qt::Key_Tab);
    shooter.shoot("home-focus");
    driver.tap(QStringLiteral("Menu"));
    shooter.shoot("menu");
    driver.tap(QStringLiteral("Photo folders…"));
    shooter.shoot("photo-folders");
    driver.tap(QStringLiteral("Add a folder…")); // no portal answers here
    WindowDriver::waitUntil([&] { return driver.item(QStringLiteral("Choose this folder")) != nullptr; }, 5);
    shooter.shoot("photo-folder");
    driver.press(Qt::Key_Escape);
    driver.press(Qt::Key_F1);
    shooter.shoot("keys");
    driver.tap(QStringLiteral("About and licence"));
    shooter.shoot("about");
    driver.press(Qt::Key_Escape);
    driver.tap(QStringLiteral("Blend"));
    shooter.shoot("chooser-first");
    const auto chooser = driver.top<ImagePIckingViewController>();
    if (!chooser)
        return;
    chooser->cameraButton(); // no portal answers here
    WindowDriver::waitUntil([&] { return driver.item(QStringLiteral("Up one folder")) != nullptr; }, 5);
    driver.press(Qt::Key_Down);
    shooter.shoot("folder");
    driver.press(Qt::Key_Escape);
    chooser->galleryButton();
    shooter.shoot("no-camera");
    driver.press(Qt::Key_Escape);
    chooser->receivePhotos({PhotoSource::fromBytes({'n', 'o'}, "README.md")});
    driver.waitFor<UIAlertController>();
    shooter.shoot("unreadable");
    driver.press(Qt::Key_Escape);
    chooser->receivePhotos({PhotoSource::fromFile(kFirst)});
    driver.waitFor<PinchZoomViewController>();
    shooter.shoot("crop-first");
    driver.top<PinchZoomViewController>()->doneButton();
    driver.waitFor<ImagePIckingViewController>();
    shooter.shoot("chooser-second");
    chooser->receivePhotos({PhotoSource::fromFile(kSecond)});
    driver.waitFor<PinchZoomViewController>();
    driver.top<PinchZoomViewController>()->backButton();
    driver.waitFor<ImagePIckingViewController>();
    shooter.shoot("chooser-again");
    chooser->useFirstPhotoAgain();
    chooser->receivePhotos({PhotoSource::fromFile(kSecond)});
    driver.waitFor<PinchZoomViewController>();
    driver.top<PinchZoomViewController>()->zoomBy(1.4);
    shooter.shoot("crop-second");
    driver.top<PinchZoomViewController>()->doneButton();
    driver.waitFor<BlendPhotoViewController>();
    shooter.shoot("blend");
    shootPanels(shooter);
    shootIncoming(shooter);
    const auto blend = driver.top<BlendPhotoViewController>();
    if (!blend)
        return;
    shootTools(shooter, *blend);
    blend->openPhotoMenu(2);
    shooter.shoot("photo-menu");
    driver.press(Qt::Key_Escape);
    blend->stickerImgGesture(6000);
    driver.tapOnly(*driver.canvas());
    shooter.shoot("sticker");
    driver.press(Qt::Key_Delete);
    shootColorPicker(shooter, *blend);
    blend->photo1();
    shooter.shoot("not-movable");
    driver.press(Qt::Key_Escape);
    driver.press(Qt::Key_Tab);
    shooter.shoot("focus");
    blend->backBtn();
    shooter.shoot("discard");
    driver.press(Qt::Key_Escape);
    ExportShooter(shooter, *blend, blend->flattened()).shootAll();
    shootShares(shooter, *blend, blend->flattened());
    shootPromotions(shooter, *blend);
    blend->shareBtn();
    shooter.shoot("save-as");
    driver.press(Qt::Key_Escape);
    blend->nudge(24, -16); // what is saved is not offered again
}

void shootReopening(const LaunchOptions& options, const QString& prefix)
{
    Shooter shooter(options, prefix);
    shooter.shoot("home-reopen");
    shooter.driver().top<ViewController>()->discardWork();
    shooter.shoot("discard-work");
}

/// Albums with the sample photos in the folder for pictures, for as long as it lives.
class Albums {
public:
    Albums()
    {
        int minutes = 0;
        for (const auto& [name, photos] : {std::pair{"Garden", 9}, {"Night walks", 11}, {"Lamina", 3}, {".", 4}}) {
            addSamplePhotos(picturesFolder() + '/' + name, photos, minutes);
            minutes += photos;
        }
    }
    ~Albums() { QDir(QString::fromStdString(picturesFolder())).removeRecursively(); }
    Albums(const Albums&) = delete;
    Albums& operator=(const Albums&) = delete;
};

std::shared_ptr<YMSPhotoPickerViewController> openPicker(WindowDriver& driver)
{
    driver.top<ViewController>()->threePhotoCollage();
    driver.waitFor<YMSPhotoPickerViewController>();
    return driver.top<YMSPhotoPickerViewController>();
}

/// All tiles that are seen have their photos.
bool isDrawn(WindowDriver& driver)
{
    return driver.called(QStringLiteral("waiting")) == nullptr;
}

/// The list of albums, one of them in use.
void shootAlbums(Shooter& shooter, YMSPhotoPickerViewController& picker)
{
    WindowDriver& driver = shooter.driver();
    picker.presentAlbumPickerView();
    driver.waitFor<YMSAlbumPickerViewController>();
    shooter.shoot("albums");
    driver.press(Qt::Key_Down);
    shooter.shoot("albums-focus");
    driver.press(Qt::Key_Escape);
    driver.waitFor<YMSPhotoPickerViewController>();
}

/// A photo to be looked at, its neighbour by itself and from near, and one that can't be read.
void shootLargePhoto(Shooter& shooter, YMSPhotoPickerViewController& picker)
{
    WindowDriver& driver = shooter.driver();
    picker.presentSinglePhoto(1);
    driver.waitFor<YMSSinglePhotoViewController>();
    const auto photo = driver.top<YMSSinglePhotoViewController>();
    shooter.shoot("photo-large");
    driver.press(Qt::Key_Right);
    shooter.shoot("photo-large-next");
    photo->switchPresentationStyle();
    shooter.shoot("photo-large-full");
    photo->toggleZoom(100, 100);
    shooter.shoot("photo-large-zoomed");
    photo->cancel();
    driver.waitFor<YMSPhotoPickerViewController>();
    const std::string broken = QDir::home().filePath(QStringLiteral("half-copied.jpg")).toStdString();
    if (!writeFileAtomically(broken, std::vector<std::uint8_t>{'n', 'o'}))
        return;
    const auto manager = std::make_shared<PHImageManager>();
    picker.present(std::make_shared<YMSSinglePhotoViewController>(PHAsset{.localIdentifier = "none", .path = broken},
                                                                  manager, nullptr),
                   true);
    driver.waitFor<YMSSinglePhotoViewController>();
    shooter.shoot("photo-large-unreadable");
    driver.press(Qt::Key_Escape);
    driver.waitFor<YMSPhotoPickerViewController>();
}

void shootFilledPicker(Shooter& shooter, YMSPhotoPickerViewController& picker)
{
    WindowDriver& driver = shooter.driver();
    const Albums albums; // which it finds by itself
    WindowDriver::waitUntil([&] { return picker.photosModel()->rowCount() == 28 && isDrawn(driver); }, 20);
    for (const int item : {2, 5, 8})
        picker.tapItem(item);
    shooter.shoot("picker");
    driver.press(Qt::Key_Right);
    shooter.shoot("picker-focus");
    QMimeData dragged;
    dragged.setUrls({QUrl::fromLocalFile(QString::fromStdString(kFirst))});
    QDragEnterEvent enter({100, 100}, Qt::CopyAction, &dragged, Qt::LeftButton, Qt::NoModifier);
    QGuiApplication::sendEvent(&driver.view(), &enter);
    shooter.shoot("picker-drag");
    QDragLeaveEvent leave;
    QGuiApplication::sendEvent(&driver.view(), &leave);
    shootAlbums(shooter, picker);
    shootLargePhoto(shooter, picker);
}

/// In a sandbox, with nothing and with what was chosen in the system's window.
void shootHiddenPicker(Shooter& shooter)
{
    WindowDriver& driver = shooter.driver();
    LibraryRoots roots = LibraryEngine::shared().roots();
    const LibraryRoots former = roots;
    roots.sandboxMark = kFirst; // any file
    LibraryEngine::shared().configure(roots);
    const auto picker = openPicker(driver);
    WindowDriver::waitUntil([&] { return picker->libraryState() == YMSPhotoPickerViewController::Hidden; }, 5);
    shooter.shoot("picker-hidden");
    {
        const QTemporaryDir elsewhere;
        std::vector<PhotoSource> chosen;
        for (const std::string& path : addSamplePhotos(elsewhere.path().toStdString(), 2, 0))
            chosen.push_back(PhotoSource::fromFile(path));
        picker->receivePhotos(chosen);
        WindowDriver::waitUntil([&] { return picker->selectedCount() == 2 && isDrawn(driver); }, 5);
        shooter.shoot("picker-hidden-chosen");
    }
    driver.press(Qt::Key_Escape);
    LibraryEngine::shared().configure(former);
    LibraryEngine::shared().rescan(); // those from elsewhere are gone
}

void shootPickers(const LaunchOptions& options, const QString& prefix)
{
    QDir(QString::fromStdString(picturesFolder())).removeRecursively(); // what the road has saved
    Shooter shooter(options, prefix);
    WindowDriver& driver = shooter.driver();
    const auto picker = openPicker(driver);
    WindowDriver::waitUntil([&] { return picker->libraryState() == YMSPhotoPickerViewController::Empty; }, 5);
    shooter.shoot("picker-empty");
    shootFilledPicker(shooter, *picker);
    driver.press(Qt::Key_Escape);
    shootHiddenPicker(shooter);
}

} // namespace

int main(int argc, char** argv)
{
    if (argc < 2) {
        std::fputs("lamina_shots FOLDER [WIDTHxHEIGHT...]\n", stderr);
        return 2;
    }
    const OwnHome home;
    qputenv("DBUS_SESSION_BUS_ADDRESS", "disabled:"); // nor the settings of the desktop
    qputenv("QT_QPA_PLATFORM", "offscreen");
    if (!qEnvironmentVariableIsSet("LAMINA_REDUCED_MOTION"))
        qputenv("LAMINA_REDUCED_MOTION", "1");
    const QTemporaryDir state; // no work of the developer's own is looked for
    qputenv("XDG_STATE_HOME", state.path().toLocal8Bit());
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    QGuiApplication qt(argc, argv);
    QDir().mkpath(QString::fromLocal8Bit(argv[1]));
    QStringList sizes;
    for (int i = 2; i < argc; ++i)
        sizes.append(QString::fromLocal8Bit(argv[i]));
    if (sizes.isEmpty())
        sizes = {QStringLiteral("360x720"), QStringLiteral("720x360"), QStringLiteral("1280x800")};
    for (const QString& size : sizes) {
        const QStringList sides = size.split(QLatin1Char('x'));
        LaunchOptions options;
        options.size = QSize(sides.value(0).toInt(), sides.value(1).toInt());
        const QString prefix = QString::fromLocal8Bit(argv[1]) + QLatin1Char('/') + size + QLatin1Char('-');
        shootRoad(options, prefix);
        shootReopening(options, prefix);
        shootCollages(options, prefix);
        shootPickers(options, prefix);
        shootCamera(options, prefix);
        shootLive(options, prefix);
        QDir(state.path()).removeRecursively();
    }
}
