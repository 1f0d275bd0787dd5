#pragma once

#include "platform/image/pixels/UIImage.h"
#include "platform/view/UIImageMetaType.h"
#include "platform/view/UIViewController.h"

#include <QSizeF>
#include <QString>
#include <QVariant>

#include <optional>
#include <string>
#include <utility>

namespace lamina {

/// A recommendation, as one picture that leads to a page of the web. It stays until the user closes it. Main thread.
class InterstitialPresentController : public UIViewController {
    Q_OBJECT
    /// The picture, a `UIImage`, from when the view loads.
    Q_PROPERTY(QVariant interstitialImageView READ interstitialImageView NOTIFY loaded FINAL)
    /// Its sides in pixels; empty where there is none.
    Q_PROPERTY(QSizeF pictureSize READ pictureSize NOTIFY loaded FINAL)
    /// Where a tap leads, for people to judge: "example.org", of a long name its end; empty: nowhere.
    Q_PROPERTY(QString host READ host NOTIFY loaded FINAL)

public:
    /// Set before presenting.
    void setInterstititalImage(UIImage image) { m_interstititalImage = std::move(image); }
    const UIImage& interstititalImage() const { return m_interstititalImage; }
    /// An http or https URL. Set before presenting.
    void setAppstoreLink(std::optional<std::string> link) { m_appstoreLink = std::move(link); }
    const std::optional<std::string>& appstoreLink() const { return m_appstoreLink; }

    /// See the properties.
    QVariant interstitialImageView() const { return QVariant::fromValue(m_shown); }
    /// Likewise.
    QSizeF pictureSize() const;
    /// Likewise.
    QString host() const;

    /// Opens the link; the screen stays. A link that leads nowhere, and a system that opens none, is told in an alert.
    Q_INVOKABLE void taponImageView();
    /// Takes the screen away.
    Q_INVOKABLE void cancelClick();

    void viewDidLoad() override;

signals:
    void loaded();

private:
    void fail(const char* cause);

    UIImage m_interstititalImage;
    UIImage m_shown;
    std::optional<std::string> m_appstoreLink;
};

} // namespace lamina
