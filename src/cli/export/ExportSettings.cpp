#include "cli/export/ExportSettings.h"

#include "cli/common/Command.h"
#include "export/MP4VideoController.h"
#include "gpu/core/TypedValue.h"

#include <CLI/App.hpp>
#include <CLI/Option.hpp>
#include <CLI/Validators.hpp>
#include <algorithm>
#include <array>
#include <cctype>
#include <string_view>

namespace lamina {

namespace {

// The sliders' ranges.
constexpr ValueRange kSizes{0.5, 2.5};
constexpr ValueRange kPictureQualities{0.1, 1};
constexpr ValueRange kVideoQualities{0.2, 1.5};
constexpr ValueRange kPixelsPerInch{1, 4800};

constexpr const char* kGroup = "Options of the types";

auto numberIn(const ValueRange& range)
{
    return checkedBy([range](const std::string& text) { return parseNumber(text, range); });
}

struct NamedQuality {
    std::string_view name; ///< as the screen has it
    VideoQuality quality;
};
constexpr std::array<NamedQuality, 3> kNamedQualities{
    {{"Low", VideoQuality::Low}, {"Medium", VideoQuality::Medium}, {"High", VideoQuality::High}}};

bool isSame(std::string_view one, std::string_view other)
{
    return std::ranges::equal(one, other,
                              [](unsigned char a, unsigned char b) { return std::tolower(a) == std::tolower(b); });
}

std::optional<VideoQuality> qualityNamed(std::string_view name)
{
    for (const NamedQuality& named : kNamedQualities)
        if (isSame(named.name, name))
            return named.quality;
    return std::nullopt;
}

} // namespace

Result<VideoQuality> parseVideoQuality(const std::string& text)
{
    if (const std::optional<VideoQuality> named = qualityNamed(text))
        return *named;
    const Result<double> number = parseNumber(text, kVideoQualities);
    if (!number)
        return Error{text, "expected low, medium, high or a number from 0.2 to 1.5"};
    MP4VideoController screen;
    screen.qualitySliderAction(static_cast<float>(*number));
    return *qualityNamed(screen.sizelbl());
}

void ExportSettings::add(ExportChoice choice, CLI::Option* option)
{
    option->group(kGroup);
    m_all.emplace_back(choice, option);
}

void ExportSettings::addTo(CLI::App& options)
{
    add(kChoosesSize,
        options.add_option("--size", m_size, "jpg, png: sides of the picture, 0.5 to 2.5 times its own [1]")
            ->type_name("F")
            ->check(numberIn(kSizes)));
    add(kChoosesTransparency, options.add_flag("--transparency", m_options.transparency,
                                               "png, svg: Keep what is transparent instead of laying it on white"));
    add(kChoosesQuality, options
                             .add_option("--quality", m_quality,
                                         "jpg: 0.1 to 1 [1]; mp4: low, medium, high or the slider's 0.2 to 1.5 [high]")
                             ->type_name("Q"));
    add(kChoosesNotes,
        options.add_flag("--notes", m_options.notes, "pdf-standard, pdf-print: A line below the picture"));
    add(kChoosesCropMarks,
        options.add_flag("--crop-marks", m_options.cropMarks, "pdf-print: Marks that show where to cut"));
    add(kChoosesProfile, options.add_option("--profile", m_profile, "pdf-print: rgb, or cmyk for a print shop [rgb]")
                             ->type_name("NAME")
                             ->check(CLI::IsMember({"rgb", "cmyk"})));
    add(kChoosesPixelsPerInch, options
                                   .add_option("--ppi", m_options.pixelsPerInch,
                                               "pdf-print: Pixels an inch on paper; a print shop wants 300 [72]")
                                   ->type_name("N")
                                   ->check(numberIn(kPixelsPerInch)));
}

Outcome ExportSettings::parseQuality(SavingtypeMethod type)
{
    if (m_quality.empty())
        return success();
    if (type == SavingtypeMethod::mp4) {
        const Result<VideoQuality> quality = parseVideoQuality(m_quality);
        if (!quality)
            return Error{"--quality", quality.error().cause + ", not '" + m_quality + "'"};
        m_options.video = *quality;
        return success();
    }
    const Result<double> quality = parseNumber(m_quality, kPictureQualities);
    if (!quality)
        return Error{"--quality", quality.error().cause + ", not '" + m_quality + "'"};
    m_options.quality = *quality;
    return success();
}

Outcome ExportSettings::check(const ExportType* type)
{
    for (const auto& [choice, option] : m_all) {
        if (option->count() == 0 || (type && (type->choices & choice)))
            continue;
        return Error{option->get_name(),
                     type ? "is no option of " + std::string(type->name) : std::string("is for --as TYPE")};
    }
    m_options.colors = m_profile == "cmyk" ? PrintColors::CMYK : PrintColors::RGB;
    return type ? parseQuality(type->type) : success();
}

ExportOptions ExportSettings::optionsFor(const UIImage& picture) const
{
    ExportOptions options = m_options;
    options.width = picture.size().width * m_size;
    options.height = picture.size().height * m_size;
    return options;
}

} // namespace lamina
