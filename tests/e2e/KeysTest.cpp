// The window by keys alone: that every key of the list does what the list says, and that one always sees where one is.
#include "WindowTest.h"

#include "CommandRunner.h"
#include "SamplePhotos.h"
#include "TestPaths.h"
#include "app/AboutViewController.h"
#include "app/ViewController.h"
#include "editors/collage/CreateCollageViewController.h"
#include "export/SavingTypeController.h"
#include "picker/YMSAlbumPickerViewController.h"
#include "picker/YMSPhotoPickerViewController.h"
#include "picker/YMSSinglePhotoViewController.h"
#include "platform/base/CGAffineTransform.h"
#include "platform/host/KeyTable.h"
#include "platform/photos/PictureFolders.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <QRegularExpression>

#include <cmath>
#include <filesystem>
#include <functional>
#include <gtest/gtest.h>

namespace lamina::test {
namespace {

namespace fs = std::filesystem;

class ByKeys : public WindowTest {
protected:
    void type(const QString& keys)
    {
        const QKeyCombination pressed = QKeySequence(keys)[0];
        driver->press(pressed.key(), pressed.keyboardModifiers());
    }
    void typeCommand(const char* command) { type(table.sequences(QString::fromLatin1(command)).first()); }
    std::string ringed() { return driver->ringedName().toStdString(); }
    void focus(const char* name)
    {
        pressUntil(name);
        ASSERT_EQ(ringed(), name);
    }
    /// Without a portal: choosing lists the folder in the window.
    void openListing(const std::string& folder, QSize size = {})
    {
        portal.vanish();
        LaunchOptions options;
        options.size = size;
        options.photosFolders = {folder};
        open(options);
    }

    const KeyTable table;
};

/// A command, what goes before each of its keys, and whether the key has done its work.
struct Step {
    const char* command;
    std::function<void(int)> before;
    std::function<bool(int)> worked;
};

TEST_F(ByKeys, EveryKeyInTheListWorks)
{
    openListing(samples());
    QString focused;
    double value = 0;
    const auto nothing = [](int) {};
    const auto remember = [&](int) { focused = driver->focusedName(); };
    const auto moved = [&](int) { return !ringed().empty() && driver->ringedName() != focused; };
    const auto at = [&](const char* name) { return ringed() == name; };
    const auto crop = [&] { return driver->top<PinchZoomViewController>(); };
    const auto offset = [&] {
        return crop()->scrollView().contentOffset().x * 1000 + crop()->scrollView().contentOffset().y;
    };
    const auto blend = [&] { return driver->top<BlendPhotoViewController>(); };
    const auto edited = [&] { return blend()->composition().photos[1].transform != CGAffineTransform(); };
    const auto sticker = [&] { return blend()->composition().stickers.front(); };
    const auto selectSticker = [&](int) {
        if (blend()->composition().stickers.empty())
            blend()->stickerImgGesture(6000);
        if (!blend()->stickerActive())
            driver->tapOnly(*driver->canvas()), driver->settle();
        value = sticker().transform.b;
    };
    const auto home = [&] {
        for (int i = 0; i < 4 && !driver->top<ViewController>(); ++i)
            driver->press(Qt::Key_Escape);
    };
    const auto picker = [&] { return driver->top<YMSPhotoPickerViewController>(); };
    const auto openPicker = [&] {
        addSamplePhotos(picturesFolder(), 2, 0);
        driver->top<ViewController>()->threePhotoCollage();
        driver->waitFor<YMSPhotoPickerViewController>();
        WindowDriver::waitUntil([&] { return picker()->photosModel()->rowCount() > 2; });
        driver->settle();
    };
    const auto collage = [&] { return driver->top<CreateCollageViewController>(); };
    const auto openCollage = [&] {
        driver->top<ViewController>()->beginCollage("threePhoto",
                                                    std::vector(3, PhotoSource::fromFile(sample("dunes.jpg"))));
        driver->waitFor<CreateCollageViewController>();
    };
    const auto copyPicture = [&](int) {
        home();
        const std::string bytes = readFile(testData("pictures/png-rgb8.png"));
        auto* const copied = new QMimeData;
        copied->setData(QStringLiteral("image/png"), QByteArray(bytes.data(), static_cast<qsizetype>(bytes.size())));
        QGuiApplication::clipboard()->setMimeData(copied);
    };
    const std::vector<Step> steps = {
        {"keys", [&](int) { home(); }, [&](int) { return driver->top<AboutViewController>() != nullptr; }},
        {"back", [&](int) { home(), typeCommand("keys"); },
         [&](int) { return driver->top<ViewController>() != nullptr; }},
        {"tab", remember, moved},
        {"fullScreen", nothing, [&](int) { return driver->view().windowStates().testFlag(Qt::WindowFullScreen); }},
        {"row", [&](int i) { home(), driver->top<ViewController>()->showMenu(), driver->settle(), remember(i); },
         moved},
        {"mark",
         [&](int i) {
             if (i == 0)
                 home(), openPicker(), driver->press(Qt::Key_Right);
             value = picker()->selectedCount();
         },
         [&](int) { return picker()->selectedCount() != value; }},
        {"preview", nothing, [&](int) { return driver->waitFor<YMSSinglePhotoViewController>(); }},
        {"albums", [&](int) { driver->press(Qt::Key_Escape); },
         [&](int) { return driver->waitFor<YMSAlbumPickerViewController>(); }},
        {"slot",
         [&](int i) {
             if (i == 0)
                 home(), openCollage();
         },
         [&](int i) { return collage()->currentSlot() == i + 1; }},
        {"swapPhotos", [&](int) { collage()->selectSlot(2); },
         [&](int i) { return collage()->currentSlot() == (i == 0 ? 1 : 3); }},
        {"collageTool",
         [&](int i) {
             if (i == 1)
                 driver->press(Qt::Key_Escape), driver->waitFor<CreateCollageViewController>();
         },
         [&](int i) {
             return i == 0 ? driver->waitFor<YMSPhotoPickerViewController>()
                           : collage()->tools()[i].toMap()["active"].toBool();
         }},
        {"paste", copyPicture, [&](int) { return driver->waitFor<PinchZoomViewController>(); }},
        {"open", [&](int) { home(); },
         [&](int) { return driver->waitUntil([&] { return driver->item(QStringLiteral("dunes.jpg")); }); }},
        {"ends", [&](int i) { typeCommand(i == 0 ? "page" : "ends"); },
         [&](int i) { return i == 0 ? at("Up one folder") : !at("Up one folder") && !ringed().empty(); }},
        {"page", [&](int i) { type(i == 0 ? "End" : "Home"), remember(i); }, moved},
        {"letters", nothing, [&](int) { return at("aurora-lake.jpg"); }}, // none begins with Z
        {"zoom",
         [&](int) {
             if (!crop())
                 driver->press(Qt::Key_Return), driver->waitFor<PinchZoomViewController>();
             value = crop()->zoomScale();
         },
         [&](int i) { return i == 1 ? crop()->zoomScale() < value : crop()->zoomScale() > value; }},
        {"move", [&](int) { value = offset(); }, [&](int) { return offset() != value; }},
        {"moveFar", [&](int) { value = offset(); }, [&](int) { return std::abs(offset() - value) > 9; }},
        {"use",
         [&](int i) {
             if (i == 1)
                 driver->top<ImagePIckingViewController>()->receivePhotos({PhotoSource::fromFile(sample("dunes.jpg"))}),
                     driver->waitFor<PinchZoomViewController>();
         },
         [&](int i) {
             return i == 0 ? driver->waitFor<ImagePIckingViewController>()
                           : driver->waitFor<BlendPhotoViewController>();
         }},
        {"undo", [&](int) { driver->press(Qt::Key_Right); }, [&](int) { return !edited(); }},
        {"redo",
         [&](int i) {
             if (i > 0)
                 typeCommand("undo");
         },
         [&](int) { return edited(); }},
        {"photoMenu",
         [&](int) {
             blend()->closePhotoMenu();
             driver->settle();
         },
         [&](int) { return blend()->menuPhoto() == 2 && at("Replace"); }},
        {"turn", selectSticker,
         [&](int i) { return i == 0 ? sticker().transform.b < value : sticker().transform.b > value; }},
        {"deleteSticker", selectSticker, [&](int) { return blend()->composition().stickers.empty(); }},
        {"bringBack", [&](int) { blend()->nudge(2000, 0); },
         [&](int) { return blend()->composition().photos[1].transform.tx == 0; }},
        {"tool", nothing,
         [&](int i) {
             const QVariantMap tool = blend()->tools()[i].toMap();
             return tool["active"].toBool() == tool["enabled"].toBool();
         }},
        {"save", nothing, [&](int) { return driver->top<SavingTypeController>() != nullptr; }},
        {"close", nothing, [&](int) { return !driver->view().isVisible(); }},
        {"quit", [&](int) { driver->view().show(); }, [&](int) { return !driver->view().isVisible(); }},
    };

    QStringList tried;
    for (const Step& step : steps) {
        const QStringList keys = table.sequences(QString::fromLatin1(step.command));
        for (int i = 0; i < keys.size(); ++i) {
            step.before(i);
            type(keys[i]);
            ASSERT_TRUE(step.worked(i)) << step.command << ": " << keys[i].toStdString();
        }
        tried.append(QString::fromLatin1(step.command));
    }
    // Pressed on the roads that lead to cameras and movies.
    tried.append({"shutter", "retake", "pausePicture", "still", "clip", "compare", "look"});
    QStringList listed = KeyTable::commands();
    tried.sort();
    listed.sort();
    EXPECT_EQ(tried, listed);
}

TEST_F(ByKeys, NoScreenHasKeysOfItsOwn)
{
    const QRegularExpression own(
        QStringLiteral(R"(\bShortcut \{|Qt\.Key_|StandardKey|Keys\.on(?!Pressed|ReturnPressed|EnterPressed))"));
    int files = 0;
    for (const auto& file : fs::recursive_directory_iterator(fs::path(samples()) / "../../src")) {
        if (file.path().extension() != ".qml" || file.path().filename() == "KeyCommand.qml")
            continue;
        ++files;
        EXPECT_FALSE(own.match(QString::fromStdString(readFile(file.path().string()))).hasMatch()) << file.path();
    }
    EXPECT_GT(files, 40);
}

TEST_F(ByKeys, TheFocusIsSeenByThoseWhoUseKeysAndNeverLost)
{
    open();
    EXPECT_EQ(ringed(), "");
    focus("Menu");
    driver->press(Qt::Key_Return);
    EXPECT_EQ(ringed(), "Cancel") << "a screen that is presented";
    driver->press(Qt::Key_Escape);
    EXPECT_EQ(ringed(), "Menu") << "given back";
    focus("Blend");
    driver->press(Qt::Key_Return);
    EXPECT_EQ(ringed(), "Photo library") << "one that is pushed";
    driver->press(Qt::Key_Escape);
    EXPECT_EQ(ringed(), "Blend") << "one that was popped";
    ASSERT_TRUE(driver->tap(QStringLiteral("Blend")));
    EXPECT_EQ(driver->focusedName(), QStringLiteral("Photo library"));
    EXPECT_EQ(ringed(), "") << "fingers see none";
    pickAndUse(sample("dunes.jpg"));
    pickAndUse(sample("meadow.jpg"));
    ASSERT_TRUE(driver->waitFor<BlendPhotoViewController>());
    driver->press(Qt::Key_Right);
    EXPECT_EQ(ringed(), "The blend");
    focus("Undo");
    driver->press(Qt::Key_Space);
    EXPECT_EQ(ringed(), "Redo") << "with nothing left to undo its button can't have it";
}

TEST_F(ByKeys, AFolderIsReadRowByRowInTheSmallestWindow)
{
    TemporaryFolder folder;
    for (int i = 10; i < 40; ++i)
        writeFile(folder.path("p" + std::to_string(i) + ".jpg"), "x");
    fs::create_directory(folder.path("sub"));
    openListing(folder.path(), {320, 320});
    typeCommand("open");
    ASSERT_TRUE(driver->waitUntil([&] { return driver->item(QStringLiteral("sub")) != nullptr; }));
    EXPECT_EQ(ringed(), "Up one folder");
    driver->press(Qt::Key_Down);
    EXPECT_EQ(ringed(), "sub");
    driver->press(Qt::Key_End);
    const std::string last = ringed();
    EXPECT_EQ(last.front(), 'p');
    for (const Qt::Key key : {Qt::Key_P, Qt::Key_2, Qt::Key_5})
        driver->press(key);
    EXPECT_EQ(ringed(), "p25.jpg");
    driver->press(Qt::Key_PageUp);
    EXPECT_EQ(ringed().front(), 'p');
    EXPECT_NE(ringed(), "p25.jpg");
    driver->press(Qt::Key_Home);
    EXPECT_EQ(ringed(), "Up one folder");
    driver->press(Qt::Key_Down);
    driver->press(Qt::Key_Return); // into the folder, which begins at its top
    EXPECT_TRUE(
        driver->waitUntil([&] { return !driver->item(QStringLiteral("p25.jpg")) && ringed() == "Up one folder"; }));
}

} // namespace
} // namespace lamina::test
