#include "platform/base/Localization.h"

#include <cstddef>
#include <memory>
#include <mutex>
#include <utility>

namespace lamina {

namespace {

struct InstalledLookup {
    std::mutex mutex;
    std::shared_ptr<const TextLookup> lookup;
};

InstalledLookup& installed()
{
    static InstalledLookup* const instance = new InstalledLookup;
    return *instance;
}

} // namespace

std::string localizedString(std::string_view key)
{
    std::shared_ptr<const TextLookup> lookup;
    {
        const std::lock_guard lock(installed().mutex);
        lookup = installed().lookup;
    }
    std::string text = lookup ? (*lookup)(key) : std::string();
    return text.empty() ? std::string(key) : text;
}

std::string localizedText(std::string_view key, const std::vector<std::string>& values)
{
    const std::string pattern = localizedString(key);
    std::string text;
    for (std::size_t i = 0; i < pattern.size(); ++i) {
        const bool place =
            pattern[i] == '%' && i + 1 < pattern.size() && pattern[i + 1] >= '1' && pattern[i + 1] <= '9';
        const std::size_t value = place ? static_cast<std::size_t>(pattern[i + 1] - '1') : values.size();
        if (value < values.size()) {
            text += values[value];
            ++i;
        } else {
            text += pattern[i];
        }
    }
    return text;
}

void setTextLookup(TextLookup lookup)
{
    std::shared_ptr<const TextLookup> shared;
    if (lookup)
        shared = std::make_shared<const TextLookup>(std::move(lookup));
    const std::lock_guard lock(installed().mutex);
    installed().lookup.swap(shared);
}

} // namespace lamina
