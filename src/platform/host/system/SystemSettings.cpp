#include "platform/host/system/SystemSettings.h"

#include "platform/base/Log.h"
#include "platform/host/system/BackgroundWork.h"

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QDBusPendingCallWatcher>
#include <QDBusServiceWatcher>
#include <QDBusVariant>

#include <algorithm>
#include <cmath>
#include <string>
#include <utility>

namespace lamina {

namespace {

const QString kSettingsInterface = QStringLiteral("org.freedesktop.portal.Settings");
const QString kGnome = QStringLiteral("org.gnome.desktop.interface");
const QString kCommon = QStringLiteral("org.freedesktop.appearance");
const QString kKde = QStringLiteral("org.kde.kdeglobals.KDE");

constexpr double kSmallestText = 0.5;
constexpr double kLargestText = 2;

std::optional<double> finiteNumber(const QVariant& value)
{
    bool isNumber = false;
    const double number = value.toDouble(&isNumber);
    return isNumber && std::isfinite(number) ? std::optional(number) : std::nullopt;
}

void complain(const char* variable, const QString& value)
{
    logWarning(std::string(variable) + ": \"" + value.toStdString() + "\" is ignored");
}

std::optional<double> textScaleOfEnvironment()
{
    const QString value = qEnvironmentVariable("LAMINA_TEXT_SCALE");
    const std::optional<double> scale = value.isEmpty() ? std::nullopt : finiteNumber(value);
    if (!value.isEmpty() && !scale)
        complain("LAMINA_TEXT_SCALE", value);
    return scale;
}

std::optional<bool> reducedMotionOfEnvironment()
{
    const QString value = qEnvironmentVariable("LAMINA_REDUCED_MOTION");
    if (value == QLatin1String("1") || value == QLatin1String("true"))
        return true;
    if (value == QLatin1String("0") || value == QLatin1String("false"))
        return false;
    if (!value.isEmpty())
        complain("LAMINA_REDUCED_MOTION", value);
    return std::nullopt;
}

/// Some portals put a value into two wrappings.
QVariant unwrapped(QVariant value)
{
    while (value.metaType() == QMetaType::fromType<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();
    return value;
}

} // namespace

SystemSettings::SystemSettings(BusConnector connector, QObject* parent)
    : QObject(parent)
    , m_fixedTextScale(textScaleOfEnvironment())
    , m_fixedReducedMotion(reducedMotionOfEnvironment())
{
    apply();
    if (m_fixedTextScale && m_fixedReducedMotion)
        return;
    m_connecting = true;
    inBackground<QDBusConnection>(busQueue(), this, std::move(connector), [this](const QDBusConnection& bus) {
        m_connecting = false;
        listen(bus);
    });
}

SystemSettings::~SystemSettings()
{
    if (m_connecting)
        awaitBusQueue();
}

void SystemSettings::listen(const QDBusConnection& bus)
{
    if (!bus.isConnected())
        return;
    // First listen, then read: a change in between would be missed.
    QDBusConnection(bus).connect(kPortalService, kPortalPath, kSettingsInterface, QStringLiteral("SettingChanged"),
                                 this, SLOT(settingChanged(QDBusMessage)));
    m_watcher = std::make_unique<QDBusServiceWatcher>(kPortalService, bus, QDBusServiceWatcher::WatchForRegistration);
    // A portal that starts anew, as when the user logs in, may know more than before.
    QObject::connect(m_watcher.get(), &QDBusServiceWatcher::serviceRegistered, this, [this, bus] { read(bus); });
    read(bus);
}

void SystemSettings::read(const QDBusConnection& bus)
{
    QDBusMessage call =
        QDBusMessage::createMethodCall(kPortalService, kPortalPath, kSettingsInterface, QStringLiteral("ReadAll"));
    call << QStringList{kGnome, kCommon, kKde};
    auto* const watcher = new QDBusPendingCallWatcher(bus.asyncCall(call), this);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        take(watcher->reply());
        watcher->deleteLater();
    });
}

void SystemSettings::take(const QDBusMessage& reply)
{
    if (reply.type() != QDBusMessage::ReplyMessage || reply.signature() != QLatin1String("a{sa{sv}}"))
        return; // no portal, or none that knows settings
    Told told;
    const auto groups = qdbus_cast<QMap<QString, QVariantMap>>(reply.arguments().constFirst());
    for (auto group = groups.cbegin(); group != groups.cend(); ++group)
        for (auto setting = group->cbegin(); setting != group->cend(); ++setting)
            note(told, group.key(), setting.key(), *setting);
    m_told = told;
    apply();
}

void SystemSettings::settingChanged(const QDBusMessage& message)
{
    if (message.signature() != QLatin1String("ssv"))
        return;
    const QList<QVariant> arguments = message.arguments();
    note(m_told, arguments.at(0).toString(), arguments.at(1).toString(), arguments.at(2));
    apply();
}

void SystemSettings::note(Told& told, const QString& group, const QString& key, const QVariant& wrapped)
{
    const QVariant value = unwrapped(wrapped);
    if (group == kGnome && key == QLatin1String("text-scaling-factor")) {
        if (const std::optional<double> scale = finiteNumber(value))
            told.textScale = scale;
    } else if (group == kGnome && key == QLatin1String("enable-animations")) {
        if (value.metaType() == QMetaType::fromType<bool>())
            told.animationsOff = !value.toBool();
    } else if (group == kCommon && key == QLatin1String("reduced-motion")) {
        told.motionReduced = finiteNumber(value) == 1;
    } else if (group == kKde && key == QLatin1String("AnimationDurationFactor")) {
        told.animationsTakeNoTime = finiteNumber(value) == 0; // comes as text
    }
}

void SystemSettings::apply()
{
    const double scale =
        std::clamp(m_fixedTextScale.value_or(m_told.textScale.value_or(1)), kSmallestText, kLargestText);
    const bool reduced =
        m_fixedReducedMotion.value_or(m_told.animationsOff || m_told.motionReduced || m_told.animationsTakeNoTime);
    if (std::exchange(m_textScale, scale) != scale)
        emit textScaleChanged();
    if (std::exchange(m_reducedMotion, reduced) != reduced)
        emit reducedMotionChanged();
}

} // namespace lamina
