#pragma once

#include "gpu/endpoints/GPUImageFillMode.h"
#include "platform/base/CGGeometry.h"
#include "platform/image/pixels/CGImage.h"

#include <array>
#include <functional>
#include <mutex>
#include <optional>
#include <utility>

namespace lamina {

/// A picture of a view, opaque, with how the frame stands in it.
struct DisplayedFrame {
    CGImage picture;
    CGSize imageSize; ///< the frame's, as it is seen
    CGSize scaling;   ///< its sides as shares of the picture's, by `fillScaling`
};

/// How large a view is.
struct DisplayGeometry {
    /// After so many seconds without another size a window is not being dragged any more.
    static constexpr double kSettlingTime = 0.25;

    CGSize bounds;    ///< points
    double scale = 1; ///< pixels per point
    double since = 0; ///< the shared clock's seconds

    /// Whole pixels, none on a side where there is no area.
    IntSize pixels() const;
    /// Whether it is not on its way to another size, as far as one can tell.
    bool isSettled() const;
};

/// Where the two threads of a view meet: the main one that shows pictures and the queue that draws them. Neither waits
/// for the other, and there is at most one picture on its way: the next is drawn when that one has been painted, which
/// is told by the layer as it paints. So what nobody sees is not drawn. From any thread where nothing else is said.
class FrameExchange {
public:
    /// The main screen's scale, until somebody paints at another one.
    FrameExchange();

    /// Called whenever there is another geometry, by whoever brought it. To be set before all else.
    void setGeometryChanged(std::function<void()> handler) { m_geometryChanged = std::move(handler); }
    /// The view's, in points. Main thread.
    void setBounds(CGSize bounds);
    /// A copy of what is known now.
    DisplayGeometry geometry() const;

    /// Default: all of the frame is seen.
    GPUImageFillMode fillMode() const;
    void setFillMode(GPUImageFillMode fillMode);
    /// Red, green, blue and alpha, 0 to 1.
    using Color = std::array<float, 4>;
    Color backgroundColor() const;
    void setBackgroundColor(const Color& color);
    /// Of what frames are drawn into; none: the zero size.
    IntSize sizeInPixels() const;
    void setSizeInPixels(IntSize size);

    /// What is on show is being painted, at so many pixels a point. True: a frame has waited for that, and may be drawn
    /// now. Main thread.
    [[nodiscard]] bool notePainting(double scale);
    /// The picture that is on its way, once. Main thread.
    std::optional<DisplayedFrame> take();

    /// Whether a frame is to be drawn now; if so, `endDrawing` is to follow. If not, `notePainting` will tell. Queue.
    [[nodiscard]] bool beginDrawing();
    /// Sends the picture on its way; without one the next frame may be drawn at once. Queue.
    void endDrawing(std::optional<DisplayedFrame> frame);

private:
    /// What has become of the last picture.
    enum class Step { Unseen, Wanted, Drawing, OnItsWay, OnShow };

    bool change(const DisplayGeometry& geometry);
    void tellIf(bool hasChanged) const;

    std::function<void()> m_geometryChanged;
    mutable std::mutex m_mutex;
    DisplayGeometry m_geometry;
    GPUImageFillMode m_fillMode = GPUImageFillMode::PreserveAspectRatio;
    Color m_backgroundColor{0, 0, 0, 1};
    IntSize m_sizeInPixels;
    Step m_step = Step::Unseen; ///< where nobody has painted the view yet
    bool m_frameWaits = false;
    std::optional<DisplayedFrame> m_coming;
};

} // namespace lamina
