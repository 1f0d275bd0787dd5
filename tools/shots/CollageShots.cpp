#include "CollageShots.h"

#include "Shooter.h"

#include "app/ViewController.h"
#include "editors/collage/CreateCollageViewController.h"

#include <array>
#include <memory>
#include <string>
#include <vector>

namespace lamina::test {

namespace {

constexpr std::array kPhotos{LAMINA_SAMPLES "/sea-sunset.jpg", LAMINA_SAMPLES "/meadow.jpg",
                             LAMINA_SAMPLES "/aurora-lake.jpg"};

std::shared_ptr<CreateCollageViewController> openCollage(Shooter& shooter, const char* entry, std::size_t photos)
{
    std::vector<PhotoSource> sources;
    for (std::size_t i = 0; i < photos; ++i)
        sources.push_back(PhotoSource::fromFile(kPhotos[i]));
    shooter.driver().top<ViewController>()->beginCollage(entry, std::move(sources));
    shooter.driver().waitFor<CreateCollageViewController>();
    return shooter.driver().top<CreateCollageViewController>();
}

/// Until the picture that is being made has landed.
void waitForPicture(const CreateCollageViewController& collage)
{
    WindowDriver::waitUntil([&] { return !collage.property("busy").toBool(); }, 5);
}

/// All that the tools open, with something done by each.
void shootTools(Shooter& shooter, CreateCollageViewController& collage)
{
    WindowDriver& driver = shooter.driver();
    collage.chooseTool(QStringLiteral("layout"));
    collage.imgGesture1(3006);
    shooter.shoot("collage-layout");
    collage.selectSlot(2);
    collage.chooseTool(QStringLiteral("filter"));
    WindowDriver::waitUntil([&] { return collage.filters()->property("count").toInt() == 14; }, 5);
    collage.filterImgGesture(502);
    WindowDriver::waitUntil([&] { return collage.filter() == 502; }, 5);
    shooter.shoot("collage-filter");
    collage.selectSlot(3);
    collage.chooseTool(QStringLiteral("fx"));
    collage.slide(50, 20);
    collage.slide(56, 1.4);
    waitForPicture(collage);
    collage.undo();
    collage.redo(); // the sliders hear of it as they would after a step
    shooter.shoot("collage-effects");
    collage.chooseTool(QStringLiteral("sticker"));
    WindowDriver::waitUntil([&] { return collage.stickerStrip()->property("count").toInt() >= 84; }, 5);
    collage.stickerImgGesture(6000);
    shooter.shoot("collage-stickers");
    collage.chooseTool(QStringLiteral("reset"));
    collage.slide(59, 4);
    collage.slide(60, 6);
    collage.undo();
    collage.redo();
    shooter.shoot("collage-frame");
    collage.chooseTool(QStringLiteral("tools"));
    driver.press(Qt::Key_Tab);
    shooter.shoot("collage-focus");
    collage.letGo();
    shooter.shoot("collage-closed");
}

} // namespace

void shootCollages(const LaunchOptions& options, const QString& prefix)
{
    Shooter shooter(options, prefix);
    WindowDriver& driver = shooter.driver();
    if (openCollage(shooter, "twoPhoto", 2))
        shooter.shoot("collage-two");
    driver.top<CreateCollageViewController>()->backBtn();
    driver.waitFor<ViewController>();
    const auto collage = openCollage(shooter, "threePhoto", 3);
    if (!collage)
        return;
    shooter.shoot("collage-three");
    driver.drag(driver.canvas()->mapToScene({driver.canvas()->width() - 8, driver.canvas()->height() / 2}), {});
    shooter.shoot("collage-pointed");
    shootTools(shooter, *collage);
    collage->backBtn();
    driver.waitFor<ViewController>();
}

} // namespace lamina::test
