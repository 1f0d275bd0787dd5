#pragma once

#include <QQuickItem>

namespace lamina {

/// The item of one screen in the window, a focus scope. Those who can't see the window are told of the screen on top
/// alone: of one that is covered, by an alert too, nothing is told but that it is there and not showing.
///
/// Give it an accessible role, by which Qt knows that it is to be described at all.
class ScreenItem : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    /// Whether another screen stands over it, or it is on its way.
    Q_PROPERTY(bool covered READ isCovered WRITE setCovered NOTIFY coveredChanged FINAL)
    /// Whether it lets another screen show through: then it asks for an answer first.
    Q_PROPERTY(bool modal READ isModal WRITE setModal NOTIFY modalChanged FINAL)

    /// What the screen is called.
    Q_PROPERTY(QString name READ name WRITE setName NOTIFY nameChanged FINAL)

public:
    explicit ScreenItem(QQuickItem* parent = nullptr);
    /// See the property; a change is told to assistive technologies.
    bool isCovered() const { return m_covered; }
    void setCovered(bool covered);
    /// See the property.
    bool isModal() const { return m_modal; }
    void setModal(bool modal);
    /// See the property.
    const QString& name() const { return m_name; }
    void setName(const QString& name);

signals:
    void nameChanged();
    void coveredChanged();
    void modalChanged();

private:
    bool m_covered = false;
    bool m_modal = false;
    QString m_name;
};

/// Has `ScreenItem`s described to assistive technologies. Once, before the first one is made.
void installScreenAccessibility();

} // namespace lamina
