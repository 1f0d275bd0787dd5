#include "platform/view/LayerMotion_p.h"

#include "platform/base/Clock.h"
#include "platform/view/AnimatedProperty.h"
#include "platform/view/CADisplayLink.h"
#include "platform/view/PresentationHost.h"

#include <QEasingCurve>

#include <algorithm>
#include <memory>
#include <optional>
#include <vector>

namespace lamina {

namespace {

double mixed(double from, double to, double share)
{
    return from + (to - from) * share;
}

CGAffineTransform mixed(const CGAffineTransform& from, const CGAffineTransform& to, double share)
{
    return {mixed(from.a, to.a, share), mixed(from.b, to.b, share),   mixed(from.c, to.c, share),
            mixed(from.d, to.d, share), mixed(from.tx, to.tx, share), mixed(from.ty, to.ty, share)};
}

/// One value on its way from where it was seen.
template <class Value>
class Way {
public:
    Way(const Value& from, const UIViewMotion& motion)
        : m_from(from)
        , m_begin(Clock::shared()->now() + motion.delay)
        , m_duration(motion.duration)
        , m_easing(easingOf(motion))
    {
    }
    bool isOver() const { return Clock::shared()->now() >= m_begin + m_duration; }
    Value towards(const Value& to) const
    {
        const double time = std::clamp((Clock::shared()->now() - m_begin) / m_duration, 0.0, 1.0);
        return mixed(m_from, to, m_easing.valueForProgress(time));
    }

private:
    Value m_from;
    double m_begin;
    double m_duration;
    QEasingCurve m_easing;
};

template <class Value>
Value seenOf(std::optional<Way<Value>>& way, const Value& value)
{
    if (way && way->isOver())
        way.reset();
    return way ? way->towards(value) : value;
}

/// A layer that is seen moving.
struct Moving {
    std::weak_ptr<CALayer> layer;
    std::optional<Way<double>> opacity = {};
    std::optional<Way<CGAffineTransform>> transform = {};

    /// False when it has arrived, or is gone.
    bool show()
    {
        const auto shown = layer.lock();
        if (!shown)
            return false;
        const CALayer::Presentation seen{seenOf(opacity, shown->opacity()),
                                         seenOf(transform, shown->affineTransform())};
        const bool goesOn = opacity || transform;
        shown->setPresentation(goesOn ? std::optional(seen) : std::nullopt);
        return goesOn;
    }
};

class MovingLayers {
public:
    static MovingLayers& all()
    {
        static auto* const layers = new MovingLayers;
        return *layers;
    }

    template <class Value>
    void move(CALayer& layer, std::optional<Way<Value>> Moving::*part, const Value& seen, const UIViewMotion& motion)
    {
        const auto at =
            std::ranges::find_if(m_moving, [&](const Moving& one) { return one.layer.lock().get() == &layer; });
        Moving& moving = at == m_moving.end() ? m_moving.emplace_back(Moving{layer.weak_from_this()}) : *at;
        // Where nobody looks no frame would follow, and so nothing would arrive.
        if (motion.duration > 0 && PresentationHost::current()->showsFrames())
            (moving.*part).emplace(seen, motion);
        else
            (moving.*part).reset();
        m_link.start();
        advance(); // which stops it where nothing is left to move
    }

private:
    MovingLayers()
        : m_link([this] { advance(); })
    {
    }

    void advance()
    {
        std::erase_if(m_moving, [](Moving& moving) { return !moving.show(); });
        if (m_moving.empty())
            m_link.stop();
    }

    std::vector<Moving> m_moving;
    CADisplayLink m_link;
};

} // namespace

void LayerMotion::moveOpacity(CALayer& layer, double seen, const UIViewMotion& motion)
{
    MovingLayers::all().move(layer, &Moving::opacity, seen, motion);
}

void LayerMotion::moveTransform(CALayer& layer, const CGAffineTransform& seen, const UIViewMotion& motion)
{
    MovingLayers::all().move(layer, &Moving::transform, seen, motion);
}

} // namespace lamina
