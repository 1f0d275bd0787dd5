#include "platform/base/UIScreen.h"

#include <algorithm>
#include <cmath>

namespace lamina {

namespace {

constinit UIScreen g_main;

double usable(double value, double fallback)
{
    return std::isfinite(value) && value > 0 ? value : fallback;
}

} // namespace

UIScreen UIScreen::main()
{
    return g_main;
}

void UIScreen::setMain(const UIScreen& screen)
{
    const UIScreen standard;
    g_main.bounds = {usable(screen.bounds.width, standard.bounds.width),
                     usable(screen.bounds.height, standard.bounds.height)};
    g_main.scale = std::isfinite(screen.scale) ? std::max(1.0, screen.scale) : 1.0;
}

} // namespace lamina
