#include "platform/photos/PHChangeRequests_p.h"

#include "platform/photos/PHAsset.h"
#include "platform/photos/PhotoFolder.h"

#include <QUuid>

#include <filesystem>
#include <map>
#include <mutex>
#include <string>
#include <utility>

namespace lamina {

namespace {

thread_local PHChangeRequests* t_current = nullptr;

/// The assets that this process has created, by their identifiers.
class CreatedAssets {
public:
    static CreatedAssets& shared()
    {
        static auto* const assets = new CreatedAssets;
        return *assets;
    }
    void add(const PHAsset& asset)
    {
        const std::lock_guard lock(m_mutex);
        m_assets.emplace(asset.localIdentifier, asset);
    }
    std::vector<PHAsset> find(const std::vector<std::string>& identifiers)
    {
        const std::lock_guard lock(m_mutex);
        std::vector<PHAsset> found;
        for (const std::string& identifier : identifiers) {
            std::error_code ignored;
            const auto asset = m_assets.find(identifier);
            if (asset != m_assets.end() && std::filesystem::exists(asset->second.path, ignored))
                found.push_back(asset->second);
        }
        return found;
    }

private:
    std::mutex m_mutex;
    std::map<std::string, PHAsset> m_assets;
};

void removeFiles(const std::vector<PHAsset>& assets)
{
    std::error_code ignored;
    for (const PHAsset& asset : assets)
        std::filesystem::remove(asset.path, ignored);
}

} // namespace

namespace {

PHObjectPlaceholder newPlaceholder()
{
    return {QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper().toStdString()};
}

} // namespace

PHAssetChangeRequest::PHAssetChangeRequest(PHObjectPlaceholder placeholder)
    : m_placeholder(std::move(placeholder))
{
}

PHAssetChangeRequest* PHAssetChangeRequest::creationRequestForAssetFromImage(const UIImage& image)
{
    return PHChangeRequests::current() ? PHChangeRequests::current()->addCreation(image) : nullptr;
}

Result<std::string> PHAssetChangeRequest::saveIn(const std::string&) const
{
    return savePNGToPhotoLibrary(m_image.upright().cgImage());
}

PHAssetCollectionChangeRequest::PHAssetCollectionChangeRequest(PHAssetCollection collection)
    : m_collection(std::move(collection))
{
}

PHAssetCollectionChangeRequest*
PHAssetCollectionChangeRequest::changeRequestForAssetCollection(const PHAssetCollection& assetCollection)
{
    return PHChangeRequests::current() ? PHChangeRequests::current()->addCollectionChange(assetCollection) : nullptr;
}

void PHAssetCollectionChangeRequest::addAssets(const std::vector<PHObjectPlaceholder>& assets)
{
    m_added.insert(m_added.end(), assets.begin(), assets.end());
}

Result<std::string> PHAssetCreationRequest::saveIn(const std::string&) const
{
    return m_path.empty() ? Result<std::string>(Error{{}, "there is no picture"}) : copyToPhotoLibrary(m_path);
}

PHAssetCreationRequest* PHAssetCreationRequest::creationRequestForAsset()
{
    return PHChangeRequests::current() ? PHChangeRequests::current()->addCreation() : nullptr;
}

void PHAssetCreationRequest::addResource(PHAssetResourceType, const std::string& path)
{
    m_path = path;
}

Outcome PHChangeRequests::perform(const std::function<void()>& changes)
{
    PHChangeRequests change;
    PHChangeRequests* const outer = std::exchange(t_current, &change);
    changes();
    t_current = outer;
    return change.carryOut();
}

PHChangeRequests* PHChangeRequests::current()
{
    return t_current;
}

PHAssetCreationRequest* PHChangeRequests::addCreation()
{
    auto* const creation = new PHAssetCreationRequest(newPlaceholder());
    m_creations.emplace_back(creation);
    return creation;
}

PHAssetChangeRequest* PHChangeRequests::addCreation(const UIImage& image)
{
    m_creations.emplace_back(new PHAssetChangeRequest(newPlaceholder()));
    m_creations.back()->m_image = image;
    return m_creations.back().get();
}

PHAssetCollectionChangeRequest* PHChangeRequests::addCollectionChange(const PHAssetCollection& collection)
{
    m_collectionChanges.emplace_back(new PHAssetCollectionChangeRequest(collection));
    return m_collectionChanges.back().get();
}

Outcome PHChangeRequests::carryOut() const
{
    std::vector<PHAsset> created;
    for (const auto& creation : m_creations) {
        const Result<std::string> path = creation->saveIn(photoLibraryFolder());
        if (!path) {
            removeFiles(created);
            return path.error();
        }
        created.push_back({.localIdentifier = creation->m_placeholder.localIdentifier, .path = *path});
    }
    for (const PHAsset& asset : created)
        CreatedAssets::shared().add(asset);
    return success();
}

std::vector<PHAsset> fetchAssetsWithLocalIdentifiers(const std::vector<std::string>& identifiers)
{
    return CreatedAssets::shared().find(identifiers);
}

} // namespace lamina
