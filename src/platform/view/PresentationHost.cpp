#include "platform/view/PresentationHost.h"

#include "platform/view/HeadlessHost.h"
#include "platform/view/ScreenTransition_p.h"
#include "platform/view/UIViewAnimationRun_p.h"

#include <utility>

namespace lamina {

namespace {

std::shared_ptr<PresentationHost>& hostInForce()
{
    static auto* const host = new std::shared_ptr<PresentationHost>(std::make_shared<HeadlessHost>());
    return *host;
}

} // namespace

std::shared_ptr<PresentationHost> PresentationHost::current()
{
    return hostInForce();
}

void PresentationHost::setCurrent(std::shared_ptr<PresentationHost> host)
{
    const auto former = std::exchange(hostInForce(), host ? std::move(host) : std::make_shared<HeadlessHost>());
    if (former == hostInForce())
        return;
    ScreenTransition::finishForLostHost();
    UIViewAnimationRun::finishForLostHost();
}

} // namespace lamina
