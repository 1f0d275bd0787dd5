#include "platform/base/Localization.h"

#include <gtest/gtest.h>

namespace lamina {
namespace {

TEST(Localization, ValuesTakeTheirPlacesInTheTranslatedText)
{
    setTextLookup([](std::string_view key) {
        return std::string(key == "%1 of %2" ? "von %2 die %1" : key == "folder" ? "Ordner" : "");
    });
    EXPECT_EQ(localizedString("folder"), "Ordner");
    EXPECT_EQ(localizedString("file"), "file") << "an empty answer is none";
    EXPECT_EQ(localizedText("%1 of %2", {"3", "7"}), "von 7 die 3");
    setTextLookup({});

    EXPECT_EQ(localizedText("%1: %2.", {"%2.jpg", "100%1"}), "%2.jpg: 100%1.") << "values are not looked at again";
    EXPECT_EQ(localizedText("%1 %2 %0 50% %", {"a"}), "a %2 %0 50% %");
}

} // namespace
} // namespace lamina
