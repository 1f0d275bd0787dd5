#include "platform/photos/PHPhotoLibrary.h"

#include <utility>

namespace lamina {

namespace {

PHPhotoLibrary::Authorizer& installed()
{
    static auto* const authorizer = new PHPhotoLibrary::Authorizer;
    return *authorizer;
}

} // namespace

PHAuthorizationStatus PHPhotoLibrary::authorizationStatus()
{
    return installed().status ? installed().status() : PHAuthorizationStatus::Authorized;
}

void PHPhotoLibrary::requestAuthorization(StatusHandler handler)
{
    if (installed().status && installed().request)
        installed().request(std::move(handler));
    else
        handler(authorizationStatus());
}

void PHPhotoLibrary::setAuthorizer(Authorizer authorizer)
{
    installed() = std::move(authorizer);
}

} // namespace lamina
