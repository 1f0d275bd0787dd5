#include "platform/host/system/ActivityPresenter.h"

#include "platform/host/system/ActivityRun.h"
#include "platform/host/system/BackgroundWork.h"
#include "platform/host/system/SharingServices.h"
#include "platform/host/system/WindowIdentifier.h"

#include <QWindow>

#include <memory>
#include <utility>

namespace lamina {

ActivityPresenter::ActivityPresenter(QWindow& parent, BusConnector connector)
    : m_parent(parent)
    , m_connector(std::move(connector))
{
}

void ActivityPresenter::present(UIViewController* screen)
{
    if (screen->systemPresentation() != UISystemPresentation::Activity)
        return;
    auto* const sheet = static_cast<UIActivityViewController*>(screen);
    connect(sheet, &UIActivityViewController::chosen, this,
            [this, sheet](UIActivityType type) { perform(*sheet, type); });
    // The machine rarely changes: what it offered the last time is shown until it is known.
    if (!m_served.empty())
        sheet->setServed(m_served);
    inBackground<std::set<UIActivityType>>(
        busQueue(), sheet, [connector = m_connector] { return servedActivities(connector()); },
        [self = QPointer(this), sheet](std::set<UIActivityType> served) {
            if (self)
                self->m_served = served;
            sheet->setServed(std::move(served));
        });
}

void ActivityPresenter::perform(UIActivityViewController& sheet, UIActivityType type)
{
    // Lives until it is over, and ends with this object.
    auto* const run = new ActivityRun(std::static_pointer_cast<UIActivityViewController>(sheet.shared_from_this()),
                                      type, {portalWindowIdentifier(&m_parent), m_connector}, this);
    connect(run, &ActivityRun::over, run, &QObject::deleteLater);
    run->start();
}

} // namespace lamina
