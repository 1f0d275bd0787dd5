#include "editors/collage/CollageLayouts.h"

#include "editors/collage/CollageComposition.h"
#include "editors/collage/CollagePanels.h"
#include "editors/frames/FramePictures.h"
#include "editors/frames/Frames.h"
#include "platform/base/Localization.h"
#include "platform/view/UIImageMetaType.h"

#include <utility>

namespace lamina {

namespace {

struct Numbers {
    int first;
    int count;
};

Numbers numbersFor(std::size_t photos)
{
    return photos == 2 ? Numbers{kTwoFrames, kTwoFramesCount} : Numbers{kThreeFrames, kThreeFramesCount};
}

} // namespace

CollageLayouts::CollageLayouts(const CollageComposition& composition)
    : m_photos(composition.count)
    , m_thumbnails({{"tag", &CollageLayout::tag},
                    {"name", &CollageLayout::name},
                    {"picture", &CollageLayout::picture},
                    {"activePicture", &CollageLayout::activePicture}})
{
    const auto drawn = [&composition](int frame, const FrameColors& colors) {
        const double edge = collagepanel::layoutThumbnail(0).size.width;
        return frameThumbnail(frame, composition.side, composition.screenHeight, edge, colors);
    };
    const auto [first, count] = numbersFor(composition.count);
    std::vector<CollageLayout> rows;
    for (int frame = first; frame < first + count; ++frame)
        rows.push_back({frame, localizedString(frameName(frame)), drawn(frame, FrameColors::plain()),
                        drawn(frame, FrameColors::active())});
    m_thumbnails.reset(std::move(rows));
}

std::vector<std::string> CollageLayouts::dataInArr() const
{
    std::vector<std::string> names;
    for (int number = 1; number <= m_thumbnails.count(); ++number)
        names.push_back("layout" + std::to_string(m_photos) + "-" + std::to_string(number));
    return names;
}

} // namespace lamina
