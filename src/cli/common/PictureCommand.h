#pragma once

#include "cli/common/Command.h"
#include "cli/common/ExitCode.h"
#include "platform/base/Result.h"
#include "platform/image/codecs/PictureDecoding.h"
#include "platform/image/pixels/UIImage.h"

#include <CLI/App.hpp>
#include <cstddef>
#include <string>
#include <vector>

namespace lamina {

/// A subcommand that makes one picture of others: everything is checked, then everything is read, then the picture is
/// made, then it is written, so that the output may be one of the inputs. Each step that fails has its own exit code.
class PictureCommand : public Command {
public:
    ExitCode run() override;

protected:
    /// `pictures`: what messages call the inputs, "pictures" or "photos".
    PictureCommand(CLI::App& application, const std::string& name, const std::string& about,
                   std::string pictures = "pictures");

    /// Adds `--output`: a picture's file, unless something else is told about it.
    CLI::Option* addOutput(const std::string& about = {});
    const std::string& output() const { return m_output; }

    /// The files of all pictures, in the order in which they are read; "-" is standard input.
    virtual std::vector<std::string> inputs() const = 0;

    /// Understands the arguments, before any file is opened; ends with `checkFiles`. What fails is wrong usage.
    virtual Outcome check() = 0;
    /// Standard input is read only once, and the output's name tells a format; whether there must be one.
    Outcome checkFiles(bool needsOutput = true) const;
    /// Whether the output could be written by its name alone: a picture of a format that its extension tells.
    virtual Outcome checkOutput() const;

    /// The most memory for the pixels of what is worked on at a time, in bytes.
    virtual std::size_t memoryLimit() const { return DecodeOptions().memoryLimit; }
    /// Reads what `inputs` names, upright and in full size, one after the other. What fails is an input.
    virtual Result<std::vector<UIImage>> read();
    /// The picture, from as many as `read` gave.
    virtual Result<UIImage> make(std::vector<UIImage> pictures) = 0;
    /// Hands over what was made: writes it to the output.
    virtual ExitCode deliver(const UIImage& picture);

private:
    std::string m_pictures;
    std::string m_output;
};

} // namespace lamina
