#pragma once

#include "export/SizedExporterController.h"

#include "export/CheckMark.h"
#include "export/functions/ExportWork.h"

#include <QObject>
#include <QString>

namespace lamina {

/// Saves as PNG: on white, or with what is transparent.
class PNGController : public SizedExporterController {
    Q_OBJECT
    Q_PROPERTY(bool trasparentBool READ trasparentBool NOTIFY optionsChanged FINAL)
    Q_PROPERTY(QString trasnparentCheck READ trasnparentCheck NOTIFY optionsChanged FINAL)
    Q_PROPERTY(QString compressQuailityCheck READ compressQuailityCheck NOTIFY optionsChanged FINAL)

public:
    static constexpr double kHeight = 450; ///< of the sheet for a picture, points

    PNGController();

    bool isSuggested() const override { return static_cast<bool>(shareImage()); }
    bool trasparentBool() const { return m_trasparentBool; }
    /// Names of the marks' pictures.
    QString trasnparentCheck() const { return QString::fromStdString(m_trasnparentCheck.image); }
    /// See trasnparentCheck. There is nothing behind this one: the encoder has no setting to give it.
    QString compressQuailityCheck() const { return QString::fromStdString(m_compressQuailityCheck.image); }

    /// Flips the mark of transparency.
    Q_INVOKABLE void handletrasnparentTap();
    /// Flips the mark of compression.
    Q_INVOKABLE void handleCompressTap();
    ExportOptions options() const override;

private:
    CheckMark m_trasnparentCheck;
    CheckMark m_compressQuailityCheck;
    bool m_trasparentBool = false;
};

} // namespace lamina
