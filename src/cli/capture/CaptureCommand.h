#pragma once

#include "cli/capture/CaptureClip.h"
#include "cli/capture/CaptureJob.h"
#include "cli/common/Command.h"
#include "cli/common/ExitCode.h"
#include "cli/movie/MovieChain.h"
#include "platform/base/Result.h"

#include <CLI/App.hpp>
#include <string>
#include <utility>
#include <vector>

namespace lamina {

/// `lamina capture`: a still or a clip of a camera, through filters if wanted, and what cameras there are. Everything
/// is checked before the camera is opened.
class CaptureCommand : public Command {
public:
    explicit CaptureCommand(CLI::App& application);

    ExitCode run() override;

private:
    void addClipOptions();

    ExitCode list() const;
    /// Understands the arguments. What fails is wrong usage.
    Outcome check();
    Outcome checkListing() const;
    /// What is captured, by the output's name.
    Outcome checkOutput();
    Outcome checkClip();

    ExitCode takeStill();
    ExitCode recordClip();
    /// Tells what was written.
    ExitCode tell(const CapturedClip& clip) const;

    bool m_lists = false;
    bool m_json = false;
    std::string m_camera;
    MovieChain m_chain;
    std::string m_sizeText;
    double m_rate = 0;
    std::string m_quality = "high";
    CaptureJob m_job;
    std::vector<const CLI::Option*> m_clipOptions;
};

} // namespace lamina
