#pragma once

#include "platform/base/Result.h"
#include "platform/media/AVAssetReader.h"
#include "platform/media/AVCaptureDevice.h"

#include <memory>
#include <optional>
#include <vector>

namespace lamina {

/// The cameras and microphones that PipeWire knows. The module that speaks to it is loaded, and its service reached, in
/// the background when that is first asked for; a program that never asks pays nothing. From any thread; never
/// destroyed.
class CaptureService {
public:
    /// The one of the process.
    static CaptureService& shared();

    /// Begins, or begins anew, and returns at once. `descriptor`: a connected socket of PipeWire's, as the desktop's
    /// portal gives it, which this owns from now on; -1: the session's own. Each time the devices are other ones,
    /// `AVCaptureDevice::devicesDidChange` is called; where the service goes away this goes on trying to reach it, but
    /// for one that was reached by a descriptor: whoever gave that asks the portal for another one, which `error`
    /// tells.
    void start(int descriptor = -1);
    /// And not stopped since.
    bool isStarted() const;
    /// Lets go of the service: there are no devices any more.
    void stop();

    /// Those that are there now; the system's default first.
    std::vector<std::shared_ptr<AVCaptureDevice>> devices(AVTrackMediaType type) const;
    /// Waits until the first list of devices is complete; false when that took longer, or there will be none.
    bool waitUntilListed(double seconds);
    /// Why there are no devices: support isn't installed, PipeWire doesn't run. None while it runs, or isn't asked.
    std::optional<Error> error() const;

    /// As the source of `AVCaptureDevice` where nobody has to ask the user: starts when devices are first asked for.
    static AVCaptureDevice::Source openSource();

private:
    struct State;
    CaptureService();
    State* m_state;
};

} // namespace lamina
