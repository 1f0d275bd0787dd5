#pragma once

#include "export/SizedExporterController.h"

#include "export/functions/ExportWork.h"

#include <QObject>
#include <QString>

namespace lamina {

/// Saves as JPEG: the picture goes, encoded at a quality, to the photo library, which the share screen sees to.
class JPGController : public SizedExporterController {
    Q_OBJECT
    Q_PROPERTY(double qualitySlider READ qualitySlider NOTIFY optionsChanged FINAL)
    Q_PROPERTY(double lowestQuality READ lowestQuality CONSTANT FINAL)
    Q_PROPERTY(double highestQuality READ highestQuality CONSTANT FINAL)
    Q_PROPERTY(QString qualityValueLbl READ qualityValueLbl NOTIFY optionsChanged FINAL)
    Q_PROPERTY(QString fileSizeLbl READ fileSizeLbl NOTIFY optionsChanged FINAL)

public:
    static constexpr double kHeight = 480; ///< of the sheet for a picture, points
    /// The slider's range; it begins at the highest.
    static constexpr float kLowestQuality = 0.1f;
    static constexpr float kHighestQuality = 1;

    JPGController();

    double qualitySlider() const { return m_qualityParameter; }
    /// The slider's range, for layouts.
    double lowestQuality() const { return static_cast<double>(kLowestQuality); }
    /// See lowestQuality.
    double highestQuality() const { return static_cast<double>(kHighestQuality); }
    /// 0 smallest to 1 best; default 1.
    double qualityParameter() const { return m_qualityParameter; }
    /// The quality in whole tenths: "7".
    const QString& qualityValueLbl() const { return m_qualityValueLbl; }
    /// In the user's language: "File size: Medium".
    QString fileSizeLbl() const;

    /// The slider of the quality has moved. Nothing for a value whose tenths are no whole number of 32 bits.
    Q_INVOKABLE void qualitySlideraction(float value);
    /// See downloadbtnAction.
    Q_INVOKABLE void donwloadbtnAction() { downloadbtnAction(); }
    ExportOptions options() const override;

private:
    double m_qualityParameter = 1;
    QString m_qualityValueLbl = QStringLiteral("10");
    const char* m_fileSize;
};

} // namespace lamina
