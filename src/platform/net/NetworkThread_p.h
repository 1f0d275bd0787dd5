#pragma once

#include <functional>

class QNetworkAccessManager;
class QObject;

namespace lamina {

/// The thread on which everything from the network arrives. It begins with the first load and stays until the
/// application goes; between loads it sleeps.
class NetworkThread {
public:
    /// Null where there is no application that Qt's events could be delivered by, or none any more. From any thread.
    static NetworkThread* running();

    /// Runs `work` on the thread, after all that came before; drops it when the application goes. From any thread.
    void run(std::function<void()> work);

    /// For the thread alone.
    QNetworkAccessManager& manager();
    /// What lives as long as the thread does. For the thread alone.
    QObject* owner() { return m_owner; }

private:
    NetworkThread();
    void leave();

    QObject* m_owner;
    QNetworkAccessManager* m_manager = nullptr;
};

} // namespace lamina
