#pragma once

#include "platform/base/Result.h"
#include "platform/view/UIViewController.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>

namespace lamina {

/// Where the user wants a file to be.
struct UIDocumentPlace {
    std::string path;      ///< of the file, its name included; bytes
    bool replaces = false; ///< something bears the name, and the user has agreed that it goes
};

/// Writes the bytes there, whole or not at all. What has taken the name since the user was asked about it is left
/// alone: an error then. The error's subject is the path. Usable from any thread.
Outcome writeFileAtPlace(const UIDocumentPlace& place, std::span<const std::uint8_t> bytes);
/// The same with what another file holds, however large; the error's subject may be that file's path.
Outcome copyFileToPlace(const std::string& path, const UIDocumentPlace& place);

/// Asks the user for a place and a name for a file, or for a folder or a movie that is there, in the system's own
/// dialog, or in the window where there is none. It reads and writes nothing. It is presented, and takes itself away
/// with the answer. Main thread.
///
///   auto picker = std::make_shared<UIDocumentPickerViewController>("default.png",
///       [this](std::optional<UIDocumentPlace> place) { if (place) saveAt(*place); });
///   present(picker, true);
class UIDocumentPickerViewController : public UIViewController {
    Q_OBJECT
    Q_PROPERTY(QString suggestedName READ suggestedNameText CONSTANT FINAL)
    Q_PROPERTY(bool asksForFolder READ asksForFolder CONSTANT FINAL)
    Q_PROPERTY(bool asksForMovie READ asksForMovie CONSTANT FINAL)

public:
    /// The place; nothing: the user wants none, or, after an alert that says so, could not be asked. Runs once, when
    /// the picker has been dismissed, so that it may present something.
    using Answer = std::function<void(std::optional<UIDocumentPlace> place)>;

    /// `suggestedName`: the file's name to begin with, its extension included; empty: the place is a folder.
    UIDocumentPickerViewController(std::string suggestedName, Answer answer);
    /// One that asks for a movie's file.
    static std::shared_ptr<UIDocumentPickerViewController> makeForMovie(Answer answer);

    /// Where the dialog starts; default empty: where the system likes.
    const std::string& folder() const { return m_folder; }
    void setFolder(std::string folder) { m_folder = std::move(folder); }
    /// The name the dialog starts with.
    const std::string& suggestedName() const { return m_suggestedName; }
    QString suggestedNameText() const { return QString::fromStdString(m_suggestedName); }
    bool asksForFolder() const { return m_suggestedName.empty() && !m_asksForMovie; }
    bool asksForMovie() const { return m_asksForMovie; }
    /// Not answered yet.
    bool isChoosing() const { return m_choosing; }

    /// The user's answer; the first of these three counts.
    void choose(UIDocumentPlace place);
    /// The user wants no place.
    Q_INVOKABLE void cancel();
    /// Asking went wrong: an alert over the screen that presented this names the cause.
    void fail(const Error& error);

    UISystemPresentation systemPresentation() const override { return UISystemPresentation::DocumentPicker; }

signals:
    /// Answered: whatever asks the user can go.
    void answered();

private:
    void finish(std::optional<UIDocumentPlace> place, const Error* failure);

    std::string m_suggestedName;
    std::string m_folder;
    Answer m_answer;
    bool m_asksForMovie = false;
    bool m_choosing = true;
};

} // namespace lamina
