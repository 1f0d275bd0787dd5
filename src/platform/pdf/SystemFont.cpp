#include "platform/pdf/SystemFont_p.h"

#include "platform/files/FileReading.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <string>

namespace lamina {

namespace {

namespace fs = std::filesystem;

constexpr const char* kFontFile = "LiberationSans-Bold.ttf";
constexpr std::size_t kLargestFont = std::size_t{16} << 20;
constexpr int kDeepestFolder = 5;

std::string environment(const char* name)
{
    const char* const value = std::getenv(name);
    return value ? value : "";
}

std::vector<fs::path> fontFolders()
{
    if (const std::string own = environment("LAMINA_FONTS"); !own.empty())
        return {own};
    std::vector<fs::path> folders;
    const std::string home = environment("HOME");
    if (const std::string data = environment("XDG_DATA_HOME"); !data.empty())
        folders.emplace_back(fs::path(data) / "fonts");
    else if (!home.empty())
        folders.emplace_back(fs::path(home) / ".local/share/fonts");
    if (!home.empty())
        folders.emplace_back(fs::path(home) / ".fonts");
    folders.insert(folders.end(), {"/usr/local/share/fonts", "/usr/share/fonts", "/run/host/fonts"});
    return folders;
}

/// The first by name of those below a folder; empty: none.
fs::path fontBelow(const fs::path& folder)
{
    std::error_code error;
    fs::recursive_directory_iterator file(folder, fs::directory_options::skip_permission_denied, error);
    fs::path found;
    for (; !error && file != fs::recursive_directory_iterator(); file.increment(error)) {
        if (file.depth() >= kDeepestFolder)
            file.disable_recursion_pending();
        if (file->path().filename() == kFontFile && (found.empty() || file->path() < found))
            found = file->path();
    }
    return found;
}

} // namespace

Result<std::vector<std::uint8_t>> readNoteFont()
{
    for (const fs::path& folder : fontFolders())
        if (const fs::path font = fontBelow(folder); !font.empty())
            return readSmallFile(font.string(), kLargestFont);
    return Error{{}, "the font Liberation Sans Bold is not installed"};
}

} // namespace lamina
