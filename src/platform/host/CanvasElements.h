#pragma once

#include "platform/view/ListModel.h"
#include "platform/view/UIView.h"

#include <QVariantMap>

#include <memory>

namespace lamina {

/// A row of the next.
struct CanvasElement {
    std::weak_ptr<UIView> view;
    QVariantMap info;
};

/// What stands on a canvas for assistive technology and the keyboard: a row for each accessibility element of the tree
/// that can be seen, depth first, the lower ones before those that cover them. A row keeps its place as long as the
/// same views are seen. Main thread.
///
/// A row's one value, `info`, holds: the view's `tag`; `label`; `description` (value and hint); `frame`, in shares of
/// the canvas's width and height; `roundness`, the corners' radius in shares of the shorter side; `button`,
/// `adjustable`, `image`, `text`, `selected` and `available`; and where there is a range `value`, `minimum` and
/// `maximum`.
class CanvasElements : public ListModel<CanvasElement> {
    Q_OBJECT

public:
    CanvasElements();

    /// Reads the tree below `canvas` anew; null: no rows.
    void update(const UIView* canvas);

    /// What a press does. Nothing for a row whose view is gone; as the next two.
    Q_INVOKABLE void activate(int row);
    /// A step up,
    Q_INVOKABLE void increment(int row);
    /// and one down.
    Q_INVOKABLE void decrement(int row);

private:
    std::shared_ptr<UIView> viewOf(int row) const;
};

} // namespace lamina
