#pragma once

#include "platform/view/UIViewController.h"

#include <QString>

namespace lamina {

/// A card over any screen, with two pages: the keys that the window obeys, and what the application is. Main thread.
class AboutViewController : public UIViewController {
    Q_OBJECT
    Q_PROPERTY(Page page READ page WRITE setPage NOTIFY pageChanged FINAL)
    Q_PROPERTY(QString version READ version CONSTANT FINAL)
    /// The licence's whole text, in the language in which it binds.
    Q_PROPERTY(QString licence READ licence CONSTANT FINAL)
    /// Whether this build knows where faults are told.
    Q_PROPERTY(bool takesReports READ takesReports CONSTANT FINAL)

public:
    /// What the card shows.
    enum class Page { Keys, About };
    Q_ENUM(Page)

    AboutViewController();

    /// The page that is shown; opens with the keys.
    Page page() const { return m_page; }
    /// Turns to a page.
    void setPage(Page page);
    /// Of this build, such as "1.0.2".
    QString version() const;
    /// See the property: paragraphs parted by empty lines.
    QString licence() const;
    /// See the property.
    bool takesReports() const;

    /// Opens the page where faults are told, in the browser.
    Q_INVOKABLE void report();
    /// Takes the card away.
    Q_INVOKABLE void close();

signals:
    void pageChanged();

private:
    Page m_page = Page::Keys;
};

} // namespace lamina
