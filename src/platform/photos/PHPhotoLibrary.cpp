#include "platform/photos/PHPhotoLibrary.h"

#include "platform/base/DispatchQueue.h"
#include "platform/photos/PHChangeRequests_p.h"
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
    return authorizer.status ? authorizer.status() : PHAuthorizationStatus::Authorized;
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
    return true;
}

void PHPhotoLibrary::setFurtherFolders(std::vector<std::string>) {}

std::vector<std::string> PHPhotoLibrary::furtherFolders()
{
    return {};
}

bool PHPhotoLibrary::isComplete()
{
    return true;
}

void PHPhotoLibrary::rescan() {}

void PHPhotoLibrary::addFiles(std::vector<std::string>, AssetsHandler handler)
{
    DispatchQueue::main().async([handler = std::move(handler)] { handler({}); });
}

void PHPhotoLibrary::registerChangeObserver(std::weak_ptr<PHPhotoLibraryChangeObserver>) {}

void PHPhotoLibrary::unregisterChangeObserver(const PHPhotoLibraryChangeObserver*) {}

void PHPhotoLibrary::performChanges(std::function<void()> changes, ChangeHandler handler)
{
    auto work = [changes = std::move(changes), handler = std::move(handler),
                 expected = DispatchQueue::main().expectWork()] {
        const PHAuthorizationStatus status = authorizationStatus();
        const bool allowed = status == PHAuthorizationStatus::Authorized || status == PHAuthorizationStatus::Limited;
        handler(allowed ? PHChangeRequests::perform(changes)
                        : Outcome(Error{photoLibraryFolder(), "access to the photo library is not given"}));
    };
    libraryQueue().async(std::move(work));
}

} // namespace lamina
