// Photos that come to a collage from outside: dropped on it, or pasted.

#include "editors/collage/CreateCollageViewController.h"

namespace lamina {

bool CreateCollageViewController::wantsPhotos() const
{
    return !presentedViewController();
}

void CreateCollageViewController::receivePhotos(std::vector<PhotoSource>) {}

} // namespace lamina
