#include "editors/common/EditorSlider.h"

#include "platform/base/Localization.h"

#include <QCoreApplication>
#include <QVariantMap>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string>

namespace lamina {

namespace {

constexpr QChar kMinus(0x2212);

/// Digits as programs write them, whatever the locale.
QString wholeNumber(double value)
{
    char digits[32];
    const auto end = std::to_chars(digits, digits + sizeof digits, std::llround(std::abs(value))).ptr;
    return QString::fromLatin1(digits, end - digits);
}

/// With the point that programs write.
QString decimalText(double value)
{
    char digits[32];
    const auto end = std::to_chars(digits, digits + sizeof digits, value, std::chars_format::fixed, 2).ptr;
    return QString::fromLatin1(digits, end - digits);
}

QString percentText(double share)
{
    QString text = QString::fromStdString(
        localizedText(QT_TRANSLATE_NOOP("Lamina", "%1 %"), {wholeNumber(share * 100).toStdString()}));
    return text.replace(QStringLiteral(" %"), QStringLiteral("\u00a0%")); // one word
}

QString signedText(double value)
{
    const QString number = wholeNumber(value);
    if (number == QLatin1String("0"))
        return number;
    return (value < 0 ? kMinus : QChar('+')) + number;
}

} // namespace

const EditorSlider* findSlider(std::span<const EditorSlider> sliders, int tag)
{
    const auto found =
        std::find_if(sliders.begin(), sliders.end(), [tag](const EditorSlider& slider) { return slider.tag == tag; });
    return found == sliders.end() ? nullptr : &*found;
}

QVariantList sliderRows(std::span<const EditorSlider> sliders, const std::function<double(int tag)>& value)
{
    QVariantList rows;
    for (const EditorSlider& slider : sliders) {
        rows << QVariantMap{
            {"tag", slider.tag},
            {"label", QString::fromStdString(localizedString(slider.label))},
            {"minimum", slider.minimum},
            {"maximum", slider.maximum},
            {"start", slider.start},
            {"panel", QString::fromUtf8(slider.panel.data(), static_cast<qsizetype>(slider.panel.size()))},
            {"value", value(slider.tag)},
        };
    }
    return rows;
}

QString sliderText(const EditorSlider& slider, double value)
{
    const double shown = std::isfinite(value) ? std::clamp(value, slider.minimum, slider.maximum) : slider.start;
    switch (slider.text) {
    case EditorSliderText::Percent:
        return percentText(shown);
    case EditorSliderText::TwoDecimals:
        return decimalText(shown);
    case EditorSliderText::Whole:
        return wholeNumber(shown);
    case EditorSliderText::Signed:
        break;
    }
    return signedText(shown);
}

} // namespace lamina
