#include "platform/host/CanvasElements.h"

#include "platform/base/CGAffineTransform.h"
#include "platform/base/CGGeometry.h"
#include "platform/view/UIAccessibility.h"

#include <QRectF>
#include <QStringList>

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

namespace lamina {

namespace {

/// Views that are fainter can't be seen.
constexpr double kLeastSeenAlpha = 0.01;

/// The part of the view's box that can be seen, in shares of the canvas; empty: none.
QRectF seenFrame(const UIView& view, const UIView& canvas)
{
    const auto toCanvas = canvas.transformToRoot().inverted();
    const CGRect whole = canvas.bounds();
    if (!toCanvas || whole.isEmpty())
        return {};
    const CGRect box =
        view.transformToRoot().concatenating(*toCanvas).boundingBox(view.accessibilityBounds()).intersection(whole);
    return {(box.minX() - whole.minX()) / whole.size.width, (box.minY() - whole.minY()) / whole.size.height,
            box.size.width / whole.size.width, box.size.height / whole.size.height};
}

QString description(const UIView& view)
{
    QStringList parts{QString::fromStdString(view.accessibilityValue()),
                      QString::fromStdString(view.accessibilityHint())};
    parts.removeAll(QString());
    return parts.join(QStringLiteral(". "));
}

/// The corners' radius as a share of the shorter side, at most a half.
double roundness(const UIView& view)
{
    const CGSize size = view.accessibilityBounds().size;
    const double side = std::min(size.width, size.height);
    return side > 0 ? std::clamp(view.layer().cornerRadius() / side, 0.0, 0.5) : 0;
}

QVariantMap infoOf(const UIView& view, const QRectF& frame)
{
    using Traits = UIAccessibilityTraits;
    const Traits::Set traits = view.accessibilityTraits();
    QVariantMap info{
        {QStringLiteral("tag"), view.tag()},
        {QStringLiteral("label"), QString::fromStdString(view.accessibilityLabel())},
        {QStringLiteral("description"), description(view)},
        {QStringLiteral("frame"), frame},
        {QStringLiteral("roundness"), roundness(view)},
        {QStringLiteral("button"), (traits & Traits::Button) != 0},
        {QStringLiteral("adjustable"), (traits & Traits::Adjustable) != 0},
        {QStringLiteral("image"), (traits & Traits::Image) != 0},
        {QStringLiteral("text"), (traits & Traits::StaticText) != 0},
        {QStringLiteral("selected"), (traits & Traits::Selected) != 0},
        {QStringLiteral("available"), (traits & Traits::NotEnabled) == 0},
    };
    if (const auto range = view.accessibilityRange()) {
        info[QStringLiteral("value")] = range->value;
        info[QStringLiteral("minimum")] = range->minimum;
        info[QStringLiteral("maximum")] = range->maximum;
    }
    return info;
}

void collect(const UIView& parent, const UIView& canvas, std::vector<CanvasElement>& rows)
{
    for (const auto& view : parent.subviews()) {
        if (view->isHidden() || view->alpha() < kLeastSeenAlpha)
            continue;
        const QRectF frame = view->isAccessibilityElement() ? seenFrame(*view, canvas) : QRectF();
        if (!view->isAccessibilityElement())
            collect(*view, canvas, rows);
        else if (!frame.isEmpty())
            rows.push_back({view, infoOf(*view, frame)});
    }
}

bool isSameView(const CanvasElement& a, const CanvasElement& b)
{
    return a.view.lock() == b.view.lock();
}

} // namespace

CanvasElements::CanvasElements()
    : ListModel({{"info", &CanvasElement::info}})
{
}

void CanvasElements::update(const UIView* canvas)
{
    std::vector<CanvasElement> found;
    if (canvas)
        collect(*canvas, *canvas, found);
    if (!std::equal(rows().begin(), rows().end(), found.begin(), found.end(), isSameView))
        return reset(std::move(found));
    for (std::size_t i = 0; i < found.size(); ++i)
        change(i, std::move(found[i]));
}

std::shared_ptr<UIView> CanvasElements::viewOf(int row) const
{
    const bool known = row >= 0 && row < count();
    return known ? rows()[static_cast<std::size_t>(row)].view.lock() : nullptr;
}

void CanvasElements::activate(int row)
{
    if (const auto view = viewOf(row))
        view->accessibilityActivate();
}

void CanvasElements::increment(int row)
{
    if (const auto view = viewOf(row))
        view->accessibilityIncrement();
}

void CanvasElements::decrement(int row)
{
    if (const auto view = viewOf(row))
        view->accessibilityDecrement();
}

} // namespace lamina
