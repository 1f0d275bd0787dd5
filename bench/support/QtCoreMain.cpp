#include "platform/base/DispatchQueue.h"

#include <QCoreApplication>

#include <benchmark/benchmark.h>

// For benches of what needs Qt's events and no window.
int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    lamina::DispatchQueue::main().bindToCurrentThread();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
