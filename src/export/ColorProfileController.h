#pragma once

#include "export/ExportProtocols.h"
#include "export/SheetViewController.h"
#include "platform/view/ListModel.h"

#include <QObject>

#include <memory>
#include <string>
#include <utility>

namespace lamina {

/// The sheet that asks for the colour profile of a page for print. Main thread.
class ColorProfileController : public SheetViewController {
    Q_OBJECT
    Q_PROPERTY(QObject* profileCollectiomnView READ profileCollectiomnView CONSTANT FINAL)
    Q_PROPERTY(int selecIndex READ selecIndex NOTIFY selecIndexChanged FINAL)

public:
    static constexpr double kRowHeight = 60; ///< points; as wide as the sheet

    /// A row of the list, under these names.
    struct ColorProfileCell {
        std::string profileLbl;   ///< in the user's language
        bool doneImgView = false; ///< the row is marked
    };

    ColorProfileController();

    /// Receives the choice, and dismisses the sheet.
    std::shared_ptr<ColorProfilePassed> delegate() const { return m_delegate.lock(); }
    void setDelegate(std::weak_ptr<ColorProfilePassed> delegate) { m_delegate = std::move(delegate); }
    /// The marked row; default 0.
    int selecIndex() const { return m_selecIndex; }
    void setSelecIndex(int index);

    ListModel<ColorProfileCell>& cells() { return m_cells; }
    QObject* profileCollectiomnView() { return &m_cells; }

    /// Tells the delegate. Nothing for a row that there is not, and once the sheet leaves.
    Q_INVOKABLE void selectRow(int index);

signals:
    void selecIndexChanged();

private:
    std::weak_ptr<ColorProfilePassed> m_delegate;
    int m_selecIndex = 0;
    ListModel<ColorProfileCell> m_cells;
};

} // namespace lamina
