#include "platform/host/services/UnifiedPushConnector.h"

#include <QDBusArgument>
#include <QDBusVariant>
#include <QMap>

#include <optional>
#include <type_traits>

namespace lamina {

namespace {

using Call = UnifiedPushConnector::Call;
using Method = UnifiedPushConnector::Method;

const QString kInterface = QStringLiteral("org.unifiedpush.Connector2");
const QMap<QString, Method> kMethods{{QStringLiteral("Message"), Method::MessageCame},
                                     {QStringLiteral("NewEndpoint"), Method::EndpointCame},
                                     {QStringLiteral("Unregistered"), Method::RegistrationEnded}};
/// More than there will be; the bus itself would let millions through.
constexpr int kMostArguments = 32;
constexpr qsizetype kLongestText = 4096;

std::optional<QVariantMap> argumentsOf(const QDBusMessage& message)
{
    if (message.signature() != QLatin1String("a{sv}"))
        return std::nullopt;
    const auto argument = message.arguments().constFirst().value<QDBusArgument>();
    QVariantMap map;
    argument.beginMap();
    for (int count = 0; !argument.atEnd() && count < kMostArguments; ++count) {
        QString key;
        QDBusVariant value;
        argument.beginMapEntry();
        argument >> key >> value;
        argument.endMapEntry();
        map.insert(key, value.variant());
    }
    const bool isWhole = argument.atEnd();
    argument.endMap(); // a map that is left open keeps its message for ever
    return isWhole ? std::optional(map) : std::nullopt;
}

/// False where there is none, one of another type, or a text longer than any should be; `isOptional`: there may be
/// none.
template <class Value>
bool take(const QVariantMap& arguments, const char* key, Value& value, bool isOptional = false)
{
    const QVariant found = arguments.value(QLatin1String(key));
    if (!found.isValid())
        return isOptional;
    if (found.metaType() != QMetaType::fromType<Value>())
        return false;
    value = found.value<Value>();
    return !std::is_same_v<Value, QString> || value.size() <= kLongestText;
}

std::optional<Call> callOf(const QDBusMessage& message, Method method)
{
    const auto arguments = argumentsOf(message);
    Call call;
    call.method = method;
    call.origin = message;
    if (!arguments || !take(*arguments, "token", call.token))
        return std::nullopt;
    if (method == Method::MessageCame &&
        (!take(*arguments, "message", call.message) || !take(*arguments, "id", call.identifier, true)))
        return std::nullopt;
    if (method == Method::EndpointCame && !take(*arguments, "endpoint", call.endpoint))
        return std::nullopt;
    return call;
}

} // namespace

const QString UnifiedPushConnector::kPath = QStringLiteral("/org/unifiedpush/Connector");

void UnifiedPushConnector::accept(const Call& call, const QDBusConnection& bus)
{
    bus.send(call.origin.createReply(QVariant(QVariantMap())));
}

void UnifiedPushConnector::refuse(const Call& call, const QDBusConnection& bus)
{
    bus.send(call.origin.createErrorReply(
        QDBusError::AccessDenied, QStringLiteral("only the distributor that Lamina is registered with may call this")));
}

QString UnifiedPushConnector::introspect(const QString&) const
{
    QString methods;
    for (const QString& name : kMethods.keys())
        methods += QStringLiteral("<method name=\"%1\"><arg type=\"a{sv}\" direction=\"in\"/>"
                                  "<arg type=\"a{sv}\" direction=\"out\"/></method>")
                       .arg(name);
    return QStringLiteral("<interface name=\"%1\">%2</interface>").arg(kInterface, methods);
}

bool UnifiedPushConnector::handleMessage(const QDBusMessage& message, const QDBusConnection& connection)
{
    const auto method = kMethods.constFind(message.member());
    if (message.interface() != kInterface && (!message.interface().isEmpty() || method == kMethods.constEnd()))
        return false;
    if (method == kMethods.constEnd())
        connection.send(message.createErrorReply(QDBusError::UnknownMethod, QStringLiteral("there is no such method")));
    else if (const auto call = callOf(message, *method))
        m_handler(*call, connection);
    else
        connection.send(message.createErrorReply(
            QDBusError::InvalidArgs, QStringLiteral("the arguments don't have the types that they should")));
    return true;
}

} // namespace lamina
