#pragma once

#include "platform/view/PresentationHost.h"

namespace lamina {

/// Shows nothing: every transition is over on the next turn of the main queue. For the command and for tests.
class HeadlessHost : public PresentationHost {
public:
    void startTransition(const PresentationTransition& transition, std::function<void()> finished) override;
};

} // namespace lamina
