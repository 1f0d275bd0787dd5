#pragma once

#include "platform/base/Result.h"
#include "platform/files/PrivateFolder.h"

#include <mutex>
#include <optional>
#include <string>

namespace lamina {

/// With whom this installation is registered for messages, and as what.
struct UnifiedPushRegistration {
    std::string distributor; ///< its name on the bus
    std::string token;       ///< by which it knows us: a UUID that nobody else knows

    bool operator==(const UnifiedPushRegistration&) const = default;
};

/// What every distributor's name begins with.
inline constexpr const char* kDistributorNames = "org.unifiedpush.Distributor.";

/// A registration with a token that there has never been.
UnifiedPushRegistration newRegistration(const std::string& distributor);

/// The registration, kept between runs in "push.json" of the `stateFolder`, for the owner alone. A file that can't be
/// read, or that holds anything else, counts as none. Where there is no such folder it lasts as long as the process.
class KeptRegistration {
public:
    /// `folder` as the environment says now; from other threads it isn't asked again, since that may change.
    explicit KeptRegistration(const std::string& folder = stateFolder())
        : m_folder(folder)
    {
    }

    /// The present one; the first call reads the file. Any thread.
    std::optional<UnifiedPushRegistration> current();

    /// It is the present one from now on, whether it could be written or not. Nothing: there is none, and the file
    /// goes. One call at a time: on the `busQueue`.
    Outcome set(const std::optional<UnifiedPushRegistration>& registration);
    /// The same for this process alone.
    void setForNow(const std::optional<UnifiedPushRegistration>& registration);

private:
    std::string path() const { return m_folder + "/push.json"; }

    const std::string m_folder; ///< empty: nothing can be kept
    std::mutex m_mutex;
    bool m_isRead = false;
    std::optional<UnifiedPushRegistration> m_current;
};

} // namespace lamina
