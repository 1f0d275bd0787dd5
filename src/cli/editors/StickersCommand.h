#pragma once

#include "cli/common/Command.h"
#include "cli/common/ExitCode.h"

#include <CLI/App.hpp>

namespace lamina {

/// `lamina stickers`: what `lamina blend --sticker` can lay on a picture, for people and for programs.
class StickersCommand : public Command {
public:
    explicit StickersCommand(CLI::App& application);

    ExitCode run() override;

private:
    bool m_json = false;
};

} // namespace lamina
