// Makes a postcard of a photo: 600 x 400, cut about the centre, a little more contrast, sharpened.

#include <cstdio>
#include <imageops/ImageFilters.h>
#include <imageops/ImageGeometry.h>
#include <platform/image/codecs/ImageSaving.h>
#include <platform/image/codecs/PictureDecoding.h>

using namespace lamina;

namespace {

int complain(const Error& error)
{
    std::fprintf(stderr, "postcard: %s: %s\n", error.subject.c_str(), error.cause.c_str());
    return 1;
}

// An operation that can't be done gives the empty picture, and on that every other gives it again: one look at the end
// is enough.
UIImage postcard(const UIImage& photo)
{
    const CGSize card{600, 400};
    const UIImage covering = scaleToCoverSize(photo, card);
    const UIImage cut = cropToSize(covering, card, CropModeCenter);
    return sharpenWithBias(contrastAdjustmentWithValue(cut, 20), 0);
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 3) {
        std::fputs("usage: postcard PHOTO POSTCARD.jpg\n", stderr);
        return 2;
    }
    const Result<UIImage> photo = loadPicture(argv[1]);
    if (!photo)
        return complain(photo.error());

    // The filters look at the pixels as they are stored, so the photo is turned first.
    const UIImage card = postcard(photo->upright());
    if (!card)
        return complain({argv[1], "is too small, too large or too narrow for a postcard"});

    ImageSavingOptions options;
    options.uti = kUTTypeJPEG;
    options.quality = 0.9;
    const Outcome saved = saveImage(card, argv[2], options);
    return saved ? 0 : complain(saved.error());
}
