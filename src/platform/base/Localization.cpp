#include "platform/base/Localization.h"

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

void setTextLookup(TextLookup lookup)
{
    std::shared_ptr<const TextLookup> shared;
    if (lookup)
        shared = std::make_shared<const TextLookup>(std::move(lookup));
    const std::lock_guard lock(installed().mutex);
    installed().lookup.swap(shared);
}

} // namespace lamina
