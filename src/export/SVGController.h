#pragma once

#include "export/ExporterViewController.h"

#include <QObject>
#include <QString>

namespace lamina {

/// Saves as a document that holds the picture: on white, or with what is transparent.
class SVGController : public ExporterViewController {
    Q_OBJECT
    Q_PROPERTY(bool trasparentChoose READ trasparentChoose NOTIFY optionsChanged FINAL)
    Q_PROPERTY(QString trasnparentCehck READ trasnparentCehck NOTIFY optionsChanged FINAL)

public:
    static constexpr double kHeight = 300; ///< of the sheet for a picture, points

    SVGController();

    bool trasparentChoose() const { return m_trasparentChoose; }
    /// Name of the mark's picture.
    QString trasnparentCehck() const { return QString::fromStdString(m_trasnparentCehck.image); }

    /// Flips the mark of transparency.
    Q_INVOKABLE void handletrasnparentTap();
    ExportOptions options() const override;

private:
    CheckMark m_trasnparentCehck;
    bool m_trasparentChoose = false;
};

} // namespace lamina
