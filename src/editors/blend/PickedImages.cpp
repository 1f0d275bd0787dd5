#include "editors/blend/PickedImages.h"

namespace lamina {

UIImage firstPickedImage;
UIImage secondPickedImage;
PhotoCrop firstPickedCrop;
PhotoCrop secondPickedCrop;

void clearPickedImages()
{
    firstPickedImage = {};
    secondPickedImage = {};
    firstPickedCrop = {};
    secondPickedCrop = {};
}

} // namespace lamina
