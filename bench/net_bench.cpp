// Loads from a server in this process, whose processor time is counted as well. Memory after many loads beside memory
// after some (limit: 8 MB, what the allocator keeps); a picture of 12 megapixels that comes in a thousand pieces beside
// plain decoding of its file (limit: 6 times its processor time), and how long after the last byte it is shown (limit:
// 2 times that decoding and 20 ms). How often anything wakes in five seconds after a load (limit: never).

#include "TestHTTPServer.h"
#include "platform/base/DispatchQueue.h"
#include "platform/base/DispatchSemaphore.h"
#include "platform/base/Log.h"
#include "platform/image/codecs/PictureDecoding.h"
#include "platform/net/NSURLSession.h"
#include "progressive/NYXProgressiveImageView.h"
#include "support/BenchPhotos.h"
#include "support/Measuring.h"

#include <benchmark/benchmark.h>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstdio> // jpeglib.h uses FILE without including it
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <jpeglib.h>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <thread>
#include <unistd.h>
#include <utility>

namespace {

using namespace lamina;
using namespace lamina::bench;
using test::HTTPAnswer;
using test::TestHTTPServer;

double processorSeconds()
{
    timespec time{};
    ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

std::string contents(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// The same coefficients in the library's usual scans, each finer than the one before.
std::string inScans(const std::string& jpeg)
{
    jpeg_error_mgr errors;
    jpeg_decompress_struct in{};
    jpeg_compress_struct out{};
    in.err = out.err = jpeg_std_error(&errors);
    jpeg_create_decompress(&in);
    jpeg_create_compress(&out);
    jpeg_mem_src(&in, reinterpret_cast<const unsigned char*>(jpeg.data()), jpeg.size());
    jpeg_read_header(&in, TRUE);
    jvirt_barray_ptr* const coefficients = jpeg_read_coefficients(&in);
    jpeg_copy_critical_parameters(&in, &out);
    jpeg_simple_progression(&out);
    unsigned char* bytes = nullptr;
    unsigned long size = 0;
    jpeg_mem_dest(&out, &bytes, &size);
    jpeg_write_coefficients(&out, coefficients);
    jpeg_finish_compress(&out);
    std::string result(bytes, bytes + size);
    std::free(bytes);
    jpeg_destroy_compress(&out);
    jpeg_destroy_decompress(&in);
    return result;
}

const std::string& photo(bool isInScans)
{
    static const std::string plain = contents(twelveMegapixelPhoto());
    static const std::string scans = inScans(plain);
    return isInScans ? scans : plain;
}

/// A view, and whether its picture is whole.
struct ShownPicture : NYXProgressiveImageViewDelegate {
    bool respondsTo(Call call) const override { return call == Call::ImageDidLoad; }
    void imageDidLoadWithImage(const UIImage& image) override { isWhole = static_cast<bool>(image); }

    /// Loads it, and counts the pictures that are shown until it is whole.
    int load(NYXProgressiveImageView& view, const std::string& url)
    {
        isWhole = false;
        int shown = 0;
        UIImage last = view.image();
        view.loadImageAtURL(url);
        DispatchQueue::main().runUntil([&] {
            if (!view.image().isIdenticalTo(std::exchange(last, view.image())))
                ++shown;
            return isWhole;
        });
        DispatchQueue::main().runUntilIdle();
        return shown;
    }

    bool isWhole = false;
};

void decoding(benchmark::State& state)
{
    const std::string& file = photo(state.range(0) == 1);
    const std::span bytes(reinterpret_cast<const std::uint8_t*>(file.data()), file.size());
    double processor = 0;
    for (auto _ : state) {
        const double before = processorSeconds();
        benchmark::DoNotOptimize(decodePicture(bytes, "photo"));
        processor += processorSeconds() - before;
    }
    state.counters["processor_s"] = benchmark::Counter(processor, benchmark::Counter::kAvgIterations);
    state.SetLabel(state.range(0) == 1 ? "scans" : "rows");
}
BENCHMARK(decoding)->Arg(0)->Arg(1)->Iterations(5)->UseRealTime()->Unit(benchmark::kMillisecond);

/// As fast as this machine gives it, in a thousand pieces.
void growing(benchmark::State& state)
{
    const std::string& file = photo(state.range(0) == 1);
    TestHTTPServer server;
    server.set("/photo.jpg", {.body = file, .piece = file.size() / 1000 + 1});
    const auto view = std::make_shared<NYXProgressiveImageView>();
    const auto shown = std::make_shared<ShownPicture>();
    view->setDelegate(shown);
    double processor = 0;
    double pictures = 0;
    for (auto _ : state) {
        const double before = processorSeconds();
        pictures += shown->load(*view, server.url("/photo.jpg"));
        processor += processorSeconds() - before;
    }
    state.counters["processor_s"] = benchmark::Counter(processor, benchmark::Counter::kAvgIterations);
    state.counters["pictures"] = benchmark::Counter(pictures, benchmark::Counter::kAvgIterations);
    state.SetLabel(state.range(0) == 1 ? "scans" : "rows");
}
BENCHMARK(growing)->Arg(0)->Arg(1)->Iterations(5)->UseRealTime()->Unit(benchmark::kMillisecond);

/// From the last byte until the whole picture is shown.
void lastByte(benchmark::State& state)
{
    const std::string& file = photo(false);
    TestHTTPServer server;
    server.set("/photo.jpg", {.body = file, .isHeld = true});
    const auto view = std::make_shared<NYXProgressiveImageView>();
    const auto shown = std::make_shared<ShownPicture>();
    view->setDelegate(shown);
    for (auto _ : state) {
        shown->isWhole = false;
        view->loadImageAtURL(server.url("/photo.jpg"));
        server.release(static_cast<std::int64_t>(file.size()) - 1);
        DispatchQueue::main().runUntil([] { return false; }, 1);
        state.SetIterationTime(seconds([&] {
            server.release(1);
            DispatchQueue::main().runUntil([&] { return shown->isWhole; });
        }));
        DispatchQueue::main().runUntilIdle();
    }
}
BENCHMARK(lastByte)->Iterations(5)->UseManualTime()->Unit(benchmark::kMillisecond);

/// What `load` leaves behind when it has run a thousand times, after a hundred that warm all up.
void manyLoads(benchmark::State& state, const std::function<void()>& load)
{
    constexpr int kWarm = 100;
    constexpr int kMany = 1000;
    for (auto _ : state) {
        for (int i = 0; i < kWarm; ++i)
            load();
        const double before = residentMegabytes();
        for (int i = 0; i < kMany; ++i)
            load();
        state.counters["grown MB"] = residentMegabytes() - before;
        state.counters["MB"] = residentMegabytes();
    }
}

void manyFeeds(benchmark::State& state)
{
    TestHTTPServer server;
    server.set("/feed", {.body = std::string(2000, ' ') + "[]", .framing = HTTPAnswer::Framing::Chunked});
    manyLoads(state, [&] {
        DispatchSemaphore done{0};
        NSURLSession::sharedSession().dataTask({.URL = server.url("/feed")},
                                               [&](const NSURLTaskResult&) { done.signal(); });
        done.wait();
    });
}
BENCHMARK(manyFeeds)->Iterations(1)->UseRealTime()->Unit(benchmark::kMillisecond);

/// Each in a view of its own, which goes with its queue.
void manyPictures(benchmark::State& state)
{
    TestHTTPServer server;
    server.set("/photo.jpg", {.body = inScans(contents(photoOfABlend()))});
    const auto shown = std::make_shared<ShownPicture>();
    manyLoads(state, [&] {
        const auto view = std::make_shared<NYXProgressiveImageView>();
        view->setDelegate(shown);
        shown->load(*view, server.url("/photo.jpg"));
    });
}
BENCHMARK(manyPictures)->Iterations(1)->UseRealTime()->Unit(benchmark::kMillisecond);

/// How often the threads of the process that are not this one have woken.
long wakes()
{
    long count = 0;
    for (const auto& thread : std::filesystem::directory_iterator("/proc/self/task")) {
        if (thread.path().filename() == std::to_string(::getpid()))
            continue;
        std::ifstream status(thread.path() / "status");
        for (std::string word; status >> word;)
            if (word == "voluntary_ctxt_switches:" && status >> word)
                count += std::stol(word);
    }
    return count;
}

/// After a load.
void idle(benchmark::State& state)
{
    TestHTTPServer server;
    server.set("/feed", {.body = "[]"});
    DispatchSemaphore done{0};
    NSURLSession::sharedSession().dataTask({.URL = server.url("/feed")},
                                           [&](const NSURLTaskResult&) { done.signal(); });
    done.wait();
    std::this_thread::sleep_for(std::chrono::seconds(1));
    for (auto _ : state) {
        const long before = wakes();
        std::this_thread::sleep_for(std::chrono::seconds(5));
        state.counters["wakes"] = static_cast<double>(wakes() - before);
    }
}
BENCHMARK(idle)->Iterations(1)->UseRealTime()->Unit(benchmark::kMillisecond);

} // namespace
