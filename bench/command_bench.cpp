// The whole process as a shell sees it: time from start to end, and the most memory it held.

#include "support/BenchPhotos.h"

#include <algorithm>
#include <benchmark/benchmark.h>
#include <chrono>
#include <cstdlib>
#include <fcntl.h>
#include <spawn.h>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

extern char** environ;

namespace {

/// Runs the command once; returns its peak memory in kilobytes. Ends the program when the command fails.
long runOnce(const std::vector<std::string>& arguments)
{
    std::vector<char*> argv{const_cast<char*>(LAMINA_COMMAND)};
    for (const std::string& argument : arguments)
        argv.push_back(const_cast<char*>(argument.c_str()));
    argv.push_back(nullptr);
    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init(&files);
    posix_spawn_file_actions_addopen(&files, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    pid_t child = 0;
    if (::posix_spawn(&child, LAMINA_COMMAND, &files, nullptr, argv.data(), environ) != 0)
        std::abort();
    posix_spawn_file_actions_destroy(&files);
    int status = 0;
    rusage usage{};
    ::wait4(child, &status, 0, &usage);
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0)
        std::abort();
    return usage.ru_maxrss;
}

void measure(benchmark::State& state, const std::vector<std::string>& arguments)
{
    long peak = 0;
    for (auto _ : state) {
        const auto start = std::chrono::steady_clock::now();
        peak = std::max(peak, runOnce(arguments));
        state.SetIterationTime(std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
    }
    state.counters["peak_MB"] = static_cast<double>(peak) / 1024;
}

void version(benchmark::State& state)
{
    measure(state, {"--version"});
}
BENCHMARK(version)->UseManualTime()->Unit(benchmark::kMillisecond);

void blendTwelveMegapixels(benchmark::State& state)
{
    const std::string first = lamina::bench::twelveMegapixelPhoto(0);
    const std::string second = lamina::bench::twelveMegapixelPhoto(1);
    measure(state, {"blend", first, second, "-o", "-"});
}
BENCHMARK(blendTwelveMegapixels)->UseManualTime()->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
