#pragma once

#include "export/ExportProtocols.h"
#include "export/SheetViewController.h"
#include "platform/view/ListModel.h"

#include <QObject>

#include <memory>
#include <string>
#include <utility>

namespace lamina {

/// The sheet that asks which type to save as: a row for each. Main thread.
class SavingTypeController : public SheetViewController {
    Q_OBJECT
    Q_PROPERTY(QObject* savingTypeCollectionView READ savingTypeCollectionView CONSTANT FINAL)
    Q_PROPERTY(int selectedIndex READ selectedIndex NOTIFY selectedIndexChanged FINAL)

public:
    /// Beyond the rows: none is marked.
    static constexpr int kNothingSelected = 8;
    static constexpr double kRowHeight = 60; ///< points; as wide as the sheet

    /// A row of the list, under these names: `savingImageName`, `saveformatnameLbl`, `infolbl`, `selectbtn`,
    /// `suggestedLbl`. Texts are in the user's language.
    struct SavingTypeCell {
        std::string savingImageName; ///< of an icon
        std::string saveformatnameLbl;
        std::string infolbl;
        bool selectbtn = false;    ///< the row is marked
        bool suggestedLbl = false; ///< it is the one that suits what is exported
    };

    SavingTypeController();

    /// Receives the choice.
    std::shared_ptr<savingMethodPass> delegate() const { return m_delegate.lock(); }
    void setDelegate(std::weak_ptr<savingMethodPass> delegate) { m_delegate = std::move(delegate); }
    /// The marked row; default `kNothingSelected`.
    int selectedIndex() const { return m_selectedIndex; }
    void setSelectedIndex(int index);
    /// Whether a still picture is exported (suggests PNG), and not a clip (suggests MP4). Default: yes.
    bool isimage() const { return m_isimage; }
    void setIsimage(bool isimage);

    ListModel<SavingTypeCell>& cells() { return m_cells; }
    QObject* savingTypeCollectionView() { return &m_cells; }

    /// Marks the row and leaves; when the sheet has gone the delegate hears of the type. Nothing for a row that there
    /// is not, and for a second choice.
    Q_INVOKABLE void selectRow(int index);

signals:
    void selectedIndexChanged();

private:
    void fillCells();

    std::weak_ptr<savingMethodPass> m_delegate;
    int m_selectedIndex = kNothingSelected;
    bool m_isimage = true;
    ListModel<SavingTypeCell> m_cells;
};

} // namespace lamina
