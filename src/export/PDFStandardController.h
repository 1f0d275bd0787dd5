#pragma once

#include "export/ExporterViewController.h"

#include <QObject>
#include <QString>

namespace lamina {

/// Saves as a page that is the picture, or one with a line of notes below it.
class PDFStandardController : public ExporterViewController {
    Q_OBJECT
    Q_PROPERTY(bool flattenChoose READ flattenChoose NOTIFY optionsChanged FINAL)
    Q_PROPERTY(QString flattenCheckView READ flattenCheckView NOTIFY optionsChanged FINAL)
    Q_PROPERTY(bool notesChoose READ notesChoose NOTIFY optionsChanged FINAL)
    Q_PROPERTY(QString noteCheckView READ noteCheckView NOTIFY optionsChanged FINAL)

public:
    static constexpr double kHeight = 360; ///< of the sheet for a picture, points

    PDFStandardController();

    /// Changes nothing: what comes here is flat already.
    bool flattenChoose() const { return m_flattenChoose; }
    bool notesChoose() const { return m_notesChoose; }
    /// Names of the marks' pictures.
    QString flattenCheckView() const { return QString::fromStdString(m_flattenCheckView.image); }
    QString noteCheckView() const { return QString::fromStdString(m_noteCheckView.image); }

    /// Flips the mark of flattening.
    Q_INVOKABLE void handleFlattenTap();
    /// Flips the mark of the line of notes.
    Q_INVOKABLE void handlenotTap();
    ExportOptions options() const override;

private:
    CheckMark m_flattenCheckView;
    CheckMark m_noteCheckView;
    bool m_flattenChoose = false;
    bool m_notesChoose = false;
};

} // namespace lamina
