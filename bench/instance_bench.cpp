// What it costs to be the one instance of a session: the first start with a bus and without one, a second start beside
// an open window, and the window while nothing happens. On the offscreen platform.

#include "TestSession.h"

#include <QCoreApplication>

#include <benchmark/benchmark.h>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <thread>

namespace {

using namespace lamina::test;
using Clock = std::chrono::steady_clock;

double secondsSince(Clock::time_point start)
{
    return std::chrono::duration<double>(Clock::now() - start).count();
}

TestSession& session()
{
    static TestSession it(LAMINA_APP, TestSession::Display::Offscreen);
    return it;
}

void startToFirstFrame(benchmark::State& state, const char* bus)
{
    QProcessEnvironment environment = session().environment();
    if (*bus)
        environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), QString::fromLatin1(bus));
    for (auto _ : state) {
        QProcess process;
        process.setProcessEnvironment(environment);
        const auto start = Clock::now();
        process.start(LAMINA_FIRST_FRAME, QStringList());
        if (!process.waitForReadyRead())
            std::abort();
        state.SetIterationTime(secondsSince(start));
        process.waitForFinished();
    }
}
BENCHMARK_CAPTURE(startToFirstFrame, withBus, "")->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(startToFirstFrame, withoutBus, "unix:path=/nowhere")->UseManualTime()->Unit(benchmark::kMillisecond);

/// To its end; the limit is 100 ms.
void secondStart(benchmark::State& state)
{
    const auto first = session().start({});
    if (!session().waitForOwner())
        std::abort();
    (void)session().call("Activate", {QVariantMap()}); // by then its event loop runs
    for (auto _ : state) {
        const auto start = Clock::now();
        const auto second = session().start({});
        if (!second->waitForFinished() || second->exitCode() != 0)
            std::abort();
        state.SetIterationTime(secondsSince(start));
    }
    first->terminate();
    first->waitForFinished();
}
BENCHMARK(secondStart)->UseManualTime()->Unit(benchmark::kMillisecond);

/// How often the process's threads have gone to sleep, so far.
double sleeps(qint64 process)
{
    constexpr std::string_view kField = "voluntary_ctxt_switches:";
    double sum = 0;
    for (const auto& thread : std::filesystem::directory_iterator("/proc/" + std::to_string(process) + "/task")) {
        std::ifstream status(thread.path() / "status");
        for (std::string line; std::getline(status, line);)
            if (line.starts_with(kField))
                sum += std::stod(line.substr(kField.size()));
    }
    return sum;
}

/// Wake-ups in ten seconds in which nothing happens.
void idle(benchmark::State& state)
{
    const auto first = session().start({});
    if (!session().waitForOwner())
        std::abort();
    std::this_thread::sleep_for(std::chrono::seconds(5));
    for (auto _ : state) {
        const double before = sleeps(first->processId());
        std::this_thread::sleep_for(std::chrono::seconds(10));
        state.counters["wakeups"] = sleeps(first->processId()) - before;
    }
    first->terminate();
    first->waitForFinished();
}
BENCHMARK(idle)->Iterations(1)->UseRealTime()->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication qt(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
