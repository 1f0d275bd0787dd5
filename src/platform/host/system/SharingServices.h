#pragma once

#include "platform/view/UIActivityViewController.h"

#include <QDBusConnection>

#include <set>

namespace lamina {

/// What the desktop offers to do with files, by its portals, its services and its programs: what a share sheet can
/// offer on this machine. Copying and saving need nothing of it. Waits for answers on the bus, a second for each at
/// most: for a background thread.
std::set<UIActivityType> servedActivities(const QDBusConnection& bus);

/// The desktop's file manager on the bus.
inline const QString kFileManager = QStringLiteral("org.freedesktop.FileManager1");

} // namespace lamina
