#pragma once

#include "export/ExporterViewController.h"
#include "platform/base/CGGeometry.h"

#include <QObject>
#include <QString>

namespace lamina {

/// An exporter whose picture can be made smaller or larger.
class SizedExporterController : public ExporterViewController {
    Q_OBJECT
    Q_PROPERTY(double sizeSlider READ sizeSlider NOTIFY optionsChanged FINAL)
    Q_PROPERTY(double smallestSize READ smallestSize CONSTANT FINAL)
    Q_PROPERTY(double largestSize READ largestSize CONSTANT FINAL)
    Q_PROPERTY(QString sizeValueLbl READ sizeValueLbl NOTIFY optionsChanged FINAL)
    Q_PROPERTY(QString pxLbl READ pxLbl NOTIFY optionsChanged FINAL)

public:
    /// The slider's range; 1, where it begins, keeps the size.
    static constexpr float kSmallestSize = 0.5f;
    static constexpr float kLargestSize = 2.5f;

    /// Where the slider stands: factor of the sides.
    double sizeSlider() const { return static_cast<double>(m_sizeSlider); }
    /// The slider's range, for layouts.
    double smallestSize() const { return static_cast<double>(kSmallestSize); }
    /// See smallestSize.
    double largestSize() const { return static_cast<double>(kLargestSize); }
    /// The slider's value in decimals: "1.5".
    const QString& sizeValueLbl() const { return m_sizeValueLbl; }
    /// The size to come in points: "375.0 x 375.0 px".
    const QString& pxLbl() const { return m_pxLbl; }
    /// The size to come, in points; both 0 while there is no picture.
    double newWidth() const { return m_newSize.width; }
    double newheight() const { return m_newSize.height; }
    IntSize filePixels() const override;
    ExportOptions options() const override;

    /// The slider has moved. Nothing for a value that is not finite and positive.
    Q_INVOKABLE void sizeSliderAction(float value);

protected:
    using ExporterViewController::ExporterViewController;
    void takeWorkingImage() override;

private:
    float m_sizeSlider = 1;
    QString m_sizeValueLbl = QStringLiteral("1.0");
    QString m_pxLbl;
    CGSize m_newSize;
};

} // namespace lamina
