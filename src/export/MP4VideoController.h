#pragma once

#include "export/ExporterViewController.h"
#include "platform/base/CGGeometry.h"

#include <QObject>
#include <QString>

#include <string>
#include <string_view>

namespace lamina {

/// Saves as a film: of a picture one that stands still, with a silent sound; of a clip the clip in another quality.
class MP4VideoController : public ExporterViewController {
    Q_OBJECT
    Q_PROPERTY(double qualityslider READ qualityslider NOTIFY optionsChanged FINAL)
    Q_PROPERTY(double lowestQuality READ lowestQuality CONSTANT FINAL)
    Q_PROPERTY(double highestQuality READ highestQuality CONSTANT FINAL)
    Q_PROPERTY(QString sizelbl READ sizelblText NOTIFY optionsChanged FINAL)

public:
    /// The slider's range, and where it begins.
    static constexpr float kLowestQuality = 0.2f;
    static constexpr float kHighestQuality = 1.5f;

    MP4VideoController();

    /// Whether it is a clip.
    bool isSuggested() const override { return !shareImage(); }
    QString infoLbl() const override { return {}; }
    double qualityslider() const { return static_cast<double>(m_qualityslider); }
    double lowestQuality() const { return static_cast<double>(kLowestQuality); }
    double highestQuality() const { return static_cast<double>(kHighestQuality); }
    /// What the quality is: "Low", "Medium" or "High", in every language.
    std::string_view sizelbl() const { return m_sizelbl; }
    /// The same in the user's language.
    QString sizelblText() const;
    /// Path of the silent sound; empty: it is not installed.
    const std::string& audioURL() const { return m_audioURL; }
    IntSize filePixels() const override;

    void viewDidLoad() override;
    /// The slider has moved. A value beyond its bands leaves the quality as it was.
    Q_INVOKABLE void qualitySliderAction(float value);
    /// See downloadbtnAction.
    Q_INVOKABLE void downloadBtnAction() { downloadbtnAction(); }
    ExportOptions options() const override;

private:
    float m_qualityslider = 1;
    std::string_view m_sizelbl;
    std::string m_audioURL;
};

} // namespace lamina
