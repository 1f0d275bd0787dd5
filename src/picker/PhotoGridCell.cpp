#include "picker/PhotoGridCell.h"

namespace lamina {

void PhotoGridCell::setSelected(bool selected)
{
    if (m_selected == selected)
        return;
    m_selected = selected;
    emit selectedChanged();
}

void PhotoGridCell::prepareForReuse()
{
    setSelected(false);
}

} // namespace lamina
