#include "editors/blend/PickedImages.h"

namespace lamina {

UIImage firstPickedImage;
UIImage secondPickedImage;
PhotoCrop firstPickedCrop;
PhotoCrop secondPickedCrop;
PhotoSource firstPickedSource;
PhotoSource secondPickedSource;

namespace {

struct {
    UIImage image;
    PhotoCrop crop;
    PhotoSource source;
} g_setAside;

} // namespace

void clearPickedImages()
{
    forgetImageSetAside();
    firstPickedImage = {};
    secondPickedImage = {};
    firstPickedCrop = {};
    secondPickedCrop = {};
    firstPickedSource = {};
    secondPickedSource = {};
}

void givePickedImagesUp()
{
    auto first = g_setAside;
    if (firstPickedImage)
        first = {firstPickedImage, firstPickedCrop, firstPickedSource};
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
    firstPickedSource = g_setAside.source;
    forgetImageSetAside();
}

void forgetImageSetAside()
{
    g_setAside = {};
}

} // namespace lamina
