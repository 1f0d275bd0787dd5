#include "app/FirstScreen.h"

#include "app/AppMenu.h"
#include "app/ViewController.h"

#include <utility>

namespace lamina {

namespace {

void openScreen(ViewController& home, const std::string& screen)
{
    if (screen == "blend")
        home.BlendPhoto();
    else if (screen == "two")
        home.twoPhotoCollage();
    else if (screen == "three" || screen == "picker")
        home.threePhotoCollage();
    else if (screen == "live")
        presentLive(home);
}

void beginWith(ViewController& home, const std::string& screen, std::vector<PhotoSource> photos)
{
    if (screen == "live")
        presentLive(home, photos.front().path);
    else if (screen == "blend")
        home.beginBlend(std::move(photos));
    else if (screen == "two" || screen == "three")
        home.beginCollage(screen + "Photo", std::move(photos));
    else
        home.receivePhotos(std::move(photos));
}

} // namespace

void openFirstScreen(ViewController& home, const std::string& screen, std::vector<PhotoSource> photos)
{
    photos.empty() ? openScreen(home, screen) : beginWith(home, screen, std::move(photos));
}

} // namespace lamina
