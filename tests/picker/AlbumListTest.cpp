// The list of albums, and the bar that makes way for what scrolls.
#include "PhotoPickerFixture.h"

#include "picker/NavigationBarHiding.h"
#include "picker/PickerTexts.h"
#include "picker/ScrollDirection.h"
#include "picker/YMSAlbumCell.h"
#include "picker/YMSAlbumPickerViewController.h"

#include <QLocale>

#include <cmath>

namespace lamina::test {
namespace {

TEST(ScrollDirection, TheFirstAxisThatMovedTells)
{
    const struct {
        CGPoint offset;
        ScrollDirection direction;
    } steps[] = {
        {{0, 9}, ScrollDirection::Up},    {{5, 4}, ScrollDirection::Down}, {{2, 4}, ScrollDirection::Right},
        {{7, 4}, ScrollDirection::Left},  {{7, 4}, ScrollDirection::None}, {{0, 5}, ScrollDirection::Up},
        {{0, -3}, ScrollDirection::Down},
    };
    ScrollTracking tracking;
    for (const auto& step : steps) {
        yms_scrollViewDidScroll(tracking, step.offset);
        EXPECT_EQ(tracking.scrollDirection, step.direction) << &step - steps;
        EXPECT_EQ(tracking.lastContentOffset, step.offset);
    }
}

TEST(NavigationBarHiding, GoesWithTheContentBetweenItsEndsAndSettles)
{
    const auto settle = &NavigationBarHiding::scrollViewDidEndDragging;
    const auto rest = &NavigationBarHiding::scrollViewDidComeToRest;
    const struct {
        double y; ///< in a view 100 high over 1000
        void (NavigationBarHiding::*then)();
        double constant;
        const char* why;
    } steps[] = {
        {-20, nullptr, 0, "pulled beyond the top"},
        {10, nullptr, -30, "the way since then counts"},
        {5, nullptr, -25, "comes back with the content"},
        {5, settle, -25, "it moved last to nowhere"},
        {6, settle, -44, "upwards: hidden"},
        {700, nullptr, -44, "and no further"},
        {899, nullptr, -44, "at the lower end nothing moves it"},
        {890, nullptr, -35, "it has left the end by that"},
        {889, settle, 0, "downwards: there again"},
        {899.5, nullptr, 0, "beyond the lower end"},
        {880, nullptr, 0, "there already"},
        {890, rest, -44, "a wheel's step settles too"},
        {0, nullptr, -44, "the jump of a key leaves out the way"},
        {0, rest, 0, "but the top has its bar"},
    };
    NavigationBarHiding bar;
    for (const auto& step : steps) {
        bar.scrollViewDidScroll({0, step.y}, 100, 1000);
        if (step.then)
            (bar.*step.then)();
        EXPECT_EQ(bar.topConstraint().value(), step.constant) << step.why;
        EXPECT_EQ(bar.alpha().value(), step.constant / 44 + 1) << step.why;
    }
}

TEST(PickerTexts, NameADayAsTheUsersLanguageDoes)
{
    const struct {
        const char* locale;
        const char* day;
    } table[] = {
        {"C", "14 November 2026"},
        {"en_GB", "14 November 2026"},
        {"en_US", "November 14, 2026"},
        {"de_DE", "14. November 2026"},
        {"ja_JP", "2026年11月14日"},
        {"hu_HU", "2026. november 14."},
        {"es_ES", "14 de noviembre de 2026"},
    };
    for (const auto& [name, day] : table) {
        QLocale::setDefault(QLocale(QLatin1String(name)));
        EXPECT_EQ(dayText(1'794'657'600).toStdString(), day) << name; // noon in Greenwich
    }
    QLocale::setDefault(QLocale::c());
    EXPECT_EQ(dayText(1e300), "");
    EXPECT_EQ(dayText(std::nan("")), "");
    EXPECT_EQ(shownName("a\nb\xFF\t"), QString::fromUtf8("a\uFFFDb\uFFFD\uFFFD"));
}

class AlbumList : public PhotoPickerTest {
protected:
    void openList(const std::optional<CollectionItem>& selected)
    {
        list = std::make_shared<YMSAlbumPickerViewController>(
            items, selected, [this](const std::optional<CollectionItem>& item) {
                reported.push_back(item ? item->collection.localizedTitle : "none");
            });
        window.rootViewController()->present(list, false);
        settle();
    }
    YMSAlbumCell* cell(int row) { return qobject_cast<YMSAlbumCell*>(list->cellForRow(row)); }
    bool isGone() { return !window.rootViewController()->presentedViewController(); }

    void SetUp() override
    {
        PhotoPickerTest::SetUp();
        open(1);
        items = picker->collectionItems();
        picker->dismiss(false);
        settle();
        CollectionItem empty;
        empty.collection.localIdentifier = "none";
        empty.collection.localizedTitle = "Bad \xFF name";
        items.push_back(empty);
    }

    std::vector<CollectionItem> items; ///< All Photos, sea, town, and an empty one
    std::shared_ptr<YMSAlbumPickerViewController> list;
    std::vector<std::string> reported;
};

TEST_F(AlbumList, ShowsItsRowsAndChecksTheOneThatIsEqual)
{
    openList(items[1]);
    EXPECT_EQ(list->rowCount(), 4);
    EXPECT_EQ(list->selectedRow(), 1);
    const struct {
        const char* count;
        const char* spoken;
    } rows[] = {{"(7)", "All Photos, 7 photos"},
                {"(4)", "sea, 4 photos, chosen"},
                {"(2)", "town, 2 photos"},
                {"", "Bad \uFFFD name, 0 photos"}};
    for (int row = 0; row < 4; ++row) {
        const YMSAlbumCell* const shown = cell(row);
        EXPECT_EQ(shown->photosCountText(), rows[row].count);
        EXPECT_EQ(shown->spoken(), QString::fromUtf8(rows[row].spoken));
    }
    EXPECT_EQ(cell(4), nullptr);
    EXPECT_EQ(cell(-1), nullptr);
    EXPECT_EQ(list->footerViewHeight(), 2 * list->view().bounds().size.height);
    EXPECT_EQ(list->bottomContentInset(), -list->footerViewHeight());
    // The footer is no part of what can be scrolled to: this is the lower end.
    list->scrollViewDidScroll(100, 500, 600.5 + list->footerViewHeight());
    EXPECT_EQ(list->barHiding().topConstraint().value(), 0);
    list->scrollViewDidScroll(120, 500, 700 + list->footerViewHeight());
    EXPECT_EQ(list->barHiding().topConstraint().value(), -20);
    EXPECT_EQ(list->rowForTyping("t", 0), 2);
    EXPECT_EQ(list->rowForTyping(" ", 0), -1);

    // The same album with other photos is another item.
    CollectionItem former = items[1];
    former.assets = items[2].assets;
    EXPECT_EQ(YMSAlbumPickerViewController(items, former, nullptr).selectedRow(), -1);
}

TEST_F(AlbumList, AThumbnailComesToTheRowThatStillShowsIt)
{
    openList(items[0]);
    YMSAlbumCell* const first = cell(1);
    list->endDisplaying(first); // before its picture has come
    ASSERT_EQ(cell(2), first);
    YMSAlbumCell* const empty = cell(3);
    EXPECT_EQ(first->albumName(), "town");
    settle();
    EXPECT_EQ(first->representedAssetIdentifier(), items[2].assets.firstObject()->localIdentifier);
    EXPECT_TRUE(first->thumbnailImage());
    EXPECT_FALSE(first->isUnreadable());
    EXPECT_FALSE(empty->thumbnailImage());
    // Used again it doesn't show the former one's until its own comes.
    list->endDisplaying(first);
    EXPECT_EQ(cell(1), first);
    EXPECT_FALSE(first->thumbnailImage());
}

TEST_F(AlbumList, ReportsTheMarkedAlbumOnceHoweverItLeaves)
{
    openList(items[1]);
    list->cancel();
    list->cancel();
    settle();
    EXPECT_TRUE(isGone());
    openList(items[1]);
    YMSAlbumCell* const sea = cell(1);
    YMSAlbumCell* const town = cell(2);
    list->selectRow(4);
    list->selectRow(2);
    list->selectRow(0); // an impatient finger
    EXPECT_FALSE(sea->isChecked());
    EXPECT_TRUE(town->isChecked());
    settle();
    EXPECT_TRUE(isGone());
    openList(std::nullopt);
    list->cancel();
    settle();
    EXPECT_EQ(reported, (std::vector<std::string>{"sea", "town", "none"}));
}

} // namespace
} // namespace lamina::test
