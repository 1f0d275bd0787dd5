// The road from an editor to a finished file and back: every type by fingers, some by keys alone, and what goes wrong.
#include "WindowTest.h"

#include "editors/blend/BlendComposition.h"
#include "export/ExporterViewController.h"
#include "export/SavingTypeController.h"
#include "hud/ProgressOverlay.h"

#include <QImage>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <vector>

namespace lamina::test {
namespace {

namespace fs = std::filesystem;

/// A type as a person meets it: its row, what is tapped on its sheet, and what is new below the home folder then, a
/// file or one in a folder, with how such a file begins.
struct Type {
    const char* row;
    std::vector<const char*> taps;
    std::string file;
    std::string begins;
    std::size_t from = 0;
};

const Type kTypes[] = {
    {"JPG", {"Save JPG"}, "Pictures/Lamina/", "\xff\xd8\xff"},
    {"PNG", {"Transparent background", "Save PNG"}, "Documents/Lamina/default.png", "\x89PNG"},
    {"PDF Standard", {"Note line", "Save PDF"}, "Documents/Lamina/NotesPDF.pdf", "%PDF-"},
    {"PDF Print",
     {"Crop marks", "Color profile", "CMYK (best for professional printing)", "Save PDF"},
     "Documents/Lamina/CropMarks.pdf",
     "%PDF-1.3"},
    {"SVG", {"Transparent background", "Save SVG"}, "Documents/Lamina/UntitledSVG.svg", "<?xml"},
    {"MP4 Video", {"Save MP4"}, "Documents/Lamina/Convert/Convert.mp4", "ftyp", 4},
    {"TIFF", {"Save TIFF"}, "Pictures/Lamina/", "II*"},
};

class ExportRoad : public WindowTest {
protected:
    static fs::path home() { return QDir::homePath().toStdString(); }
    static fs::path documents() { return home() / "Documents/Lamina"; }

    void SetUp() override
    {
        WindowTest::SetUp();
        qputenv("LAMINA_MODULES", LAMINA_MODULES);
        qputenv("LAMINA_SOUNDS", LAMINA_SHARED_FILES "/sounds");
        qputenv("LAMINA_PROFILES", LAMINA_SHARED_FILES "/profiles");
        fs::remove_all(documents());
        fs::remove_all(home() / "Pictures/Lamina");
        open();
        goToBlend();
    }
    void goUpTo(const char* name)
    {
        for (int i = 0; i < 10 && driver->ringedName() != QLatin1String(name); ++i)
            driver->press(Qt::Key_Up);
        ASSERT_EQ(driver->ringedName().toStdString(), name);
    }
    static std::string beginning(const fs::path& file)
    {
        std::string bytes(16, '\0');
        std::ifstream(file).read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        return bytes;
    }
    static bool isWritten(const Type& type)
    {
        std::error_code none;
        const fs::path path = home() / type.file;
        std::vector<fs::path> files;
        if (type.file.back() == '/')
            for (const auto& file : fs::directory_iterator(path, none))
                files.push_back(file.path());
        else
            files.push_back(path);
        return std::ranges::any_of(files, [&](const fs::path& file) {
            return fs::is_regular_file(file) && beginning(file).substr(type.from).starts_with(type.begins);
        });
    }
};

TEST_F(ExportRoad, EveryTypeByFingersAndBack)
{
    const BlendComposition before = driver->top<BlendPhotoViewController>()->composition();
    for (const Type& type : kTypes) {
        SCOPED_TRACE(type.row);
        ASSERT_TRUE(driver->tap(QStringLiteral("Save")));
        ASSERT_TRUE(driver->waitFor<SavingTypeController>());
        ASSERT_TRUE(driver->tap(QString::fromLatin1(type.row)));
        ASSERT_TRUE(driver->waitFor<ExporterViewController>());
        ASSERT_FALSE(isWritten(type));
        for (const char* const name : type.taps)
            ASSERT_TRUE(driver->tap(QString::fromLatin1(name))) << name;
        leaveShareScreen();
        EXPECT_TRUE(WindowDriver::waitUntil([&] { return isWritten(type); }));
    }
    const QImage png(QString::fromStdString((documents() / "default.png").string()));
    EXPECT_EQ(png.size(), QSize(3 * kWidth, 3 * kWidth));
    EXPECT_EQ(driver->top<BlendPhotoViewController>()->composition().photos[1].transform, before.photos[1].transform);
}

TEST_F(ExportRoad, ByKeysAlone)
{
    driver->press(Qt::Key_S, Qt::ControlModifier);
    ASSERT_EQ(driver->ringedName(), QStringLiteral("PNG")) << "what is suggested";
    driver->press(Qt::Key_Up);
    driver->press(Qt::Key_Return);
    EXPECT_EQ(driver->ringedName(), QStringLiteral("Save JPG"));
    goUpTo("File type");
    driver->press(Qt::Key_Return);
    driver->press(Qt::Key_Down);
    driver->press(Qt::Key_Return); // PNG takes the place of JPG
    ASSERT_TRUE(driver->waitFor<ExporterViewController>());
    ASSERT_EQ(driver->ringedName(), QStringLiteral("Save PNG"));
    goUpTo("Size");
    for (int i = 0; i < 5; ++i)
        driver->press(Qt::Key_Left);
    EXPECT_NE(driver->item(QStringLiteral("Transparent background")), nullptr);
    driver->press(Qt::Key_S, Qt::ControlModifier);
    ASSERT_TRUE(driver->waitFor<UIActivityViewController>());
    driver->press(Qt::Key_Escape);
    ASSERT_TRUE(driver->waitFor<ShareController>());
    driver->press(Qt::Key_Escape);
    ASSERT_TRUE(driver->waitFor<BlendPhotoViewController>());
    EXPECT_EQ(driver->ringedName(), QStringLiteral("The blend"));
    const QImage half(QString::fromStdString((documents() / "default.png").string()));
    EXPECT_EQ(half.size(), QSize(3 * kWidth / 2, 3 * kWidth / 2));
}

TEST_F(ExportRoad, AFolderThatCantBeWrittenIsToldAndTheSheetStays)
{
    fs::create_directories(documents().parent_path());
    std::ofstream(documents()) << "a file where the folder is to be";
    ASSERT_TRUE(driver->tap(QStringLiteral("Save")));
    ASSERT_TRUE(driver->tap(QStringLiteral("SVG")));
    ASSERT_TRUE(driver->waitFor<ExporterViewController>());
    const auto sheet = driver->top<ExporterViewController>();
    ASSERT_TRUE(driver->tap(QStringLiteral("Save SVG")));
    ASSERT_TRUE(WindowDriver::waitUntil([&] { return !sheet->isExporting(); }));
    driver->settle();
    const QString told = ProgressOverlay::shared().text();
    EXPECT_TRUE(told.contains(QStringLiteral("Documents/Lamina"))) << told.toStdString();
    EXPECT_TRUE(fs::is_regular_file(documents()));

    ASSERT_TRUE(driver->tap(QStringLiteral("Close"))); // the panel
    EXPECT_EQ(driver->called(QStringLiteral("progress")), nullptr);
    ASSERT_EQ(driver->top<ExporterViewController>(), sheet);
    fs::remove(documents());
    ASSERT_TRUE(driver->tap(QStringLiteral("Save SVG")));
    leaveShareScreen();
    EXPECT_TRUE(fs::is_regular_file(documents() / "UntitledSVG.svg"));
}

} // namespace
} // namespace lamina::test
