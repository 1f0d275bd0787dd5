#pragma once

#include "cli/common/Command.h"
#include "cli/common/ExitCode.h"
#include "cli/movie/MovieChain.h"
#include "cli/movie/MovieJob.h"
#include "platform/base/Result.h"

#include <CLI/App.hpp>
#include <string>

namespace lamina {

/// `lamina movie`: a movie into another file, perhaps through filters, in another size, or a part of it. Everything is
/// checked before a file is written.
class MovieCommand : public Command {
public:
    explicit MovieCommand(CLI::App& application);

    ExitCode run() override;

private:
    /// Understands the arguments, before any file is opened. What fails is wrong usage.
    Outcome check();
    Outcome checkRange();
    Outcome checkSize();
    /// Opens the movie and what filters read. What fails is an input.
    Outcome open();
    MovieEnd convert() const;
    /// Tells what was written.
    ExitCode tell(const MovieEnd& end) const;

    std::string m_input;
    MovieChain m_chain;
    double m_from = 0;
    double m_to = 0; ///< 0: the end
    std::string m_sizeText;
    std::string m_quality = "high";
    bool m_json = false;
    MovieJob m_job;
};

} // namespace lamina
