#pragma once

#include "platform/base/Result.h"
#include "platform/photos/PHAssetCreationRequest.h"

#include <functional>
#include <memory>
#include <vector>

namespace lamina {

/// The requests of one change, gathered while its block runs and carried out together: all of them or none.
class PHChange {
public:
    /// Runs the block in this thread and then carries out what it has requested. The error's subject is the file
    /// concerned.
    static Outcome perform(const std::function<void()>& changes);

    /// The change whose block is running in this thread; null outside.
    static PHChange* current();

    PHAssetCreationRequest* addCreation();

private:
    Outcome carryOut() const;

    std::vector<std::unique_ptr<PHAssetCreationRequest>> m_creations;
};

} // namespace lamina
