#include "export/ColorProfileController.h"

#include "export/SavingTypes.h"
#include "platform/base/Localization.h"

#include <cstddef>
#include <vector>

namespace lamina {

ColorProfileController::ColorProfileController()
    : SheetViewController(kSheetRadius, Pull::Nothing)
    , m_cells{{"profileLbl", &ColorProfileCell::profileLbl}, {"doneImgView", &ColorProfileCell::doneImgView}}
{
    for (const char* title : kColorProfileTitles)
        m_cells.append({localizedString(title)});
    setSelecIndex(0);
}

void ColorProfileController::setSelecIndex(int index)
{
    m_selecIndex = index;
    for (std::size_t i = 0; i < m_cells.rows().size(); ++i)
        m_cells.edit(i, [&](ColorProfileCell& cell) { cell.doneImgView = static_cast<int>(i) == index; });
    emit selecIndexChanged();
}

void ColorProfileController::selectRow(int index)
{
    if (index < 0 || index >= m_cells.count() || !isClosable())
        return;
    if (const auto heard = delegate())
        heard->profileSelected(index);
}

} // namespace lamina
