#pragma once

#include "platform/view/ListModel.h"
#include "platform/view/UIViewController.h"

#include <QObject>
#include <QUrl>

#include <cstddef>
#include <memory>
#include <vector>

namespace lamina {

/// One screen, and how it is to be shown.
struct ScreenRow {
    Q_GADGET

public:
    /// Waiting: on its way in, or out. Covered: another screen stands over it and hides it.
    enum Phase { Waiting, Shown, Covered };
    Q_ENUM(Phase)
    /// How a screen comes and goes: pushed from the side, faded in, or by itself where its layout is a sheet's.
    enum Motion { Slide, Fade, Rise };
    Q_ENUM(Motion)

    std::shared_ptr<UIViewController> controller;
    QUrl source;
    bool overlay = false; ///< lets what lies below show through
    Motion motion = Fade;
    Phase phase = Waiting;
    bool front = false; ///< has the keyboard
    bool leaving = false;
};

/// The screens that the window holds, from the bottom to the top. Each row is drawn by the QML file at its `source`;
/// views see all but `leaving`.
class ScreenModel : public ListModel<ScreenRow> {
    Q_OBJECT

public:
    using Row = ScreenRow;

    ScreenModel();

    /// Makes the rows those given, in their order. New ones wait; ones that are not given go on to leave, and stay
    /// until `removeLeaving`. Then `settle` says who is seen.
    void setScreens(std::vector<Row> screens);
    /// Shows what is not covered, and hides the rest. Animated by the views.
    void settle();
    /// Takes out the rows of the screens that left.
    void removeLeaving();

private:
    /// The number of rows where there is none.
    std::size_t find(const UIViewController* controller) const;
};

} // namespace lamina
