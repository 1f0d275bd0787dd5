#include "gpu/filters/color/LookupTables.h"

#include "platform/base/Log.h"
#include "platform/base/MemoryWarning.h"
#include "platform/base/NotificationCenter.h"
#include "platform/base/Result.h"
#include "platform/image/codecs/PictureDecoding.h"
#include "platform/image/pixels/UIImage.h"

#include <cstdint>
#include <map>
#include <mutex>
#include <string>
#include <string_view>

// The assembler takes a file into the object as it is; compilers have no way of their own. Not a template: the
// assembler's text must be one literal. The build defines the folder, and builds this file again when a table changes.
#define LAMINA_EMBED(table)                                                                                            \
    asm(".pushsection .rodata\n"                                                                                       \
        ".globl lamina_" #table "\n"                                                                                   \
        ".hidden lamina_" #table "\n"                                                                                  \
        ".globl lamina_" #table "_end\n"                                                                               \
        ".hidden lamina_" #table "_end\n"                                                                              \
        "lamina_" #table ":\n"                                                                                         \
        ".incbin \"" LAMINA_LOOKUP_FOLDER "/" #table ".png\"\n"                                                        \
        "lamina_" #table "_end:\n"                                                                                     \
        ".popsection\n");                                                                                              \
    extern "C" const std::uint8_t lamina_##table[] __attribute__((visibility("hidden")));                              \
    extern "C" const std::uint8_t lamina_##table##_end[] __attribute__((visibility("hidden")))

LAMINA_EMBED(lookup_amatorka);
LAMINA_EMBED(lookup_identity);
LAMINA_EMBED(lookup_miss_etikate);
LAMINA_EMBED(lookup_soft_elegance_1);
LAMINA_EMBED(lookup_soft_elegance_2);

#undef LAMINA_EMBED

namespace lamina {

namespace {

struct Table {
    std::string_view fileName;
    const std::uint8_t* begin;
    const std::uint8_t* end;
};

const Table kTables[] = {
    {"lookup_amatorka.png", lamina_lookup_amatorka, lamina_lookup_amatorka_end},
    {"lookup_identity.png", lamina_lookup_identity, lamina_lookup_identity_end},
    {"lookup_miss_etikate.png", lamina_lookup_miss_etikate, lamina_lookup_miss_etikate_end},
    {"lookup_soft_elegance_1.png", lamina_lookup_soft_elegance_1, lamina_lookup_soft_elegance_1_end},
    {"lookup_soft_elegance_2.png", lamina_lookup_soft_elegance_2, lamina_lookup_soft_elegance_2_end},
};

CGImage decode(const Table& table)
{
    const Result<UIImage> picture = decodePicture({table.begin, table.end}, std::string(table.fileName));
    if (!picture) {
        logError(picture.error().subject + ": " + picture.error().cause);
        return {};
    }
    return picture->cgImage();
}

/// The tables that have been asked for; a memory warning drops the pictures, which can be decoded again.
class DecodedTables {
public:
    CGImage table(std::string_view fileName)
    {
        const std::lock_guard lock(m_mutex);
        for (const Table& table : kTables) {
            if (table.fileName != fileName)
                continue;
            const auto known = m_pictures.find(table.fileName);
            return known != m_pictures.end() ? known->second
                                             : m_pictures.emplace(table.fileName, decode(table)).first->second;
        }
        return {};
    }

private:
    void clear()
    {
        const std::lock_guard lock(m_mutex);
        m_pictures.clear();
    }

    std::mutex m_mutex;
    std::map<std::string_view, CGImage> m_pictures;
    NotificationObserver m_memoryWarningObserver = NotificationCenter::defaultCenter().addObserver(
        UIApplicationDidReceiveMemoryWarningNotification, [this](const Notification&) { clear(); });
};

} // namespace

CGImage lookupTable(std::string_view fileName)
{
    static DecodedTables& decoded = *new DecodedTables; // never destroyed: filters may be made until the very end
    return decoded.table(fileName);
}

} // namespace lamina
