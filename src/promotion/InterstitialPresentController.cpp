#include "promotion/InterstitialPresentController.h"

#include "platform/application/UIApplication.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/Localization.h"
#include "platform/base/Log.h"
#include "platform/base/Result.h"
#include "platform/net/NetworkCauses.h"
#include "platform/net/WebAddress.h"
#include "platform/view/FailureAlert.h"

#include <QCoreApplication>

namespace lamina {

void InterstitialPresentController::viewDidLoad()
{
    UIViewController::viewDidLoad();
    m_shown = m_interstititalImage;
    emit loaded();
}

QSizeF InterstitialPresentController::pictureSize() const
{
    const IntSize size = m_shown.pixelSize();
    return QSizeF(size.width, size.height);
}

QString InterstitialPresentController::host() const
{
    constexpr qsizetype kMost = 64; // whose it is stands at its end
    const QString whole = QString::fromStdString(webHost(m_appstoreLink.value_or("")));
    return whole.size() > kMost ? QStringLiteral("…") + whole.right(kMost) : whole;
}

void InterstitialPresentController::taponImageView()
{
    if (!m_appstoreLink)
        return fail(QT_TRANSLATE_NOOP("Lamina", "there is no link"));
    if (!isWebAddress(*m_appstoreLink))
        return fail(cause::kNotAWebAddress);
    if (!UIApplication::shared().openURL(*m_appstoreLink))
        fail(QT_TRANSLATE_NOOP("Lamina", "no program takes it"));
}

void InterstitialPresentController::cancelClick()
{
    dismiss(true);
}

void InterstitialPresentController::fail(const char* cause)
{
    const Error error{host().toStdString(), cause};
    logError("recommendation: " + error.message());
    presentFailure(*this, localizedString("Can’t open the page"), error);
}

} // namespace lamina
