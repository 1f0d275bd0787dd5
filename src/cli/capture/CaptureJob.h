#pragma once

#include "cli/movie/MovieChain.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/Result.h"
#include "platform/media/AVCaptureDevice.h"

#include <memory>
#include <string>

namespace lamina {

/// What is to be made of a camera's frames.
struct CaptureJob {
    std::shared_ptr<AVCaptureDevice> camera;
    const MovieChain* chain = nullptr; ///< that was read
    std::string output;

    // Of clips.
    std::string fileType; ///< of AVAssetWriter; empty: a still is taken
    int crf = 18;
    IntSize size{1280, 720}; ///< that the camera is asked for
    double frameRate = 0;    ///< likewise; 0: what it likes
    double seconds = 0;      ///< 0: until somebody ends it
    bool isMute = false;

    /// Or a still.
    bool isClip() const { return !fileType.empty(); }
    /// What a camera says of itself, under its name where it names none.
    Error ofCamera(const Error& error) const
    {
        return error.subject.empty() ? Error{camera->localizedName(), error.cause} : error;
    }
    /// Who draws what goes wrong: the last filter or, for want of one, the camera.
    std::string drawerName() const { return chain->isEmpty() ? camera->localizedName() : chain->names().back(); }
};

} // namespace lamina
