#pragma once

#include "export/ExporterViewController.h"
#include "platform/base/CGGeometry.h"

#include <QObject>
#include <QString>

namespace lamina {

/// Saves as a page for print: in RGB or CMYK, with marks where to cut and a line of notes.
class PDFPrintController : public ExporterViewController, public ColorProfilePassed {
    Q_OBJECT
    Q_PROPERTY(bool flattenChoose READ flattenChoose NOTIFY optionsChanged FINAL)
    Q_PROPERTY(QString flattenCheck READ flattenCheck NOTIFY optionsChanged FINAL)
    Q_PROPERTY(bool notesChoose READ notesChoose NOTIFY optionsChanged FINAL)
    Q_PROPERTY(QString notesCheck READ notesCheck NOTIFY optionsChanged FINAL)
    Q_PROPERTY(bool cropSelect READ cropSelect NOTIFY optionsChanged FINAL)
    Q_PROPERTY(QString cropMarksCheck READ cropMarksCheck NOTIFY optionsChanged FINAL)
    Q_PROPERTY(bool rgbselect READ rgbselect NOTIFY optionsChanged FINAL)
    Q_PROPERTY(QString colorProfileLbl READ colorProfileLbl NOTIFY optionsChanged FINAL)
    Q_PROPERTY(bool ppiSelect READ ppiSelect NOTIFY optionsChanged FINAL)
    Q_PROPERTY(QString ppiCheck READ ppiCheck NOTIFY optionsChanged FINAL)
    Q_PROPERTY(QString printSizeLbl READ printSizeLbl NOTIFY optionsChanged FINAL)

public:
    static constexpr double kHeight = 470; ///< of the sheet for a picture, points
    /// Pixels of the picture to an inch of paper: one for each point, and what a print shop wants.
    static constexpr double kPlainPixelsPerInch = 72;
    static constexpr double kPrintPixelsPerInch = 300;

    PDFPrintController();

    /// Changes nothing: what comes here is flat already.
    bool flattenChoose() const { return m_flattenChoose; }
    bool notesChoose() const { return m_notesChoose; }
    bool cropSelect() const { return m_cropSelect; }
    /// RGB, and not CMYK; default true.
    bool rgbselect() const { return m_rgbselect; }
    /// Whether the page is made for `kPrintPixelsPerInch`; default false.
    bool ppiSelect() const { return m_ppiSelect; }
    /// Names of the marks' pictures.
    QString flattenCheck() const { return QString::fromStdString(m_flattenCheck.image); }
    QString notesCheck() const { return QString::fromStdString(m_notesCheck.image); }
    QString cropMarksCheck() const { return QString::fromStdString(m_cropMarksCheck.image); }
    QString ppiCheck() const { return QString::fromStdString(m_ppiCheck.image); }
    /// The profile, in the user's language.
    QString colorProfileLbl() const;
    double pixelsPerInch() const { return m_ppiSelect ? kPrintPixelsPerInch : kPlainPixelsPerInch; }
    /// How large the picture is on paper, and in how many pixels to an inch: "39.7 × 39.7 cm, 72 ppi"; empty without a
    /// picture.
    QString printSizeLbl() const;

    /// Flips the mark of the marks where to cut.
    Q_INVOKABLE void handlecropTap();
    /// Flips the mark of flattening.
    Q_INVOKABLE void handleFlattenTap();
    /// Flips the mark of the line of notes.
    Q_INVOKABLE void handlenotTap();
    /// Flips the mark of the resolution.
    Q_INVOKABLE void handleppiTap();
    /// Asks for the profile.
    Q_INVOKABLE void handleprofileTap();
    /// The answer, a row of `kColorProfileTitles`: closes the sheet that asked.
    void profileSelected(int index) override;
    ExportOptions options() const override;

private:
    CheckMark m_flattenCheck;
    CheckMark m_notesCheck;
    CheckMark m_cropMarksCheck;
    CheckMark m_ppiCheck;
    bool m_flattenChoose = false;
    bool m_notesChoose = false;
    bool m_cropSelect = false;
    bool m_ppiSelect = false;
    bool m_rgbselect = true;
};

} // namespace lamina
