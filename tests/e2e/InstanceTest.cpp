// The real application as a session knows it: started by its bus, called by other programs, and started a second time.
#include "TestPaths.h"
#include "TestSession.h"

#include <QDBusConnectionInterface>
#include <QDBusReply>
#include <QThread>

#include <csignal>
#include <filesystem>
#include <gtest/gtest.h>

namespace lamina::test {
namespace {

using Display = TestSession::Display;

const QVariantList kNothing{QVariantMap()};

QStringList photos(int count, bool asURLs = false)
{
    const QString path = QString::fromStdString(samples("dunes.jpg"));
    return QStringList(count, asURLs ? QStringLiteral("file://") + path : path);
}

bool isAnswered(const QDBusMessage& reply)
{
    EXPECT_EQ(reply.type(), QDBusMessage::ReplyMessage) << reply.errorMessage().toStdString();
    return reply.type() == QDBusMessage::ReplyMessage;
}

/// Three photos that have arrived are a collage, and a collage is kept.
bool holdsCollage(const TestSession& session)
{
    return waitUntil([&] { return std::filesystem::exists(session.path("state/lamina/kept/collage/journal")); });
}

bool hasEnded(QProcess& process)
{
    return process.state() == QProcess::NotRunning || process.waitForFinished(40'000);
}

TEST(StartedByTheBus, OpensItsWindowWhenThatIsAskedForAndTakesPhotos)
{
    TestSession session(LAMINA_APP, Display::Offscreen);
    ASSERT_EQ(session.owner(), 0);
    ASSERT_TRUE(isAnswered(session.call("Open", {photos(3, true), QVariantMap()})));
    const qint64 first = session.owner();
    EXPECT_TRUE(holdsCollage(session));

    // Photos that come to the work are asked about in the window; the call has its answer.
    EXPECT_TRUE(isAnswered(session.call("ActivateAction", {QStringLiteral("blend"), QVariantList(), QVariantMap()})));
    EXPECT_TRUE(isAnswered(session.call("Activate", kNothing)));
    EXPECT_EQ(session.call("ActivateAction", {QStringLiteral("five"), QVariantList(), QVariantMap()}).type(),
              QDBusMessage::ErrorMessage);

    const auto second = session.start(photos(2));
    ASSERT_TRUE(hasEnded(*second));
    EXPECT_EQ(second->exitCode(), 0) << second->readAllStandardError().toStdString();
    EXPECT_EQ(session.owner(), first);

    ::kill(static_cast<pid_t>(first), SIGTERM);
    EXPECT_TRUE(session.waitForOwner(false)) << "it leaves as it does when it was started by hand";
}

TEST(StartedByTheBus, WithoutADisplayItAnswersAndLeavesByItself)
{
    TestSession session(LAMINA_APP, Display::None);
    const QDBusMessage reply = session.call("Activate", kNothing);
    EXPECT_EQ(reply.errorMessage().toStdString(), "there is no display to open a window on");
    const QString process = QDBusReply<QString>(session.bus().interface()->serviceOwner("org.lamina.lamina")).value();
    ASSERT_FALSE(process.isEmpty());
    // What wakes it and asks for nothing does not keep it.
    EXPECT_TRUE(waitUntil([&] {
        session.bus().call(QDBusMessage::createMethodCall(process, "/org/lamina/lamina", "a.b", "Nothing"));
        QThread::msleep(500);
        return session.owner() == 0;
    }));

    TestSession over(LAMINA_APP, Display::Gone);
    EXPECT_EQ(over.call("Activate", kNothing).errorMessage().toStdString(), reply.errorMessage().toStdString());
}

TEST(SecondStart, HandsOverWhatTheOpenWindowCanDo)
{
    TestSession session(LAMINA_APP, Display::Offscreen);
    const auto first = session.start({});
    ASSERT_TRUE(session.waitForOwner());
    ASSERT_TRUE(isAnswered(session.call("Activate", kNothing))) << "it may take its time to begin";
    const auto second = session.start({"--screen", "three", photos(1)[0], photos(1)[0], photos(1)[0]});
    ASSERT_TRUE(hasEnded(*second));
    EXPECT_EQ(second->exitCode(), 0) << second->readAllStandardError().toStdString();
    EXPECT_TRUE(holdsCollage(session));
    EXPECT_EQ(session.owner(), first->processId());

    // A window of its own leaves the name where it is, and when it closes nobody else notices.
    const auto own = session.start({"--new-window", "--screen", "two"});
    EXPECT_FALSE(own->waitForFinished(1000));
    EXPECT_EQ(session.owner(), first->processId());
    own->terminate();
    EXPECT_TRUE(hasEnded(*own));

    first->terminate();
    EXPECT_TRUE(hasEnded(*first));
    EXPECT_EQ(first->exitCode(), 0);
}

TEST(SecondStart, HasAWindowOfItsOwnWhereTheFirstHangs)
{
    TestSession session(LAMINA_APP, Display::Offscreen);
    const auto first = session.start({});
    ASSERT_TRUE(session.waitForOwner());
    ::kill(static_cast<pid_t>(first->processId()), SIGSTOP);
    const auto second = session.start(photos(3));
    EXPECT_TRUE(holdsCollage(session));
    EXPECT_EQ(second->state(), QProcess::Running);
    second->terminate();
    EXPECT_TRUE(hasEnded(*second));
    first->kill();
    EXPECT_TRUE(hasEnded(*first));
}

TEST(AWindowOpens, WithoutABusAndWithOneThatHangs)
{
    constexpr int kSoonerThanQtWaits = 20'000;
    TestSession session(LAMINA_APP, Display::Offscreen);
    session.pauseBus();
    const QString hanging = session.environment().value(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"));
    for (const QString& bus : {QStringLiteral("unix:path=/nowhere"), hanging}) {
        SCOPED_TRACE(bus.toStdString());
        QProcess process;
        QProcessEnvironment environment = session.environment();
        environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), bus);
        process.setProcessEnvironment(environment);
        process.start(LAMINA_APP, photos(3));
        EXPECT_TRUE(holdsCollage(session));
        process.terminate();
        EXPECT_TRUE(process.waitForFinished(kSoonerThanQtWaits)) << "no bus keeps anybody from leaving";
        EXPECT_EQ(process.exitCode(), 0);
        std::filesystem::remove_all(session.path("state"));
    }
    session.pauseBus(false);
}

TEST(AWindowStays, WhenTheBusHasGone)
{
    TestSession session(LAMINA_APP, Display::Offscreen);
    const auto first = session.start({});
    ASSERT_TRUE(session.waitForOwner());
    ASSERT_TRUE(isAnswered(session.call("Activate", kNothing)));
    session.endBus();
    EXPECT_FALSE(first->waitForFinished(1000));
    first->terminate();
    EXPECT_TRUE(hasEnded(*first));
    EXPECT_EQ(first->exitCode(), 0) << first->readAllStandardError().toStdString();
}

} // namespace
} // namespace lamina::test
