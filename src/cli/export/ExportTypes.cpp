#include "cli/export/ExportTypes.h"

#include "cli/common/NearestName.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <system_error>

namespace lamina {

namespace {

std::string inSmallLetters(std::string text)
{
    std::ranges::transform(text, text.begin(), [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}

/// "a, b or c".
std::string listed(const std::vector<std::string_view>& names, std::string_view before = "")
{
    std::string list;
    for (const std::string_view& name : names)
        list.append(list.empty() ? "" : &name == &names.back() ? " or " : ", ").append(before).append(name);
    return list;
}

std::vector<std::string_view> typeNames()
{
    std::vector<std::string_view> names;
    for (const ExportType& type : exportTypes())
        names.push_back(type.name);
    return names;
}

} // namespace

const std::vector<ExportType>& exportTypes()
{
    using enum SavingtypeMethod;
    static const std::vector<ExportType> types{
        {jpg, "jpg", {"jpg", "jpeg"}, kChoosesSize | kChoosesQuality},
        {png, "png", {"png"}, kChoosesSize | kChoosesTransparency},
        {pdfStandard, "pdf-standard", {"pdf"}, kChoosesNotes},
        {pdfPrint, "pdf-print", {"pdf"}, kChoosesNotes | kChoosesCropMarks | kChoosesProfile | kChoosesPixelsPerInch},
        {svg, "svg", {"svg"}, kChoosesTransparency},
        {mp4, "mp4", {"mp4"}, kChoosesQuality},
        {tiff, "tiff", {"tiff", "tif"}, 0},
    };
    return types;
}

std::string exportTypeNames()
{
    return listed(typeNames());
}

Result<const ExportType*> exportTypeNamed(const std::string& name)
{
    for (const ExportType& type : exportTypes())
        if (type.name == name)
            return &type;
    return Error{name, "there is no such type; " + didYouMean(name, typeNames())};
}

Result<ExportPlace> exportPlaceOf(const std::string& output, const ExportType& type)
{
    const std::filesystem::path path(output);
    std::error_code ignored;
    if (output == "-")
        return Error{output, "an export is a file: name one, or a folder"};
    if (!path.has_filename() || std::filesystem::is_directory(path, ignored))
        return ExportPlace{output, {}};
    const std::string extension = inSmallLetters(path.extension().string());
    if (extension.empty() || std::ranges::count(type.extensions, extension.substr(1)) == 0)
        return Error{output, "the name of the output must end in " + listed(type.extensions, ".")};
    const std::string folder = path.parent_path().string();
    return ExportPlace{folder.empty() ? "." : folder, path.filename().string()};
}

} // namespace lamina
