#pragma once

#include "platform/view/UIViewController.h"

#include <QAbstractListModel>
#include <QUrl>

#include <memory>
#include <vector>

namespace lamina {

/// The screens that the window holds, from the bottom to the top. Each row is drawn by the QML file at its `source`.
class ScreenModel : public QAbstractListModel {
    Q_OBJECT

public:
    /// Waiting: on its way in, or out. Covered: another screen stands over it and hides it.
    enum Phase { Waiting, Shown, Covered };
    Q_ENUM(Phase)
    /// How a screen comes and goes: pushed from the side, or faded in.
    enum Motion { Slide, Fade };
    Q_ENUM(Motion)
    /// What a row tells its view.
    enum Role { ControllerRole = Qt::UserRole, SourceRole, PhaseRole, MotionRole, FrontRole, OverlayRole };

    /// One screen, and how it is to be shown.
    struct Row {
        std::shared_ptr<UIViewController> controller;
        QUrl source;
        bool overlay = false; ///< lets what lies below show through
        Motion motion = Fade;
        Phase phase = Waiting;
        bool front = false; ///< has the keyboard
        bool leaving = false;
    };

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    /// Makes the rows those given, in their order. New ones wait; ones that are not given go on to leave, and stay
    /// until `removeLeaving`. Then `settle` says who is seen.
    void setScreens(std::vector<Row> screens);
    /// Shows what is not covered, and hides the rest. Animated by the views.
    void settle();
    /// Takes out the rows of the screens that left.
    void removeLeaving();

private:
    int find(const UIViewController* controller) const;
    void setPhase(Row& row, Phase phase, bool front);

    std::vector<Row> m_rows;
};

} // namespace lamina
