#include "platform/host/ScreenModel.h"

#include <QQmlEngine>

#include <algorithm>
#include <cstddef>
#include <utility>

namespace lamina {

int ScreenModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

QVariant ScreenModel::data(const QModelIndex& index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const Row& row = m_rows[static_cast<std::size_t>(index.row())];
    switch (role) {
    case ControllerRole:
        return QVariant::fromValue<QObject*>(row.controller.get());
    case SourceRole:
        return row.source;
    case PhaseRole:
        return row.phase;
    case MotionRole:
        return row.motion;
    case FrontRole:
        return row.front;
    case OverlayRole:
        return row.overlay;
    default:
        return {};
    }
}

QHash<int, QByteArray> ScreenModel::roleNames() const
{
    return {{ControllerRole, "controller"}, {SourceRole, "source"}, {PhaseRole, "phase"},
            {MotionRole, "motion"},         {FrontRole, "front"},   {OverlayRole, "overlay"}};
}

int ScreenModel::find(const UIViewController* controller) const
{
    const auto found = std::ranges::find_if(m_rows, [&](const Row& row) { return row.controller.get() == controller; });
    return found == m_rows.end() ? -1 : static_cast<int>(found - m_rows.begin());
}

void ScreenModel::setScreens(std::vector<Row> screens)
{
    for (Row& row : m_rows)
        row.leaving = std::ranges::none_of(screens, [&](const Row& kept) { return kept.controller == row.controller; });
    int place = 0;
    for (Row& screen : screens) {
        const int known = find(screen.controller.get());
        if (known >= 0) {
            place = known + 1;
            continue;
        }
        // Views come and go; the screen is owned here.
        QQmlEngine::setObjectOwnership(screen.controller.get(), QQmlEngine::CppOwnership);
        beginInsertRows({}, place, place);
        m_rows.insert(m_rows.begin() + place, std::move(screen));
        endInsertRows();
        ++place;
    }
}

void ScreenModel::settle()
{
    bool covered = false;
    bool front = true;
    for (auto row = m_rows.rbegin(); row != m_rows.rend(); ++row) {
        if (row->leaving) {
            setPhase(*row, Waiting, false);
            continue;
        }
        setPhase(*row, covered ? Covered : Shown, front);
        covered = covered || !row->overlay;
        front = false;
    }
}

void ScreenModel::setPhase(Row& row, Phase phase, bool front)
{
    if (row.phase == phase && row.front == front)
        return;
    row.phase = phase;
    row.front = front;
    const QModelIndex changed = index(static_cast<int>(&row - m_rows.data()));
    emit dataChanged(changed, changed, {PhaseRole, FrontRole});
}

void ScreenModel::removeLeaving()
{
    std::vector<std::shared_ptr<UIViewController>> left;
    for (int i = rowCount() - 1; i >= 0; --i) {
        const auto row = m_rows.begin() + i;
        if (!row->leaving)
            continue;
        left.push_back(row->controller);
        beginRemoveRows({}, i, i);
        m_rows.erase(row);
        endRemoveRows();
    }
    // The views are deleted on the next turn of the loop, and their bindings ask the screen until then.
    QMetaObject::invokeMethod(
        this,
        [this, left] {
            QMetaObject::invokeMethod(
                this, [left] {}, Qt::QueuedConnection);
        },
        Qt::QueuedConnection);
}

} // namespace lamina
