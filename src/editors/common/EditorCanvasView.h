#pragma once

#include "platform/base/UIColor.h"
#include "platform/view/UIView.h"

#include <functional>
#include <utility>

namespace lamina {

/// The paper that an editor's photos lie on: white, so that a clear canvas looks as it will be exported. What begins on
/// it beside the photos, where nothing else takes it, goes to one of them: however far a photo has been moved, it can
/// be caught.
class EditorCanvasView : public UIView {
public:
    /// `photo()` gives the photo that takes gestures now, which stands in this view; null: none. Kept.
    EditorCanvasView(const CGRect& frame, std::function<UIView*()> photo)
        : UIView(frame)
        , m_photo(std::move(photo))
    {
        setClipsToBounds(true);
        setBackgroundColor(UIColor::white());
    }

    UIView* gestureFallback() const override { return m_photo(); }

private:
    std::function<UIView*()> m_photo;
};

} // namespace lamina
