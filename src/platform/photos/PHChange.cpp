#include "platform/photos/PHChange_p.h"

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

thread_local PHChange* t_current = nullptr;

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

PHAssetCreationRequest::PHAssetCreationRequest()
    : m_placeholder{QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper().toStdString()}
{
}

PHAssetCreationRequest* PHAssetCreationRequest::creationRequestForAsset()
{
    return PHChange::current() ? PHChange::current()->addCreation() : nullptr;
}

void PHAssetCreationRequest::addResource(PHAssetResourceType, const std::string& path)
{
    m_path = path;
}

Outcome PHChange::perform(const std::function<void()>& changes)
{
    PHChange change;
    PHChange* const outer = std::exchange(t_current, &change);
    changes();
    t_current = outer;
    return change.carryOut();
}

PHChange* PHChange::current()
{
    return t_current;
}

PHAssetCreationRequest* PHChange::addCreation()
{
    m_creations.emplace_back(new PHAssetCreationRequest);
    return m_creations.back().get();
}

Outcome PHChange::carryOut() const
{
    std::vector<PHAsset> created;
    for (const auto& creation : m_creations) {
        const Result<std::string> path = creation->m_path.empty()
                                             ? Result<std::string>(Error{{}, "there is no picture"})
                                             : copyToPhotoLibrary(creation->m_path);
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
