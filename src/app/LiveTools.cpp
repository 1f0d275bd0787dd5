#include "app/LiveCamera.h"
#include "app/LiveViewController.h"
#include "editors/collage/CollageFilters.h"
#include "editors/common/EditorSlider.h"
#include "export/ShareSheet.h"
#include "gpu/core/GPUImageFilter.h"
#include "gpu/endpoints/GPUImageView.h"
#include "platform/base/Causes.h"
#include "platform/base/DispatchQueue.h"
#include "platform/base/Localization.h"
#include "platform/photos/PhotosAlbum.h"
#include "platform/view/FailureAlert.h"
#include "platform/view/UIGestureRecognizer.h"
#include "platform/view/UIImageMetaType.h"

#include <QCoreApplication>
#include <QVariantMap>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <filesystem>
#include <utility>

// What the live screen's tools do with the picture: looks and effects, before and after, stills and clips.

namespace lamina {

namespace {

constexpr const char* kStillNotSaved = QT_TRANSLATE_NOOP("Lamina", "The still was not saved");
constexpr const char* kClipNotSaved = QT_TRANSLATE_NOOP("Lamina", "The clip was not saved");

/// One cell of a ToolRow. `active`: its "1" icon stands for what is on.
struct Cell {
    const char* identifier;
    QString name;
    const char* icon;
    const char* activeIcon;
    bool active = false;
    bool enabled = true;
    bool disc = false; ///< on a disc of the accent
    bool gray = false; ///< stands on a cell of its own
};

QVariantMap mapOf(const Cell& cell)
{
    return {
        {"identifier", QString::fromLatin1(cell.identifier)},
        {"name", cell.name},
        {"icon", QString::fromLatin1(cell.active ? cell.activeIcon : cell.icon)},
        {"active", cell.active},
        {"gray", cell.gray},
        {"current", cell.active},
        {"enabled", cell.enabled},
        {"disc", cell.disc},
    };
}

QString shown(const char* key)
{
    return QString::fromStdString(localizedString(key));
}

Cell cameraCell(bool active)
{
    return {"camera", shown(QT_TRANSLATE_NOOP("Lamina", "Camera")), "camera", "camera1", active};
}

Cell movieCell(bool active)
{
    return {"movie", shown(QT_TRANSLATE_NOOP("Lamina", "Movie")), "movie", "movie1", active};
}

Cell compareCell(bool active)
{
    return {"compare", shown(QT_TRANSLATE_NOOP("Lamina", "Compare")), "compare", "compare1", active};
}

} // namespace

QVariantList LiveViewController::tools() const
{
    const bool seen = m_state != Stopped;
    Cell still{"still", shown(QT_TRANSLATE_NOOP("Lamina", "Still")), "shutter", "shutter1"};
    still.disc = true;
    still.enabled = seen;
    Cell clip{"clip", m_clip ? clipTime() : shown(QT_TRANSLATE_NOOP("Lamina", "Clip")), "clip", "clip1", isRecording()};
    clip.enabled = seen;
    Cell pause{"pause", shown(m_paused ? QT_TRANSLATE_NOOP("Lamina", "Play") : QT_TRANSLATE_NOOP("Lamina", "Pause")),
               m_paused ? "play" : "pause", "pause1"};
    pause.enabled = seen;
    return {mapOf(sourceName() == QLatin1String("movie") ? cameraCell(false) : movieCell(false)),
            mapOf(compareCell(m_comparing)), mapOf(still), mapOf(clip), mapOf(pause)};
}

QVariantList LiveViewController::sideTools() const
{
    const bool isMovie = sourceName() == QLatin1String("movie");
    Cell reset{"reset", shown(QT_TRANSLATE_NOOP("Lamina", "Reset")), "Reset", "Reset1"};
    reset.enabled = !(m_filters == LiveFilters());
    Cell camera = cameraCell(!isMovie);
    Cell movie = movieCell(isMovie);
    camera.gray = camera.active;
    movie.gray = movie.active;
    return {mapOf(camera), mapOf(movie), mapOf(compareCell(m_comparing)), mapOf(reset)};
}

void LiveViewController::chooseTool(const QString& identifier)
{
    if (identifier == QLatin1String("camera"))
        useCamera();
    else if (identifier == QLatin1String("movie"))
        chooseMovie();
    else if (identifier == QLatin1String("compare"))
        toggleComparing();
    else if (identifier == QLatin1String("still"))
        takeStill();
    else if (identifier == QLatin1String("clip"))
        toggleClip();
    else if (identifier == QLatin1String("pause"))
        togglePaused();
    else if (identifier == QLatin1String("reset"))
        resetFilters();
}

void LiveViewController::setPanel(const QString& panel)
{
    if (std::exchange(m_panel, panel) == panel)
        return;
    if (m_panel == QLatin1String("filter") && m_state == Live)
        refreshThumbnails();
    emit panelChanged();
}

QString LiveViewController::lookName() const
{
    const CollageFilter* const look = findCollageFilter(m_filters.look);
    return look ? shown(look->name) : QString();
}

QVariant LiveViewController::lookPicture() const
{
    for (const CollageFilterThumbnail& thumbnail : m_row.thumbnails().rows())
        if (thumbnail.tag == m_filters.look)
            return QVariant::fromValue(thumbnail.picture);
    return QVariant::fromValue(UIImage());
}

void LiveViewController::chooseLook(int tag)
{
    if (!findCollageFilter(tag) || tag - kFirstCollageFilter >= static_cast<int>(kLiveLookCount) ||
        tag == m_filters.look)
        return;
    LiveFilters filters = m_filters;
    filters.look = tag;
    filters.own.clear();
    changeFilters(filters);
}

void LiveViewController::stepLook(int by)
{
    const int count = static_cast<int>(kLiveLookCount);
    const int place = m_filters.look - kFirstCollageFilter + by;
    chooseLook(kFirstCollageFilter + (place % count + count) % count);
}

void LiveViewController::resetFilters()
{
    changeFilters({});
}

void LiveViewController::changeFilters(const LiveFilters& filters)
{
    if (filters == m_filters)
        return;
    if (filters.look != m_filters.look)
        m_sliders = liveSliders(filters.look);
    m_filters = filters;
    m_chain->apply(m_filters, m_source && !m_source->isRunning());
    emit filtersChanged();
    emit lookPictureChanged();
    emit toolsChanged();
}

QVariantList LiveViewController::sliders() const
{
    QVariantList rows;
    for (const LiveSlider& slider : m_sliders)
        rows += sliderRows({&slider.slider, 1}, [&](int) { return slider.value(m_filters); });
    return rows;
}

void LiveViewController::slide(int tag, double value)
{
    const auto found = std::ranges::find(m_sliders, tag, [](const LiveSlider& slider) { return slider.slider.tag; });
    if (found == m_sliders.end() || !std::isfinite(value))
        return;
    LiveFilters filters = m_filters;
    found->setValue(filters, std::clamp(value, found->slider.minimum, found->slider.maximum));
    changeFilters(filters);
}

QString LiveViewController::sliderText(int tag, double value) const
{
    const auto found = std::ranges::find(m_sliders, tag, [](const LiveSlider& slider) { return slider.slider.tag; });
    return found == m_sliders.end() ? QString() : lamina::sliderText(found->slider, value);
}

void LiveViewController::toggleComparing()
{
    m_comparing = !m_comparing;
    m_line = 0.5;
    layOutBefore();
    emit compareChanged();
    emit toolsChanged();
}

void LiveViewController::setLine(double line)
{
    if (!std::isfinite(line))
        return;
    m_line = std::clamp(line, 0.0, 1.0);
    layOutBefore();
    emit compareChanged();
}

void LiveViewController::press(UIGestureRecognizer& gesture)
{
    setShowsBefore(gesture.isActive());
}

void LiveViewController::setShowsBefore(bool shows)
{
    if (std::exchange(m_showsBefore, shows) == shows)
        return;
    layOutBefore();
    emit compareChanged();
}

void LiveViewController::layOut(double width, double height)
{
    if (!(width > 0) || !(height > 0))
        return;
    canvasView();
    const CGRect place{0, 0, width, height};
    if (m_canvas->frame() == place)
        return;
    m_canvas->setFrame(place);
    m_nowView->setFrame(place);
    m_beforeView->setFrame(place);
    layOutBefore();
    if (m_source && !m_source->isRunning())
        m_frames->pushAgain();
}

/// Without its part in the picture it gets no frames, and what it covers whole is not drawn.
void LiveViewController::layOutBefore()
{
    if (!m_canvas)
        return;
    const CGSize size = m_canvas->bounds().size;
    const double width = m_showsBefore ? size.width : m_comparing ? std::round(size.width * m_line) : 0;
    m_beforeClip->setFrame({0, 0, width, size.height});
    m_beforeClip->setHidden(width <= 0);
    m_nowView->setHidden(width > 0 && width >= size.width);
    const bool needed = m_showsBefore || m_comparing;
    const bool isNew = needed && !m_beforeView->enabled();
    m_beforeView->setEnabled(needed);
    if (isNew && m_source && !m_source->isRunning())
        m_frames->pushAgain();
}

/// A camera's own still, where that has more pixels; not in a clip, which would stand still meanwhile.
void LiveViewController::takeStill()
{
    if (m_takesStill || !(m_frames->size().width > 0) || m_error)
        return;
    m_takesStill = true;
    const auto taken = [weak = weakSelf(), expected = DispatchQueue::main().expectWork()](
                           const UIImage& picture, const std::optional<Error>& error) {
        DispatchQueue::main().async([weak, picture, error, expected] {
            if (const auto self = weak.lock())
                self->stillTaken(picture, error);
        });
    };
    if (!camera() || m_clip || !m_source->isRunning() || !camera()->takesLargerStills())
        return m_chain->takePicture([taken](const UIImage& picture) { taken(picture, std::nullopt); });
    const auto last = std::make_shared<GPUImageFilter>();
    m_chain->addAfter(last);
    camera()->takeStill(last, [chain = m_chain, last, taken](const Result<UIImage>& picture) {
        chain->removeAfter(last);
        if (picture)
            taken(*picture, std::nullopt);
        else
            taken({}, picture.error());
    });
}

void LiveViewController::stillTaken(const UIImage& picture, const std::optional<Error>& error)
{
    m_takesStill = false;
    if (!picture)
        return presentFailure(*this, localizedString(kStillNotSaved), error.value_or(Error{{}, cause::kNoMemory}));
    saveToPhotosAlbum(picture, [weak = weakSelf()](const Result<std::string>& path) {
        const auto self = weak.lock();
        if (self && path)
            self->tellNotice(localizedString("Your Image has been saved in Photos."));
        else if (self)
            presentFailure(*self, localizedString("Not saved in Photos"), path.error());
    });
}

QString LiveViewController::clipTime() const
{
    const int seconds = m_clip ? static_cast<int>(m_clip->seconds()) : 0;
    return QStringLiteral("%1:%2").arg(seconds / 60).arg(seconds % 60, 2, 10, QLatin1Char('0'));
}

void LiveViewController::toggleClip()
{
    if (m_clip)
        endClip();
    else
        beginClip();
}

void LiveViewController::beginClip()
{
    const CGSize size = m_frames->size();
    if (!(size.width > 0) || m_error || !m_source)
        return;
    auto clip = LiveClip::begin(m_chain, m_source, size, [weak = weakSelf()](const Error& error) {
        const auto self = weak.lock();
        if (!self || !self->m_clip)
            return;
        self->m_clip.reset();
        self->tellRun();
        presentFailure(*self, localizedString(kClipNotSaved), error);
    });
    if (!clip)
        return presentFailure(*this, localizedString(kClipNotSaved), clip.error());
    m_clip = *std::move(clip);
    if (m_paused) // what is recorded is what goes on
        togglePaused();
    tellRun();
    emit timeChanged();
}

void LiveViewController::endClip()
{
    const auto clip = std::exchange(m_clip, nullptr);
    if (!clip)
        return;
    clip->finish([weak = weakSelf()](const Result<std::string>& path) {
        const auto self = weak.lock();
        if (!self)
            return;
        if (!path)
            return presentFailure(*self, localizedString(kClipNotSaved), path.error());
        if (!path->empty())
            self->tellNotice(localizedText("Saved as %1.", {std::filesystem::path(*path).filename().string()}), *path);
    });
    tellRun();
}

void LiveViewController::tellNotice(const std::string& text, std::string file)
{
    m_notice = QString::fromStdString(text);
    m_noticeFile = std::move(file);
    emit noticeChanged();
}

void LiveViewController::dismissNotice()
{
    tellNotice({});
}

void LiveViewController::shareNotice()
{
    const std::string file = std::exchange(m_noticeFile, {});
    dismissNotice();
    if (!file.empty())
        presentShareSheet(file, *this);
}

} // namespace lamina
