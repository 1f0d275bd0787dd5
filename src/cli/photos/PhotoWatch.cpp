#include "cli/photos/PhotoWatch.h"

#include "cli/common/Messages.h"
#include "platform/base/DispatchQueue.h"
#include "platform/base/ExceptionCause.h"
#include "platform/photos/PHCollection.h"
#include "platform/photos/PHFetchResultChangeDetails.h"
#include "platform/photos/PHPhotoLibrary.h"

#include <cerrno>
#include <cstdio>
#include <memory>
#include <optional>
#include <poll.h>
#include <system_error>
#include <thread>
#include <unistd.h>
#include <unordered_set>
#include <utility>
#include <vector>

namespace lamina {

namespace {

PHFetchResult allPhotos()
{
    return fetchAssetsInAssetCollection(fetchAssetCollectionsWithType(PHAssetCollectionType::SmartAlbum,
                                                                      PHAssetCollectionSubtype::SmartAlbumUserLibrary)
                                            .front());
}

/// Waits until nobody reads what is written there any more.
void waitForReaderToLeave(int descriptor)
{
    pollfd watched{descriptor, 0, 0};
    while (::poll(&watched, 1, -1) < 0 && errno == EINTR)
        ;
}

} // namespace

const char* nameOf(PhotoEvent event)
{
    switch (event) {
    case PhotoEvent::Added:
        return "added";
    case PhotoEvent::Removed:
        return "removed";
    case PhotoEvent::Changed:
        break;
    }
    return "changed";
}

PhotoWatch::PhotoWatch(Teller tell)
    : m_tell(std::move(tell))
    , m_assets(allPhotos())
{
    m_assets.enumerateObjects([this](const PHAsset& asset) {
        m_known[asset.localIdentifier] = {asset.path, asset.modified};
    });
}

void PhotoWatch::photoLibraryDidChange(const PHChange& changeInstance)
{
    const std::optional<PHFetchResultChangeDetails> details = changeInstance.changeDetailsForFetchResult(m_assets);
    if (!details)
        return;
    m_assets = details->fetchResultAfterChanges();
    if (!details->hasIncrementalChanges()) {
        updateAll();
        return;
    }
    for (const std::size_t index : details->removedIndexes())
        remove(details->fetchResultBeforeChanges().objectAtIndex(index).localIdentifier);
    for (const std::size_t index : details->insertedIndexes())
        update(m_assets.objectAtIndex(index));
    for (const std::size_t index : details->changedIndexes())
        update(m_assets.objectAtIndex(index));
}

void PhotoWatch::update(const PHAsset& asset)
{
    Known& known = m_known[asset.localIdentifier];
    const Known before = std::exchange(known, {asset.path, asset.modified});
    if (before.path == asset.path) {
        if (before.modified != asset.modified)
            m_tell(PhotoEvent::Changed, asset);
        return;
    }
    if (!before.path.empty()) {
        PHAsset left = asset;
        left.path = before.path;
        m_tell(PhotoEvent::Removed, left);
    }
    m_tell(PhotoEvent::Added, asset);
}

void PhotoWatch::remove(const std::string& identifier)
{
    const auto known = m_known.find(identifier);
    if (known == m_known.end())
        return;
    PHAsset asset;
    asset.localIdentifier = identifier;
    asset.path = known->second.path;
    m_known.erase(known);
    m_tell(PhotoEvent::Removed, asset);
}

/// So much is different that nobody has told what.
void PhotoWatch::updateAll()
{
    std::unordered_set<std::string> there;
    std::vector<PHAsset> assets;
    m_assets.enumerateObjects([&](const PHAsset& asset) {
        there.insert(asset.localIdentifier);
        assets.push_back(asset);
    });
    std::vector<std::string> gone;
    for (const auto& [identifier, known] : m_known)
        if (!there.contains(identifier))
            gone.push_back(identifier);
    for (const std::string& identifier : gone)
        remove(identifier);
    for (const PHAsset& asset : assets)
        update(asset);
}

ExitCode watchPhotos(const std::function<std::string(PhotoEvent event, const PHAsset& asset)>& line, bool isQuiet)
{
    ExitCode code = ExitCode::Good;
    const auto isOver = std::make_shared<bool>(false); // for the main thread
    const auto tell = [&code, &line, isOver](PhotoEvent event, const PHAsset& asset) {
        if (*isOver)
            return;
        const std::string text = line(event, asset);
        *isOver = std::fwrite(text.data(), 1, text.size(), stdout) != text.size() || std::fflush(stdout) != 0;
        if (*isOver && errno != EPIPE) // a reader that has heard enough is no failure
            code = fail({"standard output", "can't be written"}, ExitCode::Output);
    };
    PHPhotoLibrary::waitUntilComplete();
    const auto watch = std::make_shared<PhotoWatch>(tell);
    PHPhotoLibrary::registerChangeObserver(watch);
    if (!isQuiet)
        note("Watching " + std::to_string(watch->count()) + " photos; Ctrl+C ends it.");
    try {
        std::thread([isOver] {
            waitForReaderToLeave(STDOUT_FILENO);
            DispatchQueue::main().async([isOver] { *isOver = true; });
        }).detach();
    } catch (const std::system_error&) { // nor would there be one that looks at the folders
        return fail({"photos watch", cause::kNoThread}, ExitCode::Failed);
    }
    DispatchQueue::main().runUntil([isOver] { return *isOver; });
    return code;
}

} // namespace lamina
