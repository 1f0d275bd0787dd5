// The road from an editor to a finished file and back: every type, by fingers and by keys alone.
#include "WindowTest.h"

#include "TestPaths.h"
#include "editors/blend/BlendComposition.h"
#include "export/ExporterViewController.h"
#include "export/PDFPrintController.h"
#include "export/PNGController.h"
#include "export/SavingTypeController.h"
#include "export/ShareController.h"

#include <QImage>
#include <gmock/gmock.h>

#include <filesystem>
#include <ostream>

namespace lamina::test {
namespace {

namespace fs = std::filesystem;

/// A type as a person meets it: its row, the button of its sheet, its file, and how such a file begins.
struct Type {
    const char* row;
    const char* button;
    const char* file;
    std::string begins;
    std::size_t from = 0;
};

const Type kTypes[] = {
    {"JPG", "Save JPG", "", "\xff\xd8\xff"},
    {"PNG", "Save PNG", "default.png", "\x89PNG"},
    {"PDF Standard", "Save PDF", "UntitledPdf.pdf", "%PDF-"},
    {"PDF Print", "Save PDF", "UntitledPdf.pdf", "%PDF-"},
    {"SVG", "Save SVG", "UntitledSVG.svg", "<?xml"},
    {"MP4 Video", "Save MP4", "Convert/Convert.mp4", "ftyp", 4},
    {"TIFF", "Save TIFF", "", "II*"},
};

class ExportRoad : public WindowTest {
protected:
    static fs::path home() { return QDir::homePath().toStdString(); }
    static fs::path documents() { return home() / "Documents/Lamina"; }
    static std::set<fs::path> library()
    {
        std::set<fs::path> files;
        std::error_code none;
        for (const auto& file : fs::directory_iterator(home() / "Pictures/Lamina", none))
            files.insert(file.path());
        return files;
    }
    void SetUp() override
    {
        WindowTest::SetUp();
        fs::remove_all(documents());
        open();
        goToBlend();
    }
    template <class Screen>
    std::shared_ptr<Screen> top()
    {
        return driver->top<Screen>();
    }
};

} // namespace
} // namespace lamina::test
