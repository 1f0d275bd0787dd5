// The last screen of an export: what it saves, says, shows and shares, and when.
#include "export/ShareController.h"

#include "CommandRunner.h"
#include "TestPictures.h"
#include "platform/base/Clock.h"
#include "platform/base/DispatchSemaphore.h"
#include "platform/image/codecs/PictureEncoding.h"
#include "platform/photos/PhotoFolder.h"
#include "platform/photos/PictureQueue.h"
#include "platform/view/PresentationHost.h"
#include "platform/view/UIAlertController.h"
#include "platform/view/UIViewAnimation.h"
#include "platform/view/UIWindow.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>

namespace lamina::test {
namespace {

namespace fs = std::filesystem;
using Type = SavingtypeMethod;
using Bytes = std::vector<std::uint8_t>;

/// A window that takes no time for transitions, but shows what moves.
class MovingHost : public PresentationHost {
public:
    void startTransition(const PresentationTransition&, std::function<void()> finished) override
    {
        DispatchQueue::main().async(std::move(finished));
    }
    bool showsMotion() const override { return true; }
};

class Share : public testing::Test {
protected:
    Share()
    {
        ::setenv("HOME", home.path().c_str(), 1);
        ::setenv("XDG_CONFIG_HOME", home.path("none").c_str(), 1);
        Clock::setShared(clock);
        PresentationHost::setCurrent(std::make_shared<MovingHost>());
        window.setRootViewController(editor);
        turns();
    }
    ~Share() override
    {
        ShareController::setPromotionStep({});
        screen.reset();
        window.setRootViewController(nullptr);
        turns();
        PresentationHost::setCurrent(nullptr);
        Clock::setShared(nullptr);
    }

    static void turns() { DispatchQueue::main().drain(); }
    static bool waitFor(const std::function<bool()>& done) { return DispatchQueue::main().runUntil(done, 20); }
    void pass(double seconds)
    {
        clock->advance(seconds);
        turns();
    }

    /// Opens the screen with a file of these contents; nothing: a record without one.
    void open(Type type, const std::string& name, const Bytes& contents = {}, const Bytes& jpg = {})
    {
        SaveModelDetails details(UIImage(rampPicture(8, 6, 5)), contents.empty() ? "" : home.path(name), type);
        if (!contents.empty())
            writeFile(details.sharedURL, {contents.begin(), contents.end()});
        if (!jpg.empty())
            details.bytes = std::make_shared<const Bytes>(jpg);
        details.placeWasChosen = placeWasChosen;
        screen = std::make_shared<ShareController>();
        screen->setDetails(details);
        editor->present(screen, true);
        turns();
    }
    template <class Screen>
    std::shared_ptr<Screen> top() const
    {
        return std::dynamic_pointer_cast<Screen>(window.topViewController());
    }
    std::shared_ptr<UIActivityViewController> sheet() const { return top<UIActivityViewController>(); }
    void closeSheet()
    {
        ASSERT_TRUE(sheet());
        sheet()->cancel();
        turns();
    }
    static std::vector<std::string> library()
    {
        std::vector<std::string> contents;
        std::error_code none;
        for (const auto& file : fs::directory_iterator(photoLibraryFolder(), none))
            contents.push_back(readFile(file.path().string()));
        return contents;
    }
    std::string toast() const { return screen->toastLbl().toStdString(); }
    double alpha() const { return screen->toastAlpha().value(); }

    const TemporaryFolder home;
    const std::shared_ptr<ManualClock> clock = std::make_shared<ManualClock>();
    std::shared_ptr<UIViewController> editor = std::make_shared<UIViewController>();
    UIWindow window;
    std::shared_ptr<ShareController> screen;
    bool placeWasChosen = false;
};

Bytes encoded(const char* uti, int width)
{
    return *encodePicture(rampPicture(width, 6, 9), *pictureFormatForUTI(uti), {});
}

TEST_F(Share, EachTypeIsSavedToldAndSharedInItsWay)
{
    const Bytes png = encoded("public.png", 5);
    const Bytes other{'f', 'i', 'l', 'e'};
    const char* const image = "Your Image has been saved in Photos.";
    const char* const document = "Click on below icons to share PDF Document";
    const struct {
        Type type;
        const char* file;
        Bytes contents;
        const char* toast;
        bool toLibrary;
        int previewWidth;
    } table[] = {
        {Type::jpg, "", {}, image, true, 8},
        {Type::png, "default.png", png, image, true, 8},
        {Type::pdfStandard, "a.pdf", other, document, false, 8},
        {Type::pdfPrint, "b.pdf", other, document, false, 8},
        {Type::svg, "c.svg", other, "Click on below icons to share SVG", false, 8},
        {Type::mp4, "Convert.mp4", other, "Your Video has been saved in Photos", true, 8},
        {Type::tiff, "d.tiff", encoded("public.tiff", 7), image, false, 7},
    };
    const Bytes jpg{'j', 'p', 'g'};
    for (const auto& c : table) {
        SCOPED_TRACE(static_cast<int>(c.type));
        open(c.type, c.file, c.contents, c.type == Type::jpg ? jpg : Bytes());
        ASSERT_TRUE(sheet());
        EXPECT_EQ(static_cast<bool>(sheet()->image()), c.type == Type::jpg);
        EXPECT_TRUE(waitFor([&] {
            return !toast().empty() && !screen->fileSize().isEmpty() && screen->shareImageView().value<UIImage>();
        }));
        EXPECT_EQ(toast(), c.toast);
        EXPECT_EQ(screen->headline(), "Saved");
        EXPECT_EQ(screen->shareImageView().value<UIImage>().pixelSize().width, c.previewWidth);
        const Bytes& kept = c.type == Type::jpg ? jpg : c.contents;
        EXPECT_EQ(library(),
                  c.toLibrary ? std::vector{std::string(kept.begin(), kept.end())} : std::vector<std::string>());
        ASSERT_TRUE(sheet()->file() && sheet()->file()->ok());
        const std::string shared = **sheet()->file();
        EXPECT_EQ(shared, c.type == Type::jpg ? photoLibraryFolder() + '/' + screen->fileName().toStdString()
                                              : home.path(c.file));
        // The same again by every door.
        for (const auto door : {&ShareController::whatsUpAction, &ShareController::instaAction,
                                &ShareController::faceBookAction, &ShareController::moreAction}) {
            closeSheet();
            (screen.get()->*door)();
            (screen.get()->*door)();
            turns();
            ASSERT_TRUE(sheet());
            EXPECT_EQ(**sheet()->file(), shared);
        }
        closeSheet();
        screen->backBtn();
        turns();
        EXPECT_EQ(window.topViewController(), editor);
        fs::remove_all(photoLibraryFolder());
    }
}

TEST_F(Share, TheMessageStandsForASecondAndFadesOverThree)
{
    open(Type::svg, "a.svg", {'s'});
    pass(0.49);
    EXPECT_EQ(alpha(), 0);
    double most = 0;
    QObject::connect(&screen->toastAlpha(), &AnimatedProperty::valueChanged, screen.get(),
                     [&] { most = std::max(most, alpha()); });
    pass(0.02);
    EXPECT_EQ(most, 1);
    EXPECT_EQ(alpha(), 0) << "the end of the way";
    const UIViewMotion wanted{.duration = 3, .delay = 1, .curve = UIViewAnimationCurve::EaseOut};
    EXPECT_EQ(screen->toastAlpha().motion(), wanted);
    PresentationHost::setCurrent(nullptr); // nothing is to move: whoever shows it takes it away
    closeSheet();
    screen->backBtn();
    turns();
    open(Type::svg, "a.svg", {'s'});
    pass(5);
    EXPECT_EQ(alpha(), 1);
    screen->dismissToast();
    EXPECT_EQ(alpha(), 0);
}

TEST_F(Share, WhatTheLibraryRefusesIsNotCalledSavedAndMayGoElsewhere)
{
    fs::create_directory(home.path("Pictures"));
    writeFile(home.path("Pictures/Lamina"), "no folder");
    open(Type::jpg, "", {}, {'j', 'p', 'g'});
    ASSERT_TRUE(waitFor([this] { return top<UIAlertController>() != nullptr; }));
    turns();
    EXPECT_EQ(top<UIAlertController>()->title(), "Not saved in Photos");
    EXPECT_EQ(screen->headline(), "Not saved");
    pass(0.6);
    EXPECT_EQ(toast() + std::to_string(static_cast<int>(alpha())), "0");
    top<UIAlertController>()->tap(0);
    turns();
    ASSERT_TRUE(top<UIDocumentPickerViewController>());
    EXPECT_EQ(top<UIDocumentPickerViewController>()->suggestedName(), "default.jpg");
    top<UIDocumentPickerViewController>()->choose({home.path("mine.jpg")});
    ASSERT_TRUE(waitFor([this] { return !screen->fileSize().isEmpty(); }));
    EXPECT_EQ(readFile(home.path("mine.jpg")), "jpg");
    EXPECT_EQ(toast(), "Saved as mine.jpg.");
    EXPECT_EQ(screen->headline() + '|' + screen->fileName() + '|' + screen->fileSize(), "Saved|mine.jpg|1 kB");
    EXPECT_EQ(**sheet()->file(), home.path("mine.jpg"));
    closeSheet();
    screen->backBtn();
    turns();

    open(Type::png, "broken.png", {'n', 'o'}); // there is a file all the same
    ASSERT_TRUE(waitFor([this] { return top<UIAlertController>() != nullptr; }));
    EXPECT_EQ(screen->headline(), "Saved");
    EXPECT_EQ(toast(), "");
}

TEST_F(Share, ARecordWithoutItsFileOrWithAChosenPlaceIsToldAsItIs)
{
    open(Type::pdfPrint, "none.pdf");
    ASSERT_TRUE(top<UIAlertController>());
    EXPECT_EQ(top<UIAlertController>()->message(), "no file was written");
    top<UIAlertController>()->tap(0);
    turns();
    screen->backBtn();
    turns();
    placeWasChosen = true;
    open(Type::png, "mine.png", encoded("public.png", 5));
    ASSERT_TRUE(waitFor([this] { return !screen->fileSize().isEmpty(); }));
    EXPECT_EQ(toast(), "Saved as mine.png.");
    EXPECT_TRUE(library().empty());
}

TEST_F(Share, WhatIsChosenWhileTheLibrarySavesGetsItsFile)
{
    DispatchSemaphore mayAnswer{0};
    pictureQueue().async([&] { mayAnswer.wait(); });
    open(Type::jpg, "", {}, encoded("public.jpeg", 8));
    const auto chosen = sheet();
    ASSERT_TRUE(chosen);
    ASSERT_FALSE(chosen->file());
    chosen->setServed({UIActivityType::Mail});
    chosen->choose(0);
    turns();
    mayAnswer.signal();
    ASSERT_TRUE(waitFor([&] { return chosen->file().has_value(); }));
    EXPECT_TRUE(chosen->file()->ok());
}

TEST_F(Share, APromotionWaitsForWhatIsUnderWayAndEndsWithTheScreen)
{
    struct Fetcher : PromotionFetcher {
        explicit Fetcher(std::vector<Completion>& waiting)
            : fetches(waiting)
        {
        }
        void fetchPromotion(Completion completion) override { fetches.push_back(std::move(completion)); }
        std::vector<Completion>& fetches;
    };
    std::vector<PromotionFetcher::Completion> fetches;
    int shown = 0;
    const auto makeScreen = [&](const PromotionData&) {
        ++shown;
        return std::make_shared<UIViewController>();
    };
    ShareController::setPromotionStep({[&] { return std::make_shared<Fetcher>(fetches); }, makeScreen});
    const auto tell = [&] {
        fetches.back()(PromotionError{"not register", 0, {}});
        fetches.back()(PromotionData{UIImage(rampPicture(2, 2, 1)), "https://example.org"});
        turns();
    };
    const auto leaveTop = [&] {
        window.topViewController()->dismiss(false);
        turns();
    };
    open(Type::svg, "a.svg", {'s'});
    pass(10);
    EXPECT_TRUE(fetches.empty()) << "the sheet is open";
    closeSheet();
    ASSERT_EQ(fetches.size(), 1U);
    screen->moreAction();
    turns();
    tell();
    EXPECT_EQ(shown, 0) << "a door's sheet is open";
    sheet()->setServed({UIActivityType::Copy});
    const auto chosen = sheet();
    chosen->choose(0);
    turns();
    EXPECT_EQ(shown, 0) << "what was chosen is not over";
    chosen->fail("Can’t copy", {"", "no"});
    turns();
    ASSERT_TRUE(top<UIAlertController>());
    top<UIAlertController>()->tap(0);
    turns();
    EXPECT_EQ(shown, 1);
    tell();
    leaveTop();
    EXPECT_EQ(shown, 1) << "one is enough";
    EXPECT_EQ(window.topViewController(), screen);
    screen->backBtn();
    turns();

    open(Type::svg, "a.svg", {'s'});
    closeSheet();
    pass(2.9);
    EXPECT_EQ(fetches.size(), 1U);
    pass(0.2);
    ASSERT_EQ(fetches.size(), 2U);
    screen->backBtn();
    tell();
    EXPECT_EQ(shown, 1) << "it came on the way out";
    EXPECT_EQ(window.topViewController(), editor);

    open(Type::svg, "a.svg", {'s'});
    closeSheet();
    screen->backBtn();
    pass(10);
    EXPECT_EQ(fetches.size(), 2U);
    EXPECT_EQ(alpha(), 0);
}

} // namespace
} // namespace lamina::test
