#pragma once

#include <QObject>

namespace lamina {

/// One tile of the photo grid: what it shows and how it is marked. It is made and kept by its `PhotoGrid`, and shows
/// another photo when it is used again. Main thread.
class PhotoGridCell : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool selected READ isSelected NOTIFY selectedChanged FINAL)

public:
    bool isSelected() const { return m_selected; }
    /// Called for what a user does and for what is restored alike.
    virtual void setSelected(bool selected);

    /// Lets go of what it shows; the mark goes too.
    virtual void prepareForReuse();

    /// Where it stands in the grid; -1: nowhere any more, though a view may still show it.
    Q_INVOKABLE int item() const { return m_item; }

signals:
    void selectedChanged();

private:
    friend class PhotoGrid;
    bool m_selected = false;
    int m_item = -1;
};

} // namespace lamina
