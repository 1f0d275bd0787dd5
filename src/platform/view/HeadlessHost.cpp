#include "platform/view/HeadlessHost.h"

#include "platform/base/DispatchQueue.h"

#include <functional>
#include <utility>

namespace lamina {

void HeadlessHost::startTransition(const PresentationTransition&, std::function<void()> finished)
{
    DispatchQueue::main().async(std::move(finished));
}

} // namespace lamina
