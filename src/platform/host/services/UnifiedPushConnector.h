#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QString>
#include <QVariantMap>

#include <functional>
#include <utility>

namespace lamina {

/// The object on the bus that a distributor of UnifiedPush calls: org.unifiedpush.Connector2 at
/// /org/unifiedpush/Connector, https://unifiedpush.org/developers/spec/dbus/. It looks at the types of what comes
/// alone; whether the caller may say it is the handler's affair. Calls come on the thread that it was made in.
class UnifiedPushConnector : public QDBusVirtualObject {
public:
    static const QString kPath;

    enum class Method { MessageCame, EndpointCame, RegistrationEnded }; ///< what a call says
    /// A call whose arguments have the types that they should have.
    struct Call {
        Method method = Method::MessageCame;
        QString token;
        QByteArray message; ///< of a message, as it came
        QString identifier; ///< of a message; may be empty
        QString endpoint;   ///< where messages are sent to
        QDBusMessage origin;
    };
    /// Answers the call by `accept` or `refuse`, now or later.
    using Handler = std::function<void(const Call& call, const QDBusConnection& bus)>;

    explicit UnifiedPushConnector(Handler handler)
        : m_handler(std::move(handler))
    {
    }

    static void accept(const Call& call, const QDBusConnection& bus); ///< it was for us
    static void refuse(const Call& call, const QDBusConnection& bus); ///< by an error

    QString introspect(const QString& path) const override;
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;

private:
    Handler m_handler;
};

} // namespace lamina
