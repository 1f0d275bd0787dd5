#include "platform/host/system/TerminationSignals.h"

#include <QCoreApplication>
#include <QTimer>

#include <csignal>
#include <gtest/gtest.h>

namespace lamina::test {
namespace {

TEST(TerminationSignals, LeadOutOfTheEventLoopOnce)
{
    for (const int signal : {SIGTERM, SIGHUP, SIGINT}) {
        const TerminationSignals termination;
        QTimer::singleShot(0, [signal] { std::raise(signal); });
        EXPECT_EQ(QCoreApplication::exec(), 0);
        EXPECT_EXIT(std::raise(signal), testing::KilledBySignal(signal), "") << "a second one ends the process";
    }
}

} // namespace
} // namespace lamina::test
