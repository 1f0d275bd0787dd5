#include "app/LiveChain.h"

#include "editors/collage/CollageFilters.h"
#include "gpu/core/FilterRegistry.h"
#include "gpu/core/GPUImageFilter.h"
#include "gpu/core/GPUImageStage.h"
#include "gpu/core/VideoProcessingQueue.h"
#include "gpu/filters/color/GPUImageBrightnessFilter.h"
#include "gpu/filters/color/GPUImageContrastFilter.h"
#include "gpu/filters/color/GPUImageSaturationFilter.h"
#include "gpu/filters/effect/GPUImageVignetteFilter.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace lamina {

namespace {

// A value as the collage's slider of that name means it, so that both give the same picture.

void setContrast(GPUImageOutput& filter, double value)
{
    dynamic_cast<GPUImageContrastFilter&>(filter).setContrast(
        static_cast<float>((value + 255) * 259 / ((259 - value) * 255)));
}

void setBrightness(GPUImageOutput& filter, double value)
{
    dynamic_cast<GPUImageBrightnessFilter&>(filter).setBrightness(static_cast<float>(value / 255));
}

void setSaturation(GPUImageOutput& filter, double value)
{
    dynamic_cast<GPUImageSaturationFilter&>(filter).setSaturation(static_cast<float>(value));
}

void setVignette(GPUImageOutput& filter, double value)
{
    auto& vignette = dynamic_cast<GPUImageVignetteFilter&>(filter);
    vignette.setVignetteStart(static_cast<float>(value + 0.2));
    vignette.setVignetteEnd(static_cast<float>(value + 0.4));
}

template <class Filter>
std::shared_ptr<GPUImageOutput> made()
{
    return std::make_shared<Filter>();
}

struct EffectFilter {
    std::shared_ptr<GPUImageOutput> (*make)();
    void (*set)(GPUImageOutput& filter, double value);
};
constexpr std::array<EffectFilter, kLiveEffectCount> kEffects{{
    {made<GPUImageContrastFilter>, setContrast},
    {made<GPUImageBrightnessFilter>, setBrightness},
    {made<GPUImageSaturationFilter>, setSaturation},
    {made<GPUImageVignetteFilter>, setVignette},
}};

LiveEffect effectAt(std::size_t index)
{
    return static_cast<LiveEffect>(index);
}

std::shared_ptr<GPUImageInput> asInput(const std::shared_ptr<GPUImageOutput>& stage)
{
    return std::dynamic_pointer_cast<GPUImageInput>(stage);
}

} // namespace

LiveChain::LiveChain(std::shared_ptr<LiveFrames> frames)
    : m_frames(std::move(frames))
{
}

LiveChain::~LiveChain()
{
    runSynchronouslyOnVideoProcessingQueue([this] {
        unlink();
        m_frames->forget();
    });
}

void LiveChain::apply(const LiveFilters& filters, bool again)
{
    {
        const std::scoped_lock lock(m_mutex);
        m_again = m_again || again;
        if (std::exchange(m_wanted, filters))
            return; // what is under way takes these
    }
    runAsynchronouslyOnVideoProcessingQueue([weak = weak_from_this()] {
        if (const auto self = weak.lock())
            self->change();
    });
}

void LiveChain::change()
{
    std::optional<LiveFilters> wanted;
    bool again = false;
    {
        const std::scoped_lock lock(m_mutex);
        wanted = std::exchange(m_wanted, std::nullopt);
        again = std::exchange(m_again, false);
    }
    if (!wanted)
        return;
    const bool linked = isLinkedAs(*wanted);
    const bool sameLook = m_linked && m_filters.look == wanted->look;
    m_filters = std::move(*wanted);
    if (!linked) {
        unlink();
        const CollageFilter* const look = findCollageFilter(m_filters.look);
        if (!sameLook)
            m_look = look && look->make ? look->make() : nullptr;
        for (std::size_t i = 0; i < kLiveEffectCount; ++i) {
            if (!m_filters.isChanged(effectAt(i)))
                m_effects[i].reset();
            else if (!m_effects[i])
                m_effects[i] = kEffects[i].make();
        }
        link();
    }
    setValues();
    if (again)
        m_frames->pushAgain();
}

bool LiveChain::isLinkedAs(const LiveFilters& filters) const
{
    bool same = m_linked && m_filters.look == filters.look;
    for (std::size_t i = 0; i < kLiveEffectCount; ++i)
        same = same && m_filters.isChanged(effectAt(i)) == filters.isChanged(effectAt(i));
    return same;
}

void LiveChain::unlink()
{
    if (m_tail)
        m_tail->removeAllTargets();
    if (m_look)
        m_look->removeAllTargets();
    for (const Stage& effect : m_effects)
        if (effect)
            effect->removeAllTargets();
    m_frames->removeAllTargets();
    m_tail.reset();
    m_linked = false;
}

void LiveChain::link()
{
    m_tail = m_frames;
    const auto append = [this](const Stage& stage) {
        if (!stage)
            return;
        m_tail->addTarget(asInput(stage));
        m_tail = stage;
    };
    append(m_look);
    for (const Stage& effect : m_effects)
        append(effect);
    for (const auto& target : m_before)
        m_frames->addTarget(target);
    for (const auto& target : m_after)
        m_tail->addTarget(target);
    m_linked = true;
}

void LiveChain::setValues()
{
    for (std::size_t i = 0; i < kLiveEffectCount; ++i)
        if (m_effects[i])
            kEffects[i].set(*m_effects[i], m_filters.effects[i]);
    auto* const stage = dynamic_cast<GPUImageStage*>(m_look.get());
    for (const LiveSlider& slider : liveSliders(m_filters.look))
        if (stage && slider.property)
            slider.property->set(*stage, static_cast<float>(slider.value(m_filters)));
}

void LiveChain::addBefore(std::shared_ptr<GPUImageInput> target)
{
    runSynchronouslyOnVideoProcessingQueue([&] {
        if (m_linked)
            m_frames->addTarget(target);
        m_before.push_back(std::move(target));
    });
}

void LiveChain::addAfter(std::shared_ptr<GPUImageInput> target)
{
    runSynchronouslyOnVideoProcessingQueue([&] {
        if (m_tail)
            m_tail->addTarget(target);
        m_after.push_back(std::move(target));
    });
}

void LiveChain::removeAfter(const std::shared_ptr<GPUImageInput>& target)
{
    runSynchronouslyOnVideoProcessingQueue([&] {
        std::erase(m_after, target);
        if (m_tail)
            m_tail->removeTarget(target);
    });
}

void LiveChain::takePicture(std::function<void(const UIImage&)> done) const
{
    runAsynchronouslyOnVideoProcessingQueue([self = shared_from_this(), done = std::move(done)] {
        if (!self->m_tail || !(self->m_frames->size().width > 0))
            return done({});
        const auto catcher = std::make_shared<GPUImageFilter>();
        self->m_tail->addTarget(catcher);
        catcher->useNextFrameForImageCapture();
        self->m_frames->pushAgain();
        UIImage picture = catcher->imageFromCurrentFramebufferWithOrientation(UIImageOrientation::Up);
        self->m_tail->removeTarget(catcher);
        done(picture);
    });
}

void LiveChain::takeSource(CGSize within, std::function<void(const UIImage&)> done) const
{
    runAsynchronouslyOnVideoProcessingQueue([self = shared_from_this(), within, done = std::move(done)] {
        if (!(self->m_frames->size().width > 0))
            return done({});
        const auto catcher = std::make_shared<GPUImageFilter>();
        catcher->forceProcessingAtSizeRespectingAspectRatio(within);
        catcher->useNextFrameForImageCapture();
        self->m_frames->pushTo(*catcher);
        done(catcher->imageFromCurrentFramebufferWithOrientation(UIImageOrientation::Up));
    });
}

} // namespace lamina
