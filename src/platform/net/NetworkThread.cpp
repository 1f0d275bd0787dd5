#include "platform/net/NetworkThread_p.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QNetworkAccessManager>
#include <QNetworkProxy>
#include <QThread>

#include <atomic>
#include <utility>

namespace lamina {

namespace {

std::atomic<bool> g_hasLeft{false};

/// The proxies that the user has set for all programs.
class SystemProxies : public QNetworkProxyFactory {
public:
    QList<QNetworkProxy> queryProxy(const QNetworkProxyQuery& query) override { return systemProxyForQuery(query); }
};

} // namespace

NetworkThread* NetworkThread::running()
{
    if (g_hasLeft || !QCoreApplication::instance())
        return nullptr;
    static NetworkThread* const thread = new NetworkThread;
    return thread;
}

NetworkThread::NetworkThread()
    : m_owner(new QObject)
{
    auto* const thread = new QThread;
    thread->setObjectName(QStringLiteral("network"));
    m_owner->moveToThread(thread);
    thread->start();
    qAddPostRoutine([] {
        if (NetworkThread* const running = NetworkThread::running())
            running->leave();
    });
}

void NetworkThread::run(std::function<void()> work)
{
    QMetaObject::invokeMethod(m_owner, std::move(work), Qt::QueuedConnection);
}

QNetworkAccessManager& NetworkThread::manager()
{
    if (!m_manager) {
        m_manager = new QNetworkAccessManager(m_owner);
        m_manager->setProxyFactory(new SystemProxies);
    }
    return *m_manager;
}

void NetworkThread::leave()
{
    // Loads under way end without a word. What the libraries below hold goes with the process, and has to be at rest by
    // then; the thread waits for nobody, least of all for the main one.
    g_hasLeft = true;
    QThread* const thread = m_owner->thread();
    run([this, thread] {
        // Transfers let go of their replies, which the manager owns.
        const QObjectList children = m_owner->children(); // a copy: who goes leaves the list
        for (QObject* const child : children)
            if (child != m_manager)
                delete child;
        delete m_manager;
        thread->quit();
    });
    constexpr int kMilliseconds = 2000;
    thread->wait(QDeadlineTimer(kMilliseconds));
}

} // namespace lamina
