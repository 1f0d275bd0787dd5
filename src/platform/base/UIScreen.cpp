#include "platform/base/UIScreen.h"

#include <algorithm>
#include <cmath>
#include <mutex>

namespace lamina {

namespace {

constinit std::mutex g_mutex;
constinit UIScreen g_main;

double usable(double value, double fallback)
{
    return std::isfinite(value) && value > 0 ? value : fallback;
}

} // namespace

UIScreen UIScreen::main()
{
    const std::lock_guard lock(g_mutex);
    return g_main;
}

void UIScreen::setMain(const UIScreen& screen)
{
    const UIScreen standard;
    const std::lock_guard lock(g_mutex);
    g_main.bounds = {usable(screen.bounds.width, standard.bounds.width),
                     usable(screen.bounds.height, standard.bounds.height)};
    g_main.scale = std::isfinite(screen.scale) ? std::max(1.0, screen.scale) : 1.0;
}

} // namespace lamina
