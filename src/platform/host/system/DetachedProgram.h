#pragma once

#include <QString>
#include <QStringList>

namespace lamina {

/// Whether there is a program of that name. Looks at the disk; usable from any thread.
bool hasProgram(const QString& name);

/// Starts it on its own, to outlive this one. False when there is none, or it can't be started.
bool startProgram(const QString& name, const QStringList& arguments);

} // namespace lamina
