#include "export/SavingTypeController.h"

#include "export/SavingTypes.h"
#include "export/functions/ExportWork.h"
#include "platform/base/Localization.h"
#include "platform/base/Log.h"

#include <algorithm>
#include <cstddef>
#include <vector>

namespace lamina {

SavingTypeController::SavingTypeController()
    : SheetViewController(kChooserRadius)
    , m_cells{{"savingImageName", &SavingTypeCell::savingImageName},
              {"saveformatnameLbl", &SavingTypeCell::saveformatnameLbl},
              {"infolbl", &SavingTypeCell::infolbl},
              {"selectbtn", &SavingTypeCell::selectbtn},
              {"suggestedLbl", &SavingTypeCell::suggestedLbl}}
{
    fillCells();
}

void SavingTypeController::setSelectedIndex(int index)
{
    m_selectedIndex = index;
    fillCells();
    emit selectedIndexChanged();
}

void SavingTypeController::setIsimage(bool isimage)
{
    m_isimage = isimage;
    fillCells();
}

void SavingTypeController::fillCells()
{
    const SavingtypeMethod suggested = m_isimage ? SavingtypeMethod::png : SavingtypeMethod::mp4;
    for (std::size_t i = 0; i < kSavingTypeTitles.size(); ++i) {
        SavingTypeCell cell{kSavingTypeIcons[i], localizedString(kSavingTypeTitles[i]),
                            localizedString(kSavingTypeInfos[i]), static_cast<int>(i) == m_selectedIndex,
                            i == indexOf(suggested)};
        if (i < m_cells.rows().size())
            m_cells.change(i, std::move(cell));
        else
            m_cells.append(std::move(cell));
    }
}

void SavingTypeController::selectRow(int index)
{
    if (!savingTypeOf(index) || !isClosable())
        return;
    setSelectedIndex(index);
    clearBackground();
    leave([delegate = m_delegate, type = *savingTypeOf(std::min(index, kSavingTypeCount - 1))] {
        if (const auto heard = delegate.lock())
            heard->selectedtypeWithType(type);
        else
            logError("nobody hears of the type that was chosen");
    });
}

} // namespace lamina
