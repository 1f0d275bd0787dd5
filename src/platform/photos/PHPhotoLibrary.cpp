#include "platform/photos/PHPhotoLibrary.h"

#include "platform/base/DispatchQueue.h"
#include "platform/photos/LibraryAccess_p.h"
#include "platform/photos/LibraryReports_p.h"
#include "platform/photos/LibraryRoots.h"
#include "platform/photos/PHChangeRequests_p.h"
#include "platform/photos/PHFetchResult_p.h"
#include "platform/photos/PhotoFolder.h"

#include <mutex>
#include <utility>

namespace lamina {

namespace {

/// The authoriser in force, which other threads ask for the status.
class Installed {
public:
    static Installed& shared()
    {
        static auto* const installed = new Installed;
        return *installed;
    }
    PHPhotoLibrary::Authorizer get()
    {
        const std::lock_guard lock(m_mutex);
        return m_authorizer;
    }
    void set(PHPhotoLibrary::Authorizer authorizer)
    {
        const std::lock_guard lock(m_mutex);
        m_authorizer = std::move(authorizer);
    }

private:
    std::mutex m_mutex;
    PHPhotoLibrary::Authorizer m_authorizer;
};

/// Never destroyed: changes may still be on their way when the process ends.
DispatchQueue& libraryQueue()
{
    static auto* const queue = new DispatchQueue("photo library");
    return *queue;
}

} // namespace

PHAuthorizationStatus PHPhotoLibrary::authorizationStatus()
{
    const Authorizer authorizer = Installed::shared().get();
    return authorizer.status ? authorizer.status() : accessTo(photoLibrary().roots());
}

void PHPhotoLibrary::requestAuthorization(StatusHandler handler)
{
    const Authorizer authorizer = Installed::shared().get();
    if (authorizer.status && authorizer.request)
        authorizer.request(std::move(handler));
    else
        handler(authorizationStatus());
}

void PHPhotoLibrary::setAuthorizer(Authorizer authorizer)
{
    Installed::shared().set(std::move(authorizer));
}

bool PHPhotoLibrary::showsFolders()
{
    return foldersAreShown(photoLibrary().roots());
}

void PHPhotoLibrary::setFurtherFolders(std::vector<std::string> folders)
{
    LibraryRoots roots = photoLibrary().roots();
    roots.further = std::move(folders);
    photoLibrary().configure(std::move(roots));
}

std::vector<std::string> PHPhotoLibrary::furtherFolders()
{
    return photoLibrary().roots().further;
}

bool PHPhotoLibrary::isComplete()
{
    return photoLibrary().snapshot()->complete;
}

void PHPhotoLibrary::waitUntilComplete()
{
    photoLibrary().waitUntilComplete();
}

void PHPhotoLibrary::rescan()
{
    photoLibrary().rescan();
}

void PHPhotoLibrary::addFiles(std::vector<std::string> paths, AssetsHandler handler)
{
    photoLibrary().addLooseFiles(
        std::move(paths), [handler = std::move(handler),
                           expected = DispatchQueue::main().expectWork()](const std::vector<PhotoID>& photos) mutable {
            // The handler and what it holds are let go on the main queue, where they came to life.
            DispatchQueue::main().async([handler = std::move(handler), photos] {
                std::vector<PHAsset> assets = assetsOf(*photoLibrary().snapshot(), photos);
                std::erase_if(assets, [](const PHAsset& asset) { return asset.localIdentifier.empty(); });
                handler(assets);
            });
        });
}

void PHPhotoLibrary::registerChangeObserver(const std::weak_ptr<PHPhotoLibraryChangeObserver>& observer)
{
    LibraryReports::shared().add(observer);
}

void PHPhotoLibrary::unregisterChangeObserver(const PHPhotoLibraryChangeObserver* observer)
{
    LibraryReports::shared().remove(observer);
}

void PHPhotoLibrary::performChanges(std::function<void()> changes, ChangeHandler handler)
{
    auto work = [changes = std::move(changes), handler = std::move(handler),
                 expected = DispatchQueue::main().expectWork()] {
        const PHAuthorizationStatus status = authorizationStatus();
        const bool allowed = status == PHAuthorizationStatus::Authorized || status == PHAuthorizationStatus::Limited;
        if (allowed)
            PHChangeRequests::perform(changes, handler);
        else
            handler(Error{photoLibraryFolder(), "access to the photo library is not given"});
    };
    libraryQueue().async(std::move(work));
}

} // namespace lamina
