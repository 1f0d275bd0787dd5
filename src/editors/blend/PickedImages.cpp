#include "editors/blend/PickedImages.h"

namespace lamina {

UIImage firstPickedImage;
UIImage secondPickedImage;
PhotoCrop firstPickedCrop;
PhotoCrop secondPickedCrop;

namespace {

struct {
    UIImage image;
    PhotoCrop crop;
} g_setAside;

} // namespace

void clearPickedImages()
{
    forgetImageSetAside();
    firstPickedImage = {};
    secondPickedImage = {};
    firstPickedCrop = {};
    secondPickedCrop = {};
}

void givePickedImagesUp()
{
    auto first = g_setAside;
    if (firstPickedImage)
        first = {firstPickedImage, firstPickedCrop};
    clearPickedImages();
    g_setAside = first;
}

bool isFirstImageSetAside()
{
    return g_setAside.image && !firstPickedImage;
}

void takeFirstImageAgain()
{
    if (!isFirstImageSetAside())
        return;
    firstPickedImage = g_setAside.image;
    firstPickedCrop = g_setAside.crop;
    forgetImageSetAside();
}

void forgetImageSetAside()
{
    g_setAside = {};
}

} // namespace lamina
