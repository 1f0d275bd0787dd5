#include "cli/editors/StickersCommand.h"

#include "cli/common/JsonText.h"
#include "cli/common/Messages.h"
#include "editors/stickers/StickerCatalogue.h"

#include <nlohmann/json.hpp>
#include <optional>
#include <string>

namespace lamina {

namespace {

std::string stickersAsText()
{
    std::string text;
    std::optional<StickerGroup> group;
    for (const StickerEntry& sticker : stickerCatalogue()) {
        if (group != sticker.group)
            text.append(text.empty() ? "" : "\n").append(stickerGroupTitle(sticker.group)).append(":\n");
        group = sticker.group;
        text.append("  ").append(sticker.name).append("  ").append(sticker.word).append("\n");
    }
    return text;
}

std::string stickersAsJson()
{
    nlohmann::ordered_json list = nlohmann::ordered_json::array();
    for (const StickerEntry& sticker : stickerCatalogue())
        list.push_back({{"name", sticker.name}, {"word", sticker.word}, {"group", stickerGroupTitle(sticker.group)}});
    return jsonText(list);
}

} // namespace

StickersCommand::StickersCommand(CLI::App& application)
    : Command(application, "stickers", "List the stickers that blend and collage can lay on a picture")
{
    options().add_flag("--json", m_json, "Print the list for programs");
    addQuiet(); // as everywhere, although a list is no message
    options().footer("Example: lamina blend a.jpg b.jpg -o blend.png --sticker ice-cream@280,90,140,140,15");
}

ExitCode StickersCommand::run()
{
    return printData(m_json ? stickersAsJson() : stickersAsText());
}

} // namespace lamina
