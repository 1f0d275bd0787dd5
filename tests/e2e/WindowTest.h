#pragma once

#include "TestPaths.h"
#include "TestPortal.h"
#include "WindowDriver.h"
#include "app/ImagePIckingViewController.h"
#include "app/PinchZoomViewController.h"
#include "editors/blend/BlendPhotoViewController.h"
#include "export/PNGController.h"
#include "export/SavingTypeController.h"
#include "export/ShareController.h"
#include "platform/base/CGGeometry.h"
#include "platform/host/Application.h"
#include "platform/host/CanvasItem.h"
#include "platform/view/UIActivityViewController.h"
#include "platform/view/UIAlertController.h"

#include <QColorSpace>
#include <QDir>
#include <QImage>
#include <QUrl>

#include <gtest/gtest.h>
#include <memory>
#include <string>

namespace lamina::test {

/// A window as large as a small phone (so that its canvas has exactly three pixels a point), with a portal to choose
/// photos in.
class WindowTest : public testing::Test {
protected:
    static constexpr int kWidth = 320;
    static constexpr int kHeight = 640;

    // No work of the test before is offered.
    void SetUp() override { QDir(qEnvironmentVariable("XDG_STATE_HOME")).removeRecursively(); }

    void open(LaunchOptions options = {})
    {
        if (options.size.isEmpty())
            options.size = {kWidth, kHeight};
        driver = std::make_unique<WindowDriver>(options);
    }
    static std::string sample(const char* name) { return samples(name); }

    /// Taps "Photo library" and lets the portal answer with the file.
    void pick(const std::string& path)
    {
        portal.setChoice({QUrl::fromLocalFile(QString::fromStdString(path)).toString()});
        ASSERT_TRUE(driver->tap(QStringLiteral("Photo library")));
    }
    /// From the source chooser through the crop.
    void pickAndUse(const std::string& path)
    {
        pick(path);
        ASSERT_TRUE(driver->waitFor<PinchZoomViewController>());
        ASSERT_TRUE(driver->tap(QStringLiteral("Use photo")));
    }
    void goToBlend()
    {
        ASSERT_TRUE(driver->tap(QStringLiteral("Blend")));
        ASSERT_TRUE(driver->waitFor<ImagePIckingViewController>());
        pickAndUse(sample("sea-sunset.jpg"));
        ASSERT_TRUE(driver->waitFor<ImagePIckingViewController>());
        pickAndUse(sample("city-rain.jpg"));
        ASSERT_TRUE(driver->waitFor<BlendPhotoViewController>());
    }
    /// From an exporter that saves to the editor again: the share sheet opens by itself.
    template <class Editor = BlendPhotoViewController>
    void leaveShareScreen()
    {
        ASSERT_TRUE(driver->waitFor<UIActivityViewController>());
        driver->press(Qt::Key_Escape);
        ASSERT_TRUE(driver->waitFor<ShareController>());
        ASSERT_TRUE(driver->tap(QStringLiteral("Back")));
        ASSERT_TRUE(driver->waitFor<Editor>());
    }
    static QDir documents() { return QDir(QDir::home().filePath(QStringLiteral("Documents/Lamina"))); }
    void goToPNG()
    {
        ASSERT_TRUE(driver->tap(QStringLiteral("Save")));
        ASSERT_TRUE(driver->waitFor<SavingTypeController>());
        ASSERT_TRUE(driver->tap(QStringLiteral("PNG")));
        ASSERT_TRUE(driver->waitFor<PNGController>());
    }
    /// The picture in the file, of the canvas's colours. The editor is in front again.
    template <class Editor = BlendPhotoViewController>
    QImage saveAsPNG()
    {
        documents().removeRecursively();
        goToPNG();
        EXPECT_TRUE(driver->tap(QStringLiteral("Save PNG")));
        leaveShareScreen<Editor>();
        QImage saved(documents().filePath(QStringLiteral("default.png")));
        EXPECT_TRUE(saved.colorSpace().isValid());
        saved.setColorSpace({}); // QImage would compare it too
        return saved.convertToFormat(QImage::Format_RGB32);
    }
    /// The picker's tile of that item in the window; null: it is out of sight.
    QQuickItem* tile(int item) { return tileIn(*driver->view().contentItem(), item); }
    void tapTile(int item)
    {
        ASSERT_NE(tile(item), nullptr) << item;
        driver->tapOnly(*tile(item));
        driver->settle();
    }
    /// A place of the canvas, in points.
    QPointF inWindow(CGPoint point) { return driver->canvas()->mapToScene({point.x, point.y}); }
    /// Tab until that has the keyboard.
    void pressUntil(const char* name)
    {
        for (int i = 0; i < 30 && driver->focusedName() != QLatin1String(name); ++i)
            driver->press(Qt::Key_Tab);
        ASSERT_EQ(driver->focusedName().toStdString(), name);
    }
    std::string alertText()
    {
        const auto alert = driver->top<UIAlertController>();
        return alert ? alert->title() + "|" + alert->message() : "";
    }

    TestPortal portal;
    std::unique_ptr<WindowDriver> driver;

private:
    QQuickItem* tileIn(QQuickItem& root, int item)
    {
        const QRectF window(QPointF(), QSizeF(driver->view().size()));
        if (!root.isVisible())
            return nullptr;
        if (root.property("isCamera").isValid() && root.property("index") == item &&
            window.contains(WindowDriver::middleOf(root)))
            return &root;
        for (QQuickItem* const child : root.childItems())
            if (QQuickItem* const found = tileIn(*child, item))
                return found;
        return nullptr;
    }
};

} // namespace lamina::test
