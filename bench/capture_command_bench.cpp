// What `lamina capture` costs, encoder included, with the camera of a PipeWire that belongs to this program.
// LAMINA_BENCH_SECONDS says how long each recording is (default 5): 600 for ten minutes of one.

#include "CommandRunner.h"
#include "PipeWireSession.h"

#include <benchmark/benchmark.h>
#include <chrono>
#include <cstdlib>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

namespace {

using namespace lamina;
using Clock = std::chrono::steady_clock;

double secondsSince(Clock::time_point begin)
{
    return std::chrono::duration<double>(Clock::now() - begin).count();
}

double recordingSeconds()
{
    const char* const told = std::getenv("LAMINA_BENCH_SECONDS");
    return told ? std::atof(told) : 5;
}

/// One recording by the command: cores while it ran, frames a second that were written, those that were dropped, and
/// the peak of memory.
void record(benchmark::State& state, double seconds, std::vector<std::string> options)
{
    const test::TemporaryFolder folder;
    std::vector<std::string> arguments{
        "capture", "--mute", "--json", "--for", std::to_string(seconds), "-o", folder.path("clip.mp4")};
    arguments.insert(arguments.end(), options.begin(), options.end());
    const Clock::time_point begin = Clock::now();
    const test::CommandResult run = test::runCommand(LAMINA_COMMAND, arguments);
    state.SetIterationTime(secondsSince(begin));
    if (run.exitCode != 0)
        return state.SkipWithError(run.errors.c_str());
    const nlohmann::json told = nlohmann::json::parse(run.output);
    const double written = told["seconds"];
    state.counters["cores"] = run.processorSeconds / secondsSince(begin);
    state.counters["frames_per_s"] = static_cast<int>(told["frames"]) / written;
    state.counters["dropped"] = told["dropped"];
    state.counters["peak_MB"] = static_cast<double>(run.peakKilobytes) / 1024;
}

/// 640 x 480 at 30 a second through two filters.
void clipOfTwoFilters(benchmark::State& state)
{
    const test::PipeWireSession pipewire(test::PipeWireSession::Camera);
    for (auto _ : state)
        record(state, recordingSeconds(),
               {"--size", "640x480", "--rate", "30", "--filter", "GPUImageSepiaFilter", "--filter",
                "GPUImageBrightnessFilter"});
}
BENCHMARK(clipOfTwoFilters)->UseManualTime()->Unit(benchmark::kSecond)->Iterations(1);

/// In real time: as many frames a second as the camera gives, none dropped.
void sepiaOf720p(benchmark::State& state)
{
    const test::PipeWireSession pipewire(test::PipeWireSession::Camera);
    for (auto _ : state)
        record(state, recordingSeconds(), {"--size", "1280x720", "--rate", "30", "--filter", "GPUImageSepiaFilter"});
}
BENCHMARK(sepiaOf720p)->UseManualTime()->Unit(benchmark::kSecond)->Iterations(1);

/// A recording beside a tenth of it: memory has to be the same.
void memoryOfALongClip(benchmark::State& state)
{
    const test::PipeWireSession pipewire(test::PipeWireSession::Camera);
    for (auto _ : state) {
        const std::vector<std::string> options{"--size", "320x240", "--rate", "30", "--filter", "GPUImageSepiaFilter"};
        record(state, recordingSeconds() / 10, options);
        state.counters["tenth_MB"] = state.counters["peak_MB"];
        record(state, recordingSeconds(), options);
    }
}
BENCHMARK(memoryOfALongClip)->UseManualTime()->Unit(benchmark::kSecond)->Iterations(1);

} // namespace

BENCHMARK_MAIN();
