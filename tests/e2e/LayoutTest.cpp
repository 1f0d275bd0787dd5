// Every screen at every size, while the window is resized: what can be pressed is whole, large enough and free, and
// nothing complains.
#include "WindowTest.h"

#include "LogCapture.h"
#include "TestPictures.h"
#include "app/ViewController.h"
#include "editors/blend/PickedImages.h"
#include "editors/collage/CreateCollageViewController.h"
#include "editors/colorpicker/InfColorPickerController.h"
#include "export/ExporterViewController.h"
#include "platform/base/CGGeometry.h"
#include "platform/host/CanvasElements.h"
#include "platform/host/CanvasItem.h"
#include "platform/view/UIStoryboard.h"

#include <QAccessible>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QTranslator>

#include <gmock/gmock.h>

#include <algorithm>
#include <iterator>
#include <ostream>
#include <vector>

namespace lamina::test {
namespace {

constexpr QSize kSizes[] = {{320, 320}, {320, 568},  {360, 720},  {500, 400},   {568, 320},  {320, 470},
                            {720, 360}, {768, 1024}, {600, 610},  {1024, 768},  {839, 600},  {1280, 800},
                            {400, 360}, {1366, 768}, {1300, 400}, {1920, 1080}, {3840, 2160}};

struct Speech {
    const char* name;
    bool german;
    const char* textScale;

    friend void PrintTo(const Speech& speech, std::ostream* out) { *out << speech.name; }
};

std::string sizeText(QSize size)
{
    return std::to_string(size.width()) + "x" + std::to_string(size.height());
}

QRectF placeOf(const QQuickItem& item)
{
    return item.mapRectToScene(QRectF(0, 0, item.width(), item.height()));
}

std::string nameOf(QQuickItem& item)
{
    QAccessibleInterface* const interface = QAccessible::queryAccessibleInterface(&item);
    const std::string name = interface ? interface->text(QAccessible::Name).toStdString() : std::string();
    return name.empty() ? item.metaObject()->className() : name;
}

/// Something that can be pressed, and as much of it as is not scrolled out of sight.
struct Pressable {
    QQuickItem* item;
    bool scrolls = false;
    bool sideways = false; ///< it may run out of the window
    QRectF seen;
};

struct Viewport {
    QRectF place;
    bool sideways;
};

void collectPressables(QQuickItem& root, std::optional<Viewport> viewport, std::vector<Pressable>& found)
{
    if (!root.isVisible())
        return;
    if (root.inherits("QQuickFlickable") && root.property("interactive").toBool())
        viewport = Viewport{placeOf(root), root.property("contentWidth").toDouble() > root.width()};
    if (root.inherits("QQuickAbstractButton") || root.inherits("QQuickSlider"))
        found.push_back({&root, viewport.has_value(), viewport && viewport->sideways,
                         viewport ? placeOf(root).intersected(viewport->place) : placeOf(root)});
    for (QQuickItem* const child : root.childItems())
        collectPressables(*child, viewport, found);
}

QQuickItem* frontFrame(QQuickItem& root)
{
    if (root.property("front").toBool() && root.property("motion").isValid())
        return &root;
    for (QQuickItem* const child : root.childItems())
        if (QQuickItem* const frame = frontFrame(*child))
            return frame;
    return nullptr;
}

void collectCutTexts(QQuickItem& root, std::vector<std::string>& texts)
{
    if (root.isVisible() && root.property("truncated").toBool())
        texts.push_back(root.property("text").toString().toStdString());
    for (QQuickItem* const child : root.childItems())
        collectCutTexts(*child, texts);
}

class Layout : public WindowTest, public testing::WithParamInterface<Speech> {
protected:
    void SetUp() override
    {
        WindowTest::SetUp();
        if (GetParam().german) {
            ASSERT_TRUE(german.load(QStringLiteral("lamina_de"), qEnvironmentVariable("LAMINA_TRANSLATIONS")));
            QCoreApplication::installTranslator(&german);
        }
        qputenv("LAMINA_TEXT_SCALE", GetParam().textScale);
        former = qInstallMessageHandler([](QtMsgType type, const QMessageLogContext&, const QString& text) {
            if (type != QtDebugMsg && type != QtInfoMsg)
                ADD_FAILURE() << text.toStdString();
        });
        open();
    }
    void TearDown() override
    {
        driver.reset();
        qInstallMessageHandler(former);
        qunsetenv("LAMINA_TEXT_SCALE");
        QCoreApplication::removeTranslator(&german);
    }

    /// Takes the window through all sizes, or every so many.
    void checkEverywhere(const char* screen, std::size_t step = 1)
    {
        for (std::size_t i = 0; i < std::size(kSizes); i += step) {
            SCOPED_TRACE(screen + (" at " + sizeText(kSizes[i])));
            driver->view().resize(kSizes[i]);
            driver->settle();
            check();
        }
    }

private:
    void check()
    {
        QQuickItem* const frame = frontFrame(*driver->view().contentItem());
        ASSERT_NE(frame, nullptr);
        std::vector<Pressable> pressables;
        collectPressables(*frame, std::nullopt, pressables);
        ASSERT_FALSE(pressables.empty());
        for (const Pressable& one : pressables)
            checkAlone(one);
        for (auto one = pressables.begin(); one != pressables.end(); ++one)
            for (auto other = std::next(one); other != pressables.end(); ++other)
                EXPECT_FALSE(cover(one->seen, other->seen)) << nameOf(*one->item) << " and " << nameOf(*other->item);
        CanvasItem* const canvas = driver->canvas();
        if (!canvas || !frame->isAncestorOf(canvas))
            return;
        if (driver->top<InfColorPickerController>())
            return checkColorPicker(*canvas);
        EXPECT_EQ(canvas->width(), canvas->height());
        EXPECT_GT(canvas->width(), 100);
        for (const Pressable& one : pressables) // a notice has its place in the canvas where it has no other
            EXPECT_TRUE(nameOf(*one.item) == "Show" || nameOf(*one.item) == "Zeigen" ||
                        !cover(one.seen, placeOf(*canvas)))
                << nameOf(*one.item) << " lies on the canvas";
    }
    /// What takes touches there is large enough.
    void checkColorPicker(CanvasItem& canvas)
    {
        auto* const elements = dynamic_cast<CanvasElements*>(canvas.elements());
        ASSERT_EQ(elements->rows().size(), 3);
        for (const CanvasElement& element : elements->rows()) {
            const QRectF share = element.info[QStringLiteral("frame")].toRectF();
            EXPECT_GE(share.width() * canvas.width(), 43.5);
            EXPECT_GE(share.height() * canvas.height(), 43.5);
        }
        EXPECT_GE(driver->called(QStringLiteral("hex"))->height(), 43.5);
    }
    void checkAlone(const Pressable& one) const
    {
        SCOPED_TRACE(nameOf(*one.item));
        const QRectF window(QPointF(), QSizeF(driver->view().size()));
        const QRectF place = placeOf(*one.item);
        EXPECT_TRUE(one.sideways || place.left() >= -0.5) << place.left();
        EXPECT_TRUE(one.sideways || place.right() <= window.right() + 0.5) << place.right();
        EXPECT_TRUE(one.scrolls || window.adjusted(0, -0.5, 0, 0.5).contains(place))
            << place.top() << " to " << place.bottom();
        EXPECT_GE(place.width(), 43.5);
        EXPECT_GE(place.height(), 43.5);
        // What stands under a title may end in an ellipsis, and a tool's name where it is as small as can be read.
        std::vector<std::string> cut;
        if (!one.item->property("caption").isValid() && !one.item->property("line").isValid() &&
            one.item->property("labelSize") != 11)
            collectCutTexts(*one.item, cut);
        EXPECT_THAT(cut, testing::IsEmpty());
    }
    static bool cover(const QRectF& one, const QRectF& other)
    {
        const QRectF both = one.intersected(other);
        return both.width() > 0.5 && both.height() > 0.5;
    }

    QTranslator german;
    QtMessageHandler former = nullptr;
};

TEST_P(Layout, KeepsAllThatCanBePressedWholeAndFree)
{
    checkEverywhere("home");
    driver->top<ViewController>()->BlendPhoto();
    driver->waitFor<ImagePIckingViewController>();
    checkEverywhere("chooser");
    const auto chooser = driver->top<ImagePIckingViewController>();
    chooser->galleryButton();
    driver->waitFor<UIAlertController>();
    checkEverywhere("alert");
    driver->press(Qt::Key_Escape);
    for (const char* const name : {"dunes.jpg", "meadow.jpg"}) {
        chooser->receivePhotos({PhotoSource::fromFile(sample(name))});
        ASSERT_TRUE(driver->waitFor<PinchZoomViewController>());
        if (!firstPickedImage)
            checkEverywhere("crop");
        driver->top<PinchZoomViewController>()->doneButton();
        driver->settle();
    }
    ASSERT_TRUE(driver->waitFor<BlendPhotoViewController>());
    checkEverywhere("blend");
    for (const char* const tool : {"tools", "effects", "stickers"}) {
        driver->top<BlendPhotoViewController>()->chooseTool(QLatin1String(tool));
        checkEverywhere(tool);
    }
    driver->top<BlendPhotoViewController>()->openPhotoMenu(1); // over the tool that is open
    checkEverywhere("photo menu");
}

TEST_P(Layout, KeepsTheCollageSo)
{
    const auto home = driver->top<ViewController>();
    home->beginCollage("twoPhoto",
                       {PhotoSource::fromFile(sample("dunes.jpg")), PhotoSource::fromFile(sample("meadow.jpg"))});
    ASSERT_TRUE(driver->waitFor<CreateCollageViewController>());
    checkEverywhere("collage of two");
    driver->top<CreateCollageViewController>()->backBtn();
    ASSERT_TRUE(driver->waitFor<ViewController>());
    home->beginCollage("threePhoto", std::vector(3, PhotoSource::fromFile(sample("dunes.jpg"))));
    ASSERT_TRUE(driver->waitFor<CreateCollageViewController>());
    const auto collage = driver->top<CreateCollageViewController>();
    for (const char* const tool : {"layout", "tools", "filter", "fx", "sticker", "reset"}) {
        collage->chooseTool(QLatin1String(tool));
        checkEverywhere(tool, 3);
    }
    collage->letGo();
    checkEverywhere("collage");
}

TEST_P(Layout, KeepsTheSheetsOfAnExportSo)
{
    for (const char* const identifier : {"SavingTypeController", "JPGController", "PDFPrintController",
                                         "ColorProfileController", "MP4VideoController"}) {
        const auto sheet = UIStoryboard::named(kMainStoryboard)->instantiate<SheetViewController>(identifier);
        if (auto* const exporter = dynamic_cast<ExporterViewController*>(sheet.get()))
            exporter->setShareImage(UIImage(rampPicture(375, 375, 0)));
        sheet->setModalPresentationStyle(UIModalPresentationStyle::OverCurrentContext);
        driver->top<ViewController>()->present(sheet, true);
        driver->settle();
        checkEverywhere(identifier);
        sheet->backAction();
        driver->settle();
    }
}

TEST_P(Layout, KeepsTheColourPickerSo)
{
    const auto picker = InfColorPickerController::colorPickerViewController();
    picker->setSourceColor(UIColor::brown());
    picker->presentModallyOverViewController(*driver->top<ViewController>());
    ASSERT_TRUE(driver->waitFor<InfColorPickerController>());
    checkEverywhere("colour picker");
}

INSTANTIATE_TEST_SUITE_P(Speeches, Layout,
                         testing::Values(Speech{"English", false, "1"}, Speech{"LargeGerman", true, "2"}),
                         [](const auto& speech) { return std::string(speech.param.name); });

} // namespace
} // namespace lamina::test
