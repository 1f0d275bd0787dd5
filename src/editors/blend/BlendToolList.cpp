#include "editors/blend/BlendToolList.h"

#include "platform/base/Localization.h"

#include <QVariantMap>

namespace lamina {

namespace {

struct ListedTool {
    const char* name;
    BlendTool tool;
    bool enabled;
};

constexpr ListedTool kListedTools[] = {
    {QT_TRANSLATE_NOOP("Lamina", "Reset"), BlendTool::Reset, true},
    {QT_TRANSLATE_NOOP("Lamina", "Move"), BlendTool::Pan, true},
    {QT_TRANSLATE_NOOP("Lamina", "Tools"), BlendTool::Tools, false},
    {QT_TRANSLATE_NOOP("Lamina", "Effects"), BlendTool::Effects, false},
    {QT_TRANSLATE_NOOP("Lamina", "Sticker"), BlendTool::Stickers, false},
};

} // namespace

QVariantList blendToolList(const BlendToolBar& bar)
{
    QVariantList list;
    for (const ListedTool& listed : kListedTools) {
        const BlendToolCell& cell = bar.cell(listed.tool);
        const std::string_view icon = cell.imageName;
        list << QVariantMap{
            {"name", QString::fromStdString(localizedString(listed.name))},
            {"icon", QString::fromUtf8(icon.data(), static_cast<qsizetype>(icon.size()))},
            {"active", listed.tool == bar.activeTool()},
            {"gray", cell.background == UIColor::gray()},
            {"enabled", listed.enabled},
            {"tag", BlendToolBar::tag(listed.tool)},
        };
    }
    return list;
}

} // namespace lamina
