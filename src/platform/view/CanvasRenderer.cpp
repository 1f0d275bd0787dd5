#include "platform/view/CanvasRenderer.h"

#include "platform/view/LayerRenderer.h"

#include <cassert>
#include <cmath>
#include <utility>

namespace lamina {

namespace {

double usableScale(double scale)
{
    return scale > 0 && std::isfinite(scale) ? scale : 1;
}

} // namespace

CanvasRenderer::CanvasRenderer(std::shared_ptr<UIView> root, double scale)
    : m_root(std::move(root))
    , m_scale(usableScale(scale))
{
    assert(m_root);
    m_observer = m_root->layer().observeChanges([this] { noteChange(); });
}

CanvasRenderer::~CanvasRenderer() = default;

void CanvasRenderer::setScale(double scale)
{
    if (usableScale(scale) == m_scale)
        return;
    m_scale = usableScale(scale);
    m_context.reset();
    noteChange();
}

void CanvasRenderer::setMoving(bool moving)
{
    m_moving = moving;
    if (moving)
        return;
    m_reductions.drop();
    if (!m_reducedArea.isEmpty())
        noteChange();
}

void CanvasRenderer::setChangeHandler(std::function<void()> handler)
{
    m_changeHandler = std::move(handler);
    if (m_pending && m_changeHandler)
        m_changeHandler();
}

void CanvasRenderer::noteChange()
{
    if (m_pending)
        return;
    m_pending = true;
    if (m_changeHandler)
        m_changeHandler();
}

IntRect CanvasRenderer::render()
{
    if (!m_pending)
        return {};
    m_pending = false;
    const bool fresh = prepareBitmap();
    if (!m_context)
        return {};
    const IntSize size{m_context->width(), m_context->height()};
    CanvasFrame frame(m_root->layer(), m_scale, size);
    const IntRect all{0, 0, size.width, size.height};
    IntRect area = fresh ? all : m_frame.differenceTo(frame).intersection(all);
    if (!m_moving)
        area = area.unionWith(std::exchange(m_reducedArea, {}).intersection(all));
    m_frame = std::move(frame);
    if (!area.isEmpty())
        paint(area);
    return area;
}

/// True when the bitmap is a new one, with nothing on it.
bool CanvasRenderer::prepareBitmap()
{
    const CGSize size = m_root->bounds().size;
    if (m_context && size == m_size)
        return false;
    m_size = size;
    m_context.reset(); // the old memory goes before the new is asked for
    m_context = CGContext::image(size, false, m_scale);
    return true;
}

void CanvasRenderer::paint(const IntRect& area)
{
    const CGRect points(area.x / m_scale, area.y / m_scale, area.width / m_scale, area.height / m_scale);
    m_context->saveGState();
    m_context->clipToRect(points);
    m_context->clearRect(points);
    m_context->translateCTM(-m_root->bounds().minX(), -m_root->bounds().minY());
    LayerRenderer(*m_context, m_moving ? &m_reductions : nullptr, &m_copies, &m_edges).render(m_root->layer());
    m_context->restoreGState();
    if (m_moving && m_reductions.wereUsed())
        m_reducedArea = m_reducedArea.unionWith(area);
}

CGImage CanvasRenderer::image() const
{
    return m_context ? m_context->makeImage() : CGImage();
}

} // namespace lamina
