#pragma once

#include "platform/host/Application.h"

#include <QString>

namespace lamina::test {

/// The camera's screen in all of its states, with a camera that sees a sample photo.
void shootCamera(const LaunchOptions& options, const QString& prefix);

} // namespace lamina::test
