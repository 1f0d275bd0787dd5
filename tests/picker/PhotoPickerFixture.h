#pragma once

#include "CommandRunner.h"
#include "TestPictures.h"
#include "picker/CollectionItem.h"
#include "picker/YMSCameraCell.h"
#include "picker/YMSPhotoCell.h"
#include "picker/YMSPhotoHelper.h"
#include "picker/YMSPhotoPickerViewController.h"
#include "picker/YMSPhotoPickerViewControllerDelegate.h"
#include "platform/base/DispatchQueue.h"
#include "platform/base/UIScreen.h"
#include "platform/image/pixels/UIImage.h"
#include "platform/photos/LibraryEngine_p.h"
#include "platform/photos/LibraryReports_p.h"
#include "platform/photos/PHAsset.h"
#include "platform/photos/PHFetchResult.h"
#include "platform/photos/PHPhotoLibrary.h"
#include "platform/view/UIBarButtonItem.h"
#include "platform/view/UIViewController.h"
#include "platform/view/UIWindow.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

namespace lamina::test {

/// Writes down what a photo picker tells.
class PickerDelegate : public YMSPhotoPickerViewControllerDelegate {
public:
    bool respondsTo(Call) const override { return true; }
    void photoPickerViewControllerDidCancel(YMSPhotoPickerViewController&) override { ++cancelled; }
    void photoPickerViewController(YMSPhotoPickerViewController&, const UIImage& image) override
    {
        images.push_back(image);
    }
    void photoPickerViewController(YMSPhotoPickerViewController& picker, const std::vector<PHAsset>& assets) override
    {
        finished.push_back(namesOf(assets));
        if (dismisses)
            picker.dismiss(true);
    }
    void photoPickerViewControllerDidReceiveCameraAccessDenied(YMSPhotoPickerViewController&) override { ++denied; }

    static std::string namesOf(const std::vector<PHAsset>& assets)
    {
        std::string names;
        for (const PHAsset& asset : assets)
            names += (names.empty() ? "" : " ") + std::filesystem::path(asset.path).stem().string();
        return names;
    }

    bool dismisses = false;
    int cancelled = 0;
    int denied = 0;
    std::vector<UIImage> images;
    std::vector<std::string> finished;
};

/// A photo picker in a window that nobody sees, over a library of its own: the folders "sea" (s1 ... s4, s1 the newest)
/// and "town" (t1, t2), all of them older, and p1 in no folder, the oldest.
class PhotoPickerTest : public testing::Test {
protected:
    void SetUp() override
    {
        UIScreen::setMain({{360, 720}, 3});
        ::setenv("HOME", home.path().c_str(), 1);
        ::setenv("XDG_CONFIG_HOME", home.path("config").c_str(), 1);
        ::setenv("XDG_CACHE_HOME", home.path("cache").c_str(), 1);
        std::filesystem::create_directories(picture("sea"));
        int age = 0;
        for (const char* const name : {"sea/s1", "sea/s2", "sea/s3", "sea/s4", "town/t1", "town/t2", "p1"})
            addPhoto(name, ++age * 3600);
        photoLibrary().configure({picture(""), {}, picture("Lamina"), home.path("cache/library")});
        photoLibrary().waitUntilComplete();
        settle();
        window.setRootViewController(std::make_shared<UIViewController>());
        settle();
    }
    void TearDown() override
    {
        picker.reset();
        window.setRootViewController(nullptr);
        settle();
    }

    static void settle() { ASSERT_TRUE(DispatchQueue::main().runUntilIdle(20)); }
    /// Goes on until the library has told of what was done to its folders.
    template <class Condition>
    static void settleUntil(Condition condition)
    {
        ASSERT_TRUE(DispatchQueue::main().runUntil(condition, 20));
        settle();
    }

    std::string picture(const std::string& name) const { return home.path("Pictures/" + name); }
    std::string file(const std::string& name) const { return picture(name + ".png"); }
    void addPhoto(const std::string& name, int ageInSeconds, std::uint8_t blue = 0) const
    {
        std::filesystem::create_directories(std::filesystem::path(file(name)).parent_path());
        const std::string unfinished = home.path("unfinished.png");
        writePng(unfinished, rampPicture(40, 30, blue));
        std::filesystem::last_write_time(unfinished, std::filesystem::file_time_type::clock::now() -
                                                         std::chrono::seconds(ageInSeconds));
        std::filesystem::rename(unfinished, file(name));
    }

    void open(unsigned limit, bool returnsImage = true)
    {
        picker = std::make_shared<YMSPhotoPickerViewController>();
        picker->numberOfPhotoToSelect = limit;
        picker->shouldReturnImageForSingleSelection = returnsImage;
        QObject::connect(picker.get(), &YMSPhotoPickerViewController::notice,
                         [this](const QString& text) { notices.push_back(text.toStdString()); });
        yms_presentCustomAlbumPhotoView(*window.rootViewController(), picker, delegate);
        settle();
        picker->placeGrid(360, 720, 2, 0, 0);
        display();
    }
    /// What a window does: takes tiles for all items.
    void display()
    {
        for (QObject* const cell : cells)
            picker->endDisplaying(cell);
        cells.clear();
        for (int item = 0; item < picker->photosModel()->rowCount(); ++item)
            cells.push_back(picker->cellForItem(item));
    }
    void show(const std::string& album)
    {
        const auto& items = picker->collectionItems();
        const auto found = std::ranges::find_if(
            items, [&](const CollectionItem& item) { return item.collection.localizedTitle == album; });
        ASSERT_NE(found, items.end());
        picker->updateViewWithCollectionItem(*found);
        display();
    }
    std::string albums() const
    {
        std::string titles;
        for (const CollectionItem& item : picker->collectionItems())
            titles += item.collection.localizedTitle + " " + std::to_string(item.assets.count()) + ", ";
        return titles;
    }
    int itemOf(const std::string& name) const
    {
        const PHFetchResult& assets = picker->currentCollectionItem()->assets;
        for (std::size_t i = 0; i < assets.count(); ++i)
            if (std::filesystem::path(assets.objectAtIndex(i).path).stem() == name)
                return static_cast<int>(i) + 1;
        return -1;
    }
    void tap(const std::string& name) const { picker->tapItem(itemOf(name)); }
    /// Of all tiles that are marked as chosen, in the album's order: "s1:1 s3:2".
    std::string marks() const
    {
        std::string marks;
        for (QObject* const object : cells)
            if (const auto* const cell = qobject_cast<YMSPhotoCell*>(object);
                cell && cell->item() > 0 && cell->isSelected()) {
                const PHAsset asset =
                    picker->currentCollectionItem()->assets.objectAtIndex(static_cast<std::size_t>(cell->item()) - 1);
                EXPECT_EQ(cell->veilAlpha().value(), 1);
                EXPECT_EQ(cell->representedAssetIdentifier(), asset.localIdentifier);
                marks += (marks.empty() ? "" : " ") + std::filesystem::path(asset.path).stem().string() + ":" +
                         std::to_string(cell->selectionOrder());
            }
        return marks;
    }
    std::string chosen() const { return PickerDelegate::namesOf(picker->selectedPhotos()); }

    const TemporaryFolder home;
    UIWindow window;
    const std::shared_ptr<PickerDelegate> delegate = std::make_shared<PickerDelegate>();
    std::shared_ptr<YMSPhotoPickerViewController> picker;
    std::vector<QObject*> cells;
    std::vector<std::string> notices;
};

} // namespace lamina::test
