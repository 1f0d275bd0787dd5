#include "export/functions/ExportPlaces.h"

#include "platform/files/FileCauses.h"
#include "platform/files/PrivateFolder.h"
#include "platform/photos/PictureFolders.h"

#include <filesystem>
#include <system_error>

namespace lamina {

Result<std::string> exportPath(const ExportPlace& place, const std::string& standardFolder,
                               const std::string& standardName)
{
    const std::string& folder = place.folder.empty() ? standardFolder : place.folder;
    const std::string& name = place.file.empty() ? standardName : place.file;
    if (name == "." || name == ".." || name.find('/') != std::string::npos || name.find('\0') != std::string::npos)
        return Error{name, cause::kNoFileName};
    if (place.folder.empty())
        if (Outcome made = makeFolder(folder); !made)
            return made.error();
    const std::string path = folder + (folder.ends_with('/') ? "" : "/") + name;
    std::error_code ignored;
    if (!place.isChosen() && std::filesystem::is_symlink(path, ignored))
        return Error{path, "is a link to another file"};
    return path;
}

Result<std::string> exportPath(const ExportPlace& place, const std::string& standardName)
{
    return exportPath(place, documentsFolder(), standardName);
}

} // namespace lamina
