// The album list and the large photo in the window, by finger and by keys.
#include "WindowTest.h"

#include "picker/YMSAlbumPickerViewController.h"
#include "picker/YMSSinglePhotoViewController.h"

#include <optional>
#include <vector>

namespace lamina::test {
namespace {

class PickerScreens : public WindowTest {
protected:
    void show(const std::shared_ptr<UIViewController>& screen)
    {
        open();
        home = driver->application().screens().window().topViewController();
        home->present(screen, true);
        driver->settle();
    }
    bool isHome()
    {
        return WindowDriver::waitUntil([&] { return driver->top<UIViewController>() == home; });
    }
    double bottomOf(const char* name)
    {
        QQuickItem* const item = driver->item(QString::fromUtf8(name));
        return item ? item->mapToScene({0, item->height()}).y() : -1;
    }

    std::shared_ptr<UIViewController> home;
};

TEST_F(PickerScreens, TheAlbumListScrollsAwayFromItsBarAndIsWorkedByKeys)
{
    std::vector<CollectionItem> albums;
    for (int i = 10; i < 40; ++i)
        albums.push_back({{std::to_string(i), "Album " + std::to_string(i), {}, {}, {}}, {}});
    albums.push_back({{"z", "Zoo", {}, {}, {}}, {}});
    std::optional<CollectionItem> chosen;
    const auto list = std::make_shared<YMSAlbumPickerViewController>(
        albums, albums[1], [&](const std::optional<CollectionItem>& item) { chosen = item; });
    show(list);
    EXPECT_EQ(bottomOf("Album 10, 0 photos"), 52 + 6 + 72);

    driver->drag({160, 500}, {0, -300});
    EXPECT_TRUE(WindowDriver::waitUntil([&] { return list->barHiding().alpha().value() == 0; }));
    driver->drag({160, 200}, {0, 400});
    EXPECT_TRUE(WindowDriver::waitUntil([&] { return list->barHiding().alpha().value() == 1; }));

    driver->drag({160, 500}, {0, -300});
    EXPECT_TRUE(WindowDriver::waitUntil([&] { return list->barHiding().alpha().value() == 0; }));
    driver->view().resize(kWidth, 4 * kHeight);
    EXPECT_TRUE(WindowDriver::waitUntil([&] { return list->barHiding().alpha().value() == 1; })) << "all is in sight";
    driver->view().resize(kWidth, kHeight);
    driver->settle();

    driver->press(Qt::Key_End);
    EXPECT_EQ(driver->ringedName(), "Zoo, 0 photos");
    EXPECT_EQ(bottomOf("Zoo, 0 photos"), kHeight) << "nothing of the footer is seen";
    driver->press(Qt::Key_Home);
    EXPECT_EQ(bottomOf("Album 10, 0 photos"), 52 + 6 + 72);
    EXPECT_EQ(list->barHiding().alpha().value(), 1);
    driver->press(Qt::Key_Down);
    EXPECT_EQ(driver->ringedName(), "Album 11, 0 photos, chosen");
    driver->press(Qt::Key_Z);
    EXPECT_EQ(driver->ringedName(), "Zoo, 0 photos");
    driver->press(Qt::Key_Return);
    EXPECT_TRUE(isHome());
    EXPECT_EQ(chosen, albums.back());
}

TEST_F(PickerScreens, TheLargePhotoIsZoomedAndAddedByKeysAndFingers)
{
    const auto manager = std::make_shared<PHImageManager>();
    std::string heard;
    const auto photo = std::make_shared<YMSSinglePhotoViewController>(
        PHAsset{.localIdentifier = "sea", .path = sample("sea-sunset.jpg"), .pixelWidth = 3, .pixelHeight = 2}, manager,
        [&](bool selected) { heard += selected ? 'y' : 'n'; });
    photo->setStateOfPhoto([](const PHAsset&) { return SinglePhotoState{QStringLiteral("2 of 3"), true}; });
    show(photo);
    EXPECT_NE(driver->item(QStringLiteral("2 of 3")), nullptr);
    EXPECT_FALSE(photo->isWaiting());
    driver->press(Qt::Key_Plus);
    EXPECT_GT(photo->zoomScale(), 1);
    driver->press(Qt::Key_Minus);
    EXPECT_EQ(photo->zoomScale(), 1);

    using Style = YMSSinglePhotoViewController::PresentationStyle;
    driver->tapAt({160, 300});
    driver->settle();
    EXPECT_EQ(photo->presentationStyle(), Style::FullPicture);
    EXPECT_EQ(driver->item(QStringLiteral("Add")), nullptr);
    EXPECT_EQ(driver->grab().pixelColor(5, 5), QColor(Qt::black));
    driver->doubleTapAt({160, 300});
    EXPECT_GT(photo->zoomScale(), 1);
    EXPECT_EQ(photo->presentationStyle(), Style::FullPicture);
    driver->press(Qt::Key_Minus);
    driver->press(Qt::Key_Minus);
    driver->press(Qt::Key_Minus);
    driver->press(Qt::Key_Minus);
    driver->press(Qt::Key_Minus);
    EXPECT_EQ(photo->zoomScale(), 1);
    EXPECT_EQ(photo->presentationStyle(), Style::Bars);
    EXPECT_NE(driver->item(QStringLiteral("Add")), nullptr);
    driver->press(Qt::Key_Return);
    EXPECT_TRUE(isHome());
    EXPECT_EQ(heard, "y");
}

} // namespace
} // namespace lamina::test
