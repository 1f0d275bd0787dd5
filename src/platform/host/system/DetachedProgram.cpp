#include "platform/host/system/DetachedProgram.h"

#include <QProcess>
#include <QStandardPaths>

namespace lamina {

bool hasProgram(const QString& name)
{
    return !QStandardPaths::findExecutable(name).isEmpty();
}

bool startProgram(const QString& name, const QStringList& arguments)
{
    const QString path = QStandardPaths::findExecutable(name);
    return !path.isEmpty() && QProcess::startDetached(path, arguments);
}

} // namespace lamina
