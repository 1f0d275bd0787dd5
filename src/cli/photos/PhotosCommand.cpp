#include "cli/photos/PhotosCommand.h"

#include "app/PhotoFolders.h"
#include "cli/common/JsonText.h"
#include "cli/common/Messages.h"
#include "cli/common/NearestName.h"
#include "cli/photos/PhotoImport.h"
#include "cli/photos/PhotoWatch.h"
#include "picker/CollectionItem.h"
#include "platform/files/FileCauses.h"
#include "platform/photos/PHAsset.h"
#include "platform/photos/PHPhotoLibrary.h"

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <unistd.h>

namespace lamina {

namespace fs = std::filesystem;

namespace {

/// An existing folder's path as the library writes it.
std::string fullPath(const std::string& path)
{
    std::error_code failure;
    const fs::path full = fs::canonical(path, failure);
    return failure ? path : full.string();
}

/// The album of this title or, where it holds a slash or no title is this, of this folder. The error's subject is what
/// was typed.
Result<CollectionItem> albumNamed(const std::string& typed, const std::vector<CollectionItem>& albums)
{
    const auto isTitle = [&typed](const CollectionItem& item) { return item.collection.localizedTitle == typed; };
    const auto titled = std::count_if(albums.begin(), albums.end(), isTitle);
    if (titled == 1)
        return *std::find_if(albums.begin(), albums.end(), isTitle);
    if (titled > 1)
        return Error{typed, "several albums have this title: name the folder instead"};
    const std::string folder = fullPath(typed);
    for (const CollectionItem& item : albums)
        if (!item.collection.path.empty() && fullPath(item.collection.path) == folder)
            return item;
    std::vector<std::string_view> titles;
    titles.reserve(albums.size());
    for (const CollectionItem& item : albums)
        titles.push_back(item.collection.localizedTitle);
    return Error{beginning(typed), titles.empty() ? "there is no such album, as there are no photos"
                                                  : "there is no such album; " + didYouMean(typed, titles)};
}

} // namespace

PhotosCommand::PhotosCommand(CLI::App& application)
    : Command(application, "photos", "List, import and watch the photo library")
{
    // Other runs of the command do without them: their start has few kilobytes to spare.
    options().preparse_callback([this](std::size_t) { addActions(); });
}

void PhotosCommand::addActions()
{
    if (m_albums != nullptr)
        return;
    m_albums = &addAction("albums", "List the albums that hold photos, as the picker shows them");
    m_list = &addAction("list", "List the photos, newest first");
    m_import = &addAction("import", "Copy pictures into the library, and print where they are now");
    m_watch = &addAction("watch", "Print a line for each photo that comes, goes or changes, until stopped");
    options().require_subcommand(1);
    m_list->add_option("ALBUM", m_album, "Only this album, by its title or folder")->type_name("");
    addNull(*m_list);
    m_import->add_option("FILE", m_files, "Pictures")->type_name("")->required();
    addNull(*m_import);
    options().footer("Example: lamina photos list Holidays -0 | xargs -0 -n 1 gimp");
}

CLI::App& PhotosCommand::addAction(const std::string& name, const std::string& about)
{
    CLI::App& action = *options().add_subcommand(name, about);
    action.set_help_flag("-h,--help", "Print this help and leave");
    action
        .add_option("--photos", m_folders,
                    "A folder that belongs to the library beside those of the window; may be given again")
        ->type_name("DIR")
        ->expected(1)
        ->allow_extra_args(false)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
    action.add_flag("--json", m_json, "Print for programs");
    addQuiet(action);
    return action;
}

void PhotosCommand::addNull(CLI::App& action)
{
    action.add_flag("-0,--null", m_null, "End each path with a byte 0 instead of a line, for xargs -0")
        ->excludes("--json");
}

Outcome PhotosCommand::takeFolders() const
{
    std::vector<std::string> folders = keptPhotoFolders();
    for (const std::string& folder : m_folders) {
        std::error_code ignored;
        if (!fs::is_directory(folder, ignored))
            return Error{folder, cause::kNoSuchFolder};
        folders.push_back(fs::absolute(folder, ignored).lexically_normal().string());
    }
    PHPhotoLibrary::setFurtherFolders(std::move(folders));
    return success();
}

PathForm PhotosCommand::pathForm() const
{
    if (m_null)
        return PathForm::Null;
    return ::isatty(STDOUT_FILENO) != 0 ? PathForm::Terminal : PathForm::Line;
}

ExitCode PhotosCommand::run()
{
    if (const Outcome taken = takeFolders(); !taken)
        return fail(taken.error(), ExitCode::Input);
    if (m_import->parsed())
        return importFiles();
    if (m_watch->parsed())
        return watch();
    PHPhotoLibrary::waitUntilComplete();
    if (!PHPhotoLibrary::isComplete())
        return fail({"photos", "the library can't be read to its end"}, ExitCode::Failed);
    return m_albums->parsed() ? listAlbums() : listPhotos();
}

ExitCode PhotosCommand::listAlbums() const
{
    const std::vector<CollectionItem> albums = fetchCollectionItems();
    return printData(m_json ? albumsAsJSON(albums) : albumsAsText(albums));
}

ExitCode PhotosCommand::listPhotos() const
{
    const std::vector<CollectionItem> albums = fetchCollectionItems();
    CollectionItem wanted = albums.empty() ? CollectionItem() : albums.front(); // all photos
    if (!m_album.empty()) {
        const Result<CollectionItem> named = albumNamed(m_album, albums);
        if (!named)
            return fail(named.error(), ExitCode::Input);
        wanted = *named;
    }
    std::string text;
    nlohmann::ordered_json list = nlohmann::ordered_json::array();
    wanted.assets.enumerateObjects([&](const PHAsset& asset) {
        if (m_json)
            list.push_back(assetAsJSON(asset));
        else
            text += pathText(asset.path, pathForm());
    });
    return printData(m_json ? jsonText(list) : text);
}

ExitCode PhotosCommand::importFiles() const
{
    ExitCode code = ExitCode::Good;
    nlohmann::ordered_json list = nlohmann::ordered_json::array();
    for (const std::string& file : m_files) {
        const Result<PHAsset> asset = importPhoto(file);
        if (!asset) {
            code = fail(asset.error(), asset.error().subject == file ? ExitCode::Input : ExitCode::Output);
            continue;
        }
        if (m_json)
            list.push_back(assetAsJSON(*asset));
        else if (const ExitCode written = printData(pathText(asset->path, pathForm())); written != ExitCode::Good)
            return written;
    }
    if (!m_json)
        return code;
    const ExitCode written = printData(jsonText(list));
    return code == ExitCode::Good ? written : code;
}

ExitCode PhotosCommand::watch() const
{
    const auto line = [this](PhotoEvent event, const PHAsset& asset) {
        if (!m_json)
            return nameOf(event) + (' ' + pathText(asset.path, pathForm()));
        nlohmann::ordered_json json{{"event", nameOf(event)}};
        json.update(event == PhotoEvent::Removed ? placeAsJSON(asset) : assetAsJSON(asset));
        return jsonText(json, -1);
    };
    return watchPhotos(line, isQuiet());
}

} // namespace lamina
