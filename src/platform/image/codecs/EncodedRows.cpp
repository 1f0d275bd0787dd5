#include "platform/image/codecs/EncodedRows_p.h"

#include "platform/base/WorkerPool.h"
#include "platform/image/pixels/PictureOpacity.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <vector>

namespace lamina {

namespace {

/// In [0, 1]; not a number counts as 0.
double component(double value)
{
    return value > 0 ? std::min(value, 1.0) : 0.0;
}

unsigned onWhite(double value, double alpha)
{
    const double laid = component(value) * component(alpha) + (1 - component(alpha));
    return static_cast<unsigned>(std::lround(255 * laid));
}

} // namespace

StoredColors chooseStoredColors(const CGImage& image, const RowConverter& rows)
{
    const bool gray = image.colorSpace().model() == CGColorSpace::Model::Gray;
    if (isOpaque(image, rows))
        return gray ? StoredColors::Gray : StoredColors::RGB;
    return gray ? StoredColors::GrayAlpha : StoredColors::RGBA;
}

void packRow(const std::uint8_t* rgba, std::size_t width, StoredColors colors, std::uint8_t* out)
{
    switch (colors) {
    case StoredColors::Gray:
        for (std::size_t x = 0; x < width; ++x)
            out[x] = rgba[4 * x];
        break;
    case StoredColors::GrayAlpha:
        for (std::size_t x = 0; x < width; ++x) {
            out[2 * x] = rgba[4 * x];
            out[2 * x + 1] = rgba[4 * x + 3];
        }
        break;
    case StoredColors::RGB:
        for (std::size_t x = 0; x < width; ++x) {
            out[3 * x] = rgba[4 * x];
            out[3 * x + 1] = rgba[4 * x + 1];
            out[3 * x + 2] = rgba[4 * x + 2];
        }
        break;
    case StoredColors::RGBA:
        std::memcpy(out, rgba, 4 * width);
        break;
    }
}

FlattenedRows::FlattenedRows(const CGImage& image, const UIColor& background)
    : m_image(image)
    , m_rows(image, AlphaForm::Straight)
    , m_width(image.width())
    , m_height(image.height())
    , m_background{onWhite(background.red, background.alpha), onWhite(background.green, background.alpha),
                   onWhite(background.blue, background.alpha)}
    , m_plain(hasPlainRows(image))
    , m_hasAlpha(image.hasAlpha())
{
    const bool grayBackground = m_background[0] == m_background[1] && m_background[1] == m_background[2];
    m_gray = image.colorSpace().model() == CGColorSpace::Model::Gray && (!m_hasAlpha || grayBackground);
}

void FlattenedRows::read(int y, std::uint8_t* rgba) const
{
    m_rows.convert(0, y, m_width, rgba);
    if (!m_hasAlpha)
        return;
    for (std::uint8_t* const end = rgba + 4 * static_cast<std::size_t>(m_width); rgba != end; rgba += 4) {
        const unsigned alpha = rgba[3];
        for (std::size_t c = 0; c < 3; ++c)
            rgba[c] = static_cast<std::uint8_t>((rgba[c] * alpha + m_background[c] * (255 - alpha) + 127) / 255);
    }
}

void FlattenedRows::readBand(int first, int count, std::uint8_t* rgba) const
{
    const std::size_t rowBytes = 4 * static_cast<std::size_t>(m_width);
    parallelRows(first, first + count, static_cast<std::size_t>(m_width), [&](int begin, int end) {
        for (int y = begin; y < end; ++y)
            read(y, rgba + static_cast<std::size_t>(y - first) * rowBytes);
    });
}

} // namespace lamina
