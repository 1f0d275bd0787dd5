#pragma once

#include "platform/base/Result.h"
#include "platform/image/pixels/UIImage.h"
#include "platform/view/ListModel.h"
#include "platform/view/UIViewController.h"

#include <QAbstractItemModel>

#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>

namespace lamina {

/// What can be done with something that is shared, in the order of the rows.
enum class UIActivityType { OpenWith, Mail, Copy, SaveCopy, ShowInFolder, Print };

/// One row of the sheet, in the user's language.
struct UIActivityRow {
    UIActivityType type = UIActivityType::OpenWith;
    std::string icon; ///< the name of a picture of ours
    std::string title;
    std::string line; ///< what it will do, or where
};

/// How a sheet ended.
struct UIActivityResult {
    std::optional<UIActivityType> type; ///< what the user chose; nothing: they closed the sheet
    bool completed = false;             ///< it was done; false: given up, or failed, which an alert has told
    std::string path;                   ///< SaveCopy: the copy
};

/// The system's share sheet: one picture or one file, and what this machine can do with it. The window draws it and
/// does what is chosen, after the sheet has gone; what goes wrong there is told in an alert over the screen that
/// presented the sheet. Without a window it has no rows. Main thread.
///
/// A picture may have a file that holds it: rows that need one use that. Where the file is still being written they
/// wait for it.
class UIActivityViewController : public UIViewController {
    Q_OBJECT
    /// See UIActivityRow: type, iconName, title, line.
    Q_PROPERTY(QAbstractItemModel* rows READ rowModel CONSTANT FINAL)
    /// Whether it is known what the machine can do; before there are no rows.
    Q_PROPERTY(bool ready READ isReady NOTIFY readyChanged FINAL)

public:
    /// Heard once, when all is over; maybe long after the sheet has gone, since it waits for other programs.
    using CompletionWithItemsHandler = std::function<void(const UIActivityResult& result)>;

    /// A sheet with a picture.
    explicit UIActivityViewController(UIImage image);
    /// A sheet with a file, by its absolute path.
    explicit UIActivityViewController(std::string path);

    void setCompletionWithItemsHandler(CompletionWithItemsHandler handler) { m_handler = std::move(handler); }

    /// The picture that is shared; empty: a file is.
    const UIImage& image() const { return m_image; }
    /// The file, or that of the picture; an error: there is none, and why. Nothing: it is still to come.
    const std::optional<Result<std::string>>& file() const { return m_file; }
    /// The picture's file will come: `setFile` is going to be called. To be told before the sheet is presented.
    void expectFile() { m_file.reset(); }
    /// The path of the picture's file, or why there is none.
    void setFile(Result<std::string> path);

    const ListModel<UIActivityRow>& rows() const { return m_rows; }
    QAbstractItemModel* rowModel() { return &m_rows; }
    bool isReady() const { return m_ready; }

    /// The user's choice; an index out of range and a second choice do nothing.
    Q_INVOKABLE void choose(int row);
    /// The user closes the sheet.
    Q_INVOKABLE void cancel();

    // For the window, which does what is chosen.

    /// What this machine can do at all; of it come the rows for what is shared.
    void setServed(std::set<UIActivityType> served);
    /// The screen that presented the sheet, also after that has gone; null before, and when it has gone itself.
    std::shared_ptr<UIViewController> presenter() const { return m_presenter.lock(); }
    /// What was chosen is over.
    void end(bool completed, const std::string& path = {});
    /// It went wrong: an alert with the title, in the user's language, names the cause.
    void fail(std::string title, const Error& error);

    UISystemPresentation systemPresentation() const override { return UISystemPresentation::Activity; }

signals:
    void readyChanged();
    /// `file()` has come.
    void fileChanged();
    /// The sheet has gone from the screen.
    void gone();
    /// It has gone with this choice, which is to be done now; `end` or `fail` follows.
    void chosen(lamina::UIActivityType type);

private:
    void makeRows();
    bool isPossible(UIActivityType type) const;
    void leave(std::optional<UIActivityType> type);

    UIImage m_image;
    std::optional<Result<std::string>> m_file;
    std::set<UIActivityType> m_served;
    ListModel<UIActivityRow> m_rows;
    bool m_ready = false;
    bool m_left = false;
    std::optional<UIActivityType> m_type;
    std::weak_ptr<UIViewController> m_presenter;
    CompletionWithItemsHandler m_handler;
};

} // namespace lamina
