#pragma once

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
    Q_PROPERTY(int sheetDuration READ sheetDuration WRITE setSheetDuration NOTIFY durationsChanged FINAL)
    /// Whether a mouse is at hand; false: fingers are.
    Q_PROPERTY(bool mouseAtHand READ mouseAtHand NOTIFY mouseAtHandChanged FINAL)
    /// Whether the keyboard's focus is to be shown, since the user works by keys.
    Q_PROPERTY(bool focusVisible READ isFocusVisible NOTIFY focusVisibleChanged FINAL)
    /// The panel of work under way, a `ProgressOverlay`.
    Q_PROPERTY(QObject* progress READ progress CONSTANT FINAL)
    /// The picker that has to choose in the window, since no chooser of the system answers; null: none.
    Q_PROPERTY(QObject* folderPicker READ folderPicker NOTIFY folderPickerChanged FINAL)
    /// The folder it looks into.
    Q_PROPERTY(QObject* folder READ folder CONSTANT FINAL)

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
    /// The same for sheets.
    int sheetDuration() const { return m_sheetDuration; }
    void setSheetDuration(int milliseconds);
    /// See PointerKind.
    bool mouseAtHand() const;
    /// See FocusKeeper.
    bool isFocusVisible() const;
    /// The `UIImagePickerController` or `UIDocumentPickerViewController` that waits for a choice in the window; null:
    /// none.
    QObject* folderPicker() const;
    /// The process's own.
    QObject* progress() const;
    /// The application's `FolderModel`; stays owned by the application.
    QObject* folder() const;

    /// Gives the keyboard to a screen's item: what had the focus there has it again, and Tab goes round inside it.
    Q_INVOKABLE void giveFocusTo(QQuickItem* frame);
    /// Shows the list of keys over the screen on top; nothing while that is an alert or a picker.
    Q_INVOKABLE void showKeys();
    /// Takes the whole display, or gives it back.
    Q_INVOKABLE void toggleFullScreen();
    /// Closes the window as its frame's button does; the application ends with it.
    Q_INVOKABLE void closeWindow();
    /// Hands what the clipboard holds to the screen on top; false when there is no picture, or it takes none.
    Q_INVOKABLE bool paste();
    /// The answer of the folder picker.
    Q_INVOKABLE void choose(const QString& path);
    /// The same of one that asks where a file is to go: the folder.
    Q_INVOKABLE void placeIn(const QString& folder);

signals:
    void transitionDurationChanged();
    void durationsChanged();
    void mouseAtHandChanged();
    void focusVisibleChanged();
    void folderPickerChanged();

private:
    void setDuration(int& duration, int milliseconds);

    Application& m_application;
    int m_transitionDuration = 0;
    int m_slideDuration = 0;
    int m_fadeDuration = 0;
    int m_sheetDuration = 0;
};

} // namespace lamina
