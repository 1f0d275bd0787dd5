#pragma once

#include "platform/host/ScreenModel.h"
#include "platform/host/system/SystemSettings.h"

#include <QQmlEngine>

// Types of modules that know no QML, by the names they have there.

namespace lamina {

/// The list of screens, for the types of its values alone.
namespace ScreenModelInQml {
Q_NAMESPACE
QML_FOREIGN_NAMESPACE(lamina::ScreenRow)
QML_NAMED_ELEMENT(ScreenModel)
} // namespace ScreenModelInQml

/// The application's settings object, as a singleton.
struct SystemSettingsInQml {
    Q_GADGET
    QML_FOREIGN(lamina::SystemSettings)
    QML_NAMED_ELEMENT(SystemSettings)
    QML_SINGLETON

public:
    /// The application's settings, for QML's engine; they stay owned by the application.
    static SystemSettings* create(QQmlEngine* engine, QJSEngine* scriptEngine);
};

/// Keeps the module's types in a program that links this module: without it the linker leaves their registration out.
void registerQmlTypes();

} // namespace lamina
