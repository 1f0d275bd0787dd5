#pragma once

#include "platform/host/LastPointer.h"
#include "platform/host/ScreenModel.h"

#include <QObject>
#include <QQmlEngine>
#include <QQuickItem>

namespace lamina {

class Application;
class FolderModel;

/// What the window's QML asks of the application around it; `Host` there.
class HostBridge : public QObject {
    Q_OBJECT
    QML_NAMED_ELEMENT(Host)
    QML_SINGLETON
    Q_PROPERTY(lamina::ScreenModel* screens READ screens CONSTANT FINAL)
    /// Milliseconds of the transition that has just begun.
    Q_PROPERTY(int transitionDuration READ transitionDuration NOTIFY transitionDurationChanged FINAL)
    /// Milliseconds that each kind of transition is to take, told by the views.
    Q_PROPERTY(int slideDuration READ slideDuration WRITE setSlideDuration NOTIFY durationsChanged FINAL)
    Q_PROPERTY(int fadeDuration READ fadeDuration WRITE setFadeDuration NOTIFY durationsChanged FINAL)
    /// Whether a mouse is at hand; false: fingers are.
    Q_PROPERTY(bool mouseAtHand READ mouseAtHand NOTIFY mouseAtHandChanged FINAL)
    /// The view that has the keyboard: Tab goes round inside it.
    Q_PROPERTY(QQuickItem* focusFrame READ focusFrame WRITE setFocusFrame NOTIFY focusFrameChanged FINAL)
    /// The picker that has to choose in the window, since no chooser of the system answers; null: none.
    Q_PROPERTY(QObject* folderPicker READ folderPicker NOTIFY folderPickerChanged FINAL)
    /// The folder it looks into.
    Q_PROPERTY(QObject* folder READ folder CONSTANT FINAL)
    /// What the user points with: "touch" or "mouse"; see LastPointer.
    Q_PROPERTY(QString lastPointer READ lastPointer NOTIFY lastPointerChanged FINAL)

public:
    explicit HostBridge(Application& application);
    /// The application's bridge, for QML's engine; stays owned by the application.
    static HostBridge* create(QQmlEngine* engine, QJSEngine* scriptEngine);

    /// The screens in the window, from the bottom to the top.
    ScreenModel* screens() const;
    int transitionDuration() const { return m_transitionDuration; }
    /// Milliseconds for screens that slide in from the side and out again; 0: at once.
    int slideDuration() const { return m_slideDuration; }
    void setSlideDuration(int milliseconds);
    /// The same for screens that fade in and out.
    int fadeDuration() const { return m_fadeDuration; }
    void setFadeDuration(int milliseconds);
    /// See PointerKind.
    bool mouseAtHand() const;
    /// The item inside which Tab goes round; null: Tab goes as Qt has it.
    QQuickItem* focusFrame() const { return m_focusFrame; }
    void setFocusFrame(QQuickItem* frame);
    /// The `UIImagePickerController` that waits for a choice in the window; null: none.
    QObject* folderPicker() const;
    /// The application's `FolderModel`; stays owned by the application.
    QObject* folder() const;

    QString lastPointer() const;

    /// Hands what the clipboard holds to the screen on top; false when there is no picture, or it takes none.
    Q_INVOKABLE bool paste();
    /// The answer of the folder picker.
    Q_INVOKABLE void choose(const QString& path);

signals:
    void transitionDurationChanged();
    void durationsChanged();
    void mouseAtHandChanged();
    void focusFrameChanged();
    void folderPickerChanged();
    void lastPointerChanged();

private:
    void tellDurations();

    Application& m_application;
    LastPointer m_lastPointer;
    int m_transitionDuration = 0;
    int m_slideDuration = 0;
    int m_fadeDuration = 0;
    QPointer<QQuickItem> m_focusFrame;
};

} // namespace lamina
