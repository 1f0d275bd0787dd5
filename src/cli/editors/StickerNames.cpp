#include "cli/editors/StickerNames.h"

#include "cli/common/Messages.h"
#include "cli/common/NearestName.h"

#include <algorithm>
#include <cctype>
#include <string>
#include <vector>

namespace lamina {

namespace {

unsigned char folded(unsigned char c)
{
    return c == '-' ? ' ' : static_cast<unsigned char>(std::tolower(c));
}

bool isSame(std::string_view typed, std::string_view known)
{
    return std::ranges::equal(typed, known, {}, folded, folded);
}

std::vector<std::string_view> allNames()
{
    std::vector<std::string_view> names;
    for (const StickerEntry& sticker : stickerCatalogue())
        names.insert(names.end(), {sticker.word, sticker.name});
    return names;
}

} // namespace

Result<const StickerEntry*> stickerNamed(std::string_view text)
{
    for (const StickerEntry& sticker : stickerCatalogue())
        if (isSame(text, sticker.name) || isSame(text, sticker.word))
            return &sticker;
    const std::string typed = beginning(text);
    return Error{typed, "there is no sticker '" + typed + "'; " + didYouMean(text, allNames()) +
                            " lamina stickers lists them"};
}

} // namespace lamina
