#include "platform/host/ScreenModel.h"

#include <QQmlEngine>

#include <algorithm>
#include <utility>

namespace lamina {

ScreenModel::ScreenModel()
    : ListModel({{"controller", &Row::controller},
                 {"source", &Row::source},
                 {"phase", &Row::phase},
                 {"motion", &Row::motion},
                 {"front", &Row::front},
                 {"overlay", &Row::overlay}})
{
}

std::size_t ScreenModel::find(const UIViewController* controller) const
{
    const auto found = std::ranges::find_if(rows(), [&](const Row& row) { return row.controller.get() == controller; });
    return static_cast<std::size_t>(found - rows().begin());
}

void ScreenModel::setScreens(std::vector<Row> screens)
{
    for (std::size_t i = 0; i < rows().size(); ++i)
        edit(i, [&](Row& row) {
            row.leaving =
                std::ranges::none_of(screens, [&](const Row& kept) { return kept.controller == row.controller; });
        });
    std::size_t place = 0;
    for (Row& screen : screens) {
        const std::size_t known = find(screen.controller.get());
        if (known < rows().size()) {
            place = known + 1;
            continue;
        }
        // Views come and go; the screen is owned here.
        QQmlEngine::setObjectOwnership(screen.controller.get(), QQmlEngine::CppOwnership);
        insert(place, std::move(screen));
        ++place;
    }
}

void ScreenModel::settle()
{
    bool covered = false;
    bool front = true;
    for (std::size_t i = rows().size(); i-- > 0;)
        edit(i, [&](Row& row) {
            row.phase = row.leaving ? Row::Waiting : covered ? Row::Covered : Row::Shown;
            row.front = front && !row.leaving;
            if (row.leaving)
                return;
            covered = covered || !row.overlay;
            front = false;
        });
}

void ScreenModel::removeLeaving()
{
    std::vector<std::shared_ptr<UIViewController>> left;
    for (std::size_t i = rows().size(); i-- > 0;) {
        if (!rows()[i].leaving)
            continue;
        left.push_back(rows()[i].controller);
        remove(i);
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
