#include "platform/host/ScreenItem.h"

#include <QAccessibleObject>
#include <QQmlContext>
#include <QQmlProperty>
#include <QQuickWindow>

#include <algorithm>
#include <cstddef>
#include <vector>

namespace lamina {

namespace {

/// An item that is to be left out may have been known before it said so.
bool isTold(QQuickItem& item)
{
    return QAccessible::queryAccessibleInterface(&item) &&
           !QQmlProperty::read(&item, QStringLiteral("Accessible.ignored"), qmlContext(&item)).toBool();
}

/// The nearest items below `item` that assistive technologies are told of, in their order.
void collectChildren(const QQuickItem& item, std::vector<QQuickItem*>& found)
{
    for (QQuickItem* const child : item.childItems()) {
        if (isTold(*child))
            found.push_back(child);
        else
            collectChildren(*child, found);
    }
}

std::vector<QQuickItem*> accessibleChildren(const QQuickItem& item)
{
    std::vector<QQuickItem*> found;
    collectChildren(item, found);
    return found;
}

/// Qt tells of everything below an item that is seen. Here it ends where a screen is covered.
class AccessibleScreen : public QAccessibleObject {
public:
    explicit AccessibleScreen(ScreenItem& screen)
        : QAccessibleObject(&screen)
    {
    }

    QAccessibleInterface* parent() const override { return QAccessible::queryAccessibleInterface(screen().window()); }
    int childCount() const override { return static_cast<int>(children().size()); }
    QAccessibleInterface* child(int index) const override
    {
        const std::vector<QQuickItem*> all = children();
        const auto place = static_cast<std::size_t>(index);
        return index < 0 || place >= all.size() ? nullptr : QAccessible::queryAccessibleInterface(all[place]);
    }
    int indexOfChild(const QAccessibleInterface* wanted) const override
    {
        const std::vector<QQuickItem*> all = children();
        const auto found = std::ranges::find(all, wanted->object());
        return found == all.end() ? -1 : static_cast<int>(found - all.begin());
    }
    QAccessibleInterface* childAt(int x, int y) const override
    {
        const std::vector<QQuickItem*> all = children();
        for (auto item = all.rbegin(); item != all.rend(); ++item) {
            QAccessibleInterface* const candidate = QAccessible::queryAccessibleInterface(*item);
            if (candidate->state().invisible || !candidate->rect().contains(x, y))
                continue;
            QAccessibleInterface* const inner = candidate->childAt(x, y);
            return inner ? inner : candidate;
        }
        return nullptr;
    }

    QAccessible::Role role() const override { return screen().isModal() ? QAccessible::Dialog : QAccessible::Pane; }
    QAccessible::State state() const override
    {
        QAccessible::State state;
        state.invisible = !screen().isVisible() || screen().isCovered();
        state.modal = screen().isModal();
        return state;
    }
    QString text(QAccessible::Text kind) const override
    {
        return kind == QAccessible::Name ? screen().name() : QString();
    }
    QRect rect() const override
    {
        const QRectF place = screen().mapRectToScene(screen().boundingRect());
        return QRect(screen().window()->mapToGlobal(place.topLeft().toPoint()), place.size().toSize());
    }

private:
    ScreenItem& screen() const { return static_cast<ScreenItem&>(*object()); }
    std::vector<QQuickItem*> children() const
    {
        return screen().isCovered() ? std::vector<QQuickItem*>() : accessibleChildren(screen());
    }
};

QAccessibleInterface* makeInterface(const QString&, QObject* object)
{
    auto* const screen = qobject_cast<ScreenItem*>(object);
    return screen ? new AccessibleScreen(*screen) : nullptr;
}

void tellShown(QQuickItem& item, bool shown)
{
    QAccessibleEvent event(&item, shown ? QAccessible::ObjectShow : QAccessible::ObjectHide);
    QAccessible::updateAccessibility(&event);
}

} // namespace

void installScreenAccessibility()
{
    QAccessible::installFactory(&makeInterface);
}

ScreenItem::ScreenItem(QQuickItem* parent)
    : QQuickItem(parent)
{
    setFlag(ItemIsFocusScope);
}

void ScreenItem::setCovered(bool covered)
{
    if (m_covered == covered)
        return;
    m_covered = covered;
    emit coveredChanged();
    if (!QAccessible::isActive())
        return;
    for (QQuickItem* const child : accessibleChildren(*this))
        tellShown(*child, !covered);
    tellShown(*this, !covered);
}

void ScreenItem::setModal(bool modal)
{
    if (m_modal == modal)
        return;
    m_modal = modal;
    emit modalChanged();
}

void ScreenItem::setName(const QString& name)
{
    if (m_name == name)
        return;
    m_name = name;
    emit nameChanged();
}

} // namespace lamina
