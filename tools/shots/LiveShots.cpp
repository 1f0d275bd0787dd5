#include "LiveShots.h"

#include "Shooter.h"
#include "StandInCamera.h"

#include "app/AppMenu.h"
#include "app/LiveViewController.h"
#include "app/ViewController.h"
#include "platform/image/codecs/PictureDecoding.h"
#include "platform/media/VideoExport.h"

#include <QTemporaryDir>

#include <functional>
#include <memory>
#include <string>

namespace lamina::test {

namespace {

CGImage sample(const char* name)
{
    const Result<UIImage> read = loadPicture(std::string(LAMINA_SAMPLES "/") + name);
    return read ? read->cgImage() : CGImage();
}

/// Once the window shows what was asked for: a view draws a frame when the one before has been painted.
void shootPicture(Shooter& shooter, const char* name, const std::function<void()>& give = {})
{
    for (int i = 0; i < 6; ++i) {
        if (give)
            give();
        shooter.driver().grab();
        WindowDriver::waitUntil([] { return false; }, 0.05);
    }
    shooter.shoot(name);
}

void shootCamera(Shooter& shooter, LiveViewController& live, StandInCamera& camera, const CGImage& picture)
{
    WindowDriver& driver = shooter.driver();
    int frame = 0;
    const auto give = [&] { camera.give(picture, CMTime::make(++frame, 30)); };
    WindowDriver::waitUntil(
        [&] {
            give();
            return live.state() == LiveViewController::Live;
        },
        5);
    live.chooseLook(502);
    shootPicture(shooter, "live-filter", give);
    live.slide(50, 20);
    live.slide(56, 1.4);
    live.slide(55, 0.3);
    live.setPanel(QStringLiteral("effects"));
    live.toggleComparing();
    shootPicture(shooter, "live", give);
    driver.press(Qt::Key_Tab);
    shooter.shoot("live-focus");
    camera.end({"stand-in", "the camera has gone"});
    WindowDriver::waitUntil([&] { return live.state() == LiveViewController::Stopped; }, 5);
    shooter.shoot("live-gone");
}

void shootMovie(Shooter& shooter, LiveViewController& live)
{
    const QTemporaryDir folder;
    const std::string path = folder.filePath(QStringLiteral("Evening sea.mp4")).toStdString();
    if (!writeStillVideo({.picture = UIImage(sample("sea-sunset.jpg")), .seconds = 24, .soundFile = {}}, path))
        return;
    live.openMovie(path);
    WindowDriver::waitUntil(
        [&] { return live.sourceName() == QLatin1String("movie") && live.state() == LiveViewController::Live; }, 10);
    live.resetFilters();
    live.toggleComparing();
    live.chooseLook(503);
    live.slide(50, 20);
    live.slide(56, 1.4);
    live.slide(55, 0.3);
    live.seek(7);
    WindowDriver::waitUntil([&] { return live.position() >= 7 && live.state() == LiveViewController::Live; }, 5);
    live.togglePaused();
    shootPicture(shooter, "live-movie");
}

} // namespace

void shootLive(const LaunchOptions& options, const QString& prefix)
{
    const auto camera = std::make_shared<StandInCamera>();
    const auto other = std::make_shared<StandInCamera>();
    other->name = "other";
    Shooter shooter(options, prefix);
    const ServedCameras served({camera, other}); // in the place of the window's own
    presentLive(*shooter.driver().top<ViewController>());
    shooter.driver().waitFor<LiveViewController>();
    const auto live = shooter.driver().top<LiveViewController>();
    if (!live)
        return;
    shootCamera(shooter, *live, *camera, sample("city-rain.jpg"));
    shootMovie(shooter, *live);
}

} // namespace lamina::test
