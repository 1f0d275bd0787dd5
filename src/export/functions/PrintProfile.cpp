#include "export/functions/PrintProfile.h"

#include "platform/files/FileReading.h"
#include "platform/files/ProgramFolder.h"
#include "platform/image/pixels/ColorConversion.h"

#include <cstddef>
#include <string>
#include <utility>

namespace lamina {

namespace {

constexpr std::size_t kLargestProfile = std::size_t{8} << 20;

Result<std::vector<std::uint8_t>> readInstalled(const std::string& name)
{
    const std::string path = installedFile("LAMINA_PROFILES", "../share/lamina/profiles", name);
    if (path.empty())
        return Error{name, "the colour profile for print is not installed"};
    return readSmallFile(path, kLargestProfile);
}

} // namespace

Result<CGColorSpace> printColorSpace()
{
    const std::string name = "FOGRA39-coated.icc";
    Result<std::vector<std::uint8_t>> profile = readInstalled(name);
    if (!profile)
        return profile.error();
    if (profileModel(*profile) != CGColorSpace::Model::CMYK)
        return Error{name, "is no profile of inks"};
    return CGColorSpace::withProfile(CGColorSpace::Model::CMYK, std::move(*profile));
}

Result<std::vector<std::uint8_t>> compressedPrintProfile()
{
    return readInstalled("FOGRA39-coated.icc.zlib");
}

} // namespace lamina
