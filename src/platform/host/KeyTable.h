#pragma once

#include <QObject>
#include <QQmlEngine>
#include <QStringList>
#include <QVariantList>

namespace lamina {

/// Every key that the window obeys, once: what it is called, which keys it has, and where it is listed. Shortcuts,
/// handlers of keys, tooltips and the list of keys are all made from here, so that none of them says something else.
/// What a screen does at a command, the screen knows. `KeyTable` in QML. Main thread.
///
/// Left out are the keys that press a control (Space, Enter) or belong to it (arrows on a slider).
class KeyTable : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    /// The table as it is shown: maps {title, rows}, each row a map {command, text, caps}; see `caps`.
    Q_PROPERTY(QVariantList groups READ groups CONSTANT FINAL)

public:
    explicit KeyTable(QObject* parent = nullptr);

    /// The names of all commands, in their order.
    static QStringList commands();
    /// See the property.
    QVariantList groups() const;

    /// The command's keys as `Shortcut.sequences` wants them. Empty for an unknown command, as all of these are.
    Q_INVOKABLE QStringList sequences(const QString& command) const;
    /// Which of the command's keys this is; -1: none of them. `key` and `modifiers` are those of a key event. Shift is
    /// left aside where it only reaches a sign, such as plus.
    Q_INVOKABLE int find(const QString& command, int key, int modifiers) const;
    /// The command's keys as caps: a list of maps {text, cap}; what is no cap stands between them ("or", "to").
    Q_INVOKABLE QVariantList caps(const QString& command) const;
    /// The first of the command's keys in words, such as "Ctrl+Z".
    Q_INVOKABLE QString words(const QString& command) const;
};

} // namespace lamina
