#pragma once

#include "platform/host/system/FolderListing.h"
#include "platform/view/ListModel.h"
#include "platform/view/TypeAhead.h"

#include <QVariantList>

#include <atomic>
#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace lamina {

/// A folder as the chooser in the window shows it, as `name`, `path`, `isFolder` and `isParent`: the way up, the
/// folders in it, then its pictures, or its movies. Listed in the background; until then it has at most the way up, and
/// is `loading`. It does not look by itself whether something has changed. Main thread.
class FolderModel : public ListModel<FolderEntry> {
    Q_OBJECT
    /// Absolute and without ".." when read. What is set may be relative; setting the same folder again lists it anew.
    Q_PROPERTY(QString folder READ folder WRITE setFolder NOTIFY folderChanged FINAL)
    /// The folder above; empty at the top.
    Q_PROPERTY(QString parentFolder READ parentFolder NOTIFY folderChanged FINAL)
    /// The folder's name to show: that of the place if it is one of `places`, else the last part of its path.
    Q_PROPERTY(QString title READ title NOTIFY titleChanged FINAL)
    /// Movies are listed, not pictures.
    Q_PROPERTY(bool movies READ showsMovies NOTIFY kindChanged FINAL)
    Q_PROPERTY(Order order READ order WRITE setOrder NOTIFY orderChanged FINAL)
    Q_PROPERTY(bool loading READ isLoading NOTIFY stateChanged FINAL)
    /// Why the folder can't be shown, a sentence; empty: it can.
    Q_PROPERTY(QString error READ error NOTIFY stateChanged FINAL)
    /// What to say about the list, such as that it is not all; mostly empty.
    Q_PROPERTY(QString note READ note NOTIFY stateChanged FINAL)
    /// Whether there is neither a folder nor a picture in it.
    Q_PROPERTY(bool empty READ isEmpty NOTIFY stateChanged FINAL)
    /// Maps {name, path}: the user's pictures, their home, and the samples where there are any. Empty until a folder
    /// has been listed.
    Q_PROPERTY(QVariantList places READ places NOTIFY placesChanged FINAL)

public:
    /// How pictures are sorted; folders always go by name.
    enum Order { NewestFirst, ByName };
    Q_ENUM(Order)
    /// More entries than this are not shown: nobody scrolls that far.
    static constexpr std::size_t kDefaultLimit = 10'000;

    explicit FolderModel(QObject* parent = nullptr);
    /// Stops the listing that is under way, and waits until it has stopped: Qt's own end must not overtake it.
    ~FolderModel() override;

    /// Goes to a folder and lists it; relative ones count from the working directory, the empty one changes nothing.
    QString folder() const { return m_folder; }
    void setFolder(const QString& folder);
    /// The folder above this one; empty at the top.
    QString parentFolder() const;
    /// The folder's name to show.
    QString title() const;
    /// The order of the pictures; another one lists the folder anew.
    Order order() const { return m_order; }
    void setOrder(Order order);
    bool isLoading() const { return m_cancelled != nullptr; }
    QString error() const { return m_error; }
    QString note() const { return m_note; }
    bool isEmpty() const { return count() == (hasParent() ? 1 : 0); }
    QVariantList places() const { return m_places; }
    void setLimit(std::size_t entries) { m_limit = entries; }

    /// See TypeAhead.
    void setTypingMemory(int milliseconds) { m_typeAhead.setMemory(milliseconds); }
    /// The row whose name begins with what was typed; −1: none. See TypeAhead.
    Q_INVOKABLE int rowForTyping(const QString& text, int current);

    /// Goes where choosing begins: the user's pictures; the samples while there are none; their home without either.
    Q_INVOKABLE void openStart();
    /// What the next listings show beside folders.
    void setKind(FolderFiles kind);
    bool showsMovies() const { return m_kind == FolderFiles::Movies; }
    /// Shows itself for a choice: goes to `folder`, or where that is empty lists anew where it was, or at the start.
    void openAt(const std::string& folder);
    /// Lists the folder again; what is shown stays until then.
    Q_INVOKABLE void refresh();

signals:
    void folderChanged();
    void titleChanged();
    void orderChanged();
    void kindChanged();
    void stateChanged();
    void placesChanged();

private:
    struct Listing;
    bool hasParent() const { return !parentFolder().isEmpty(); }
    void resetTo(std::vector<FolderEntry> entries);
    void clear();
    void list(bool start);
    void show(Listing listing);
    void stop();

    QString m_folder;
    Order m_order = NewestFirst;
    FolderFiles m_kind = FolderFiles::Pictures;
    std::size_t m_limit = kDefaultLimit;
    TypeAhead m_typeAhead;
    QString m_error;
    QString m_note;
    QVariantList m_places;
    std::shared_ptr<std::atomic<bool>> m_cancelled; ///< stops the listing under way; null: there is none
};

} // namespace lamina
