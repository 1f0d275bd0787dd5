#pragma once

#include "cli/common/Command.h"
#include "cli/common/ExitCode.h"
#include "cli/photos/PhotoTexts.h"
#include "platform/base/Result.h"

#include <CLI/App.hpp>
#include <string>
#include <vector>

namespace lamina {

/// `lamina photos`: the photo library's albums and photos, pictures into it, and what becomes of it.
class PhotosCommand : public Command {
public:
    explicit PhotosCommand(CLI::App& application);

    ExitCode run() override;

private:
    void addActions();
    CLI::App& addAction(const std::string& name, const std::string& about);
    void addNull(CLI::App& action);
    /// The library is the window's from now on, with the folders of `--photos`.
    Outcome takeFolders() const;
    PathForm pathForm() const;
    ExitCode listAlbums() const;
    ExitCode listPhotos() const;
    ExitCode importFiles() const;
    ExitCode watch() const;

    CLI::App* m_albums = nullptr;
    CLI::App* m_list = nullptr;
    CLI::App* m_import = nullptr;
    CLI::App* m_watch = nullptr;
    std::vector<std::string> m_folders;
    std::vector<std::string> m_files;
    std::string m_album;
    bool m_json = false;
    bool m_null = false;
};

} // namespace lamina
