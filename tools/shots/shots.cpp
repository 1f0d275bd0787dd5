// Draws every screen into pictures, for whoever judges the look: lamina_shots FOLDER [WIDTHxHEIGHT...]
#include "OwnHome.h"
#include "WindowDriver.h"

#include "app/ViewController.h"
#include "hud/ProgressOverlay.h"
#include "hud/SVProgressHUD.h"
#include "platform/view/UIAlertController.h"

#include <QDir>
#include <QGuiApplication>
#include <QTemporaryDir>

#include <cstdio>

using namespace lamina;
using namespace lamina::test;

namespace {

class Shooter {
public:
    Shooter(const LaunchOptions& options, QString prefix)
        : m_driver(options)
        , m_prefix(std::move(prefix))
    {
    }
    WindowDriver& driver() { return m_driver; }

    void shoot(const char* name)
    {
        m_driver.settle();
        const QString path = m_prefix + QLatin1String(name) + QStringLiteral(".png");
        if (!m_driver.grab().save(path))
            std::fprintf(stderr, "can't write %s\n", qPrintable(path));
        else
            std::puts(qPrintable(path));
    }

private:
    WindowDriver m_driver;
    QString m_prefix;
};

const std::string kFirst = LAMINA_SAMPLES "/sea-sunset.jpg";
const std::string kSecond = LAMINA_SAMPLES "/city-rain.jpg";

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

void shootRoad(const LaunchOptions& options, const QString& prefix)
{
    Shooter shooter(options, prefix);
    WindowDriver& driver = shooter.driver();
    shooter.shoot("home");
    driver.press(Qt::Key_Tab);
    shooter.shoot("home-focus");
    driver.tap(QStringLiteral("Menu"));
    shooter.shoot("menu");
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
    const auto blend = driver.top<BlendPhotoViewController>();
    if (!blend)
        return;
    blend->photo1();
    shooter.shoot("not-movable");
    driver.press(Qt::Key_Escape);
    driver.press(Qt::Key_Tab);
    shooter.shoot("focus");
    blend->backBtn();
    shooter.shoot("discard");
    driver.press(Qt::Key_Escape);
    blend->shareBtn();
    WindowDriver::waitUntil([&] { return !blend->notice().isEmpty(); }, 5);
    shooter.shoot("saved");
    blend->nudge(24, -16); // what is saved is not offered again
}

void shootReopening(const LaunchOptions& options, const QString& prefix)
{
    Shooter shooter(options, prefix);
    shooter.shoot("home-reopen");
    shooter.driver().top<ViewController>()->discardWork();
    shooter.shoot("discard-work");
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
        QDir(state.path()).removeRecursively();
    }
}
