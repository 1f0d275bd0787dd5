#include "platform/host/QmlTypes.h"

#include "platform/host/Application.h"

// From the code that the build writes for the module.
extern void qml_register_types_Lamina();

namespace lamina {

void registerQmlTypes()
{
    static void (*volatile registration)() = &qml_register_types_Lamina;
    (void)registration;
}

SystemSettings* SystemSettingsInQml::create(QQmlEngine*, QJSEngine*)
{
    SystemSettings* const settings = &Application::current()->settings();
    QQmlEngine::setObjectOwnership(settings, QQmlEngine::CppOwnership);
    return settings;
}

} // namespace lamina
