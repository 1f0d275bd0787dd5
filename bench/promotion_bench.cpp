// A thousand promotions with their pictures, from a server in this process. Memory after them beside memory after a
// hundred (limit: 8 MB, what the allocator keeps).

#include "PromotionServer.h"
#include "promotion/CrossPromotionCoordinater.h"
#include "promotion/FetchProductViewModel.h"
#include "support/BenchPhotos.h"
#include "support/Measuring.h"

#include <benchmark/benchmark.h>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <variant>

namespace {

using namespace lamina;
using namespace lamina::bench;

std::string contents(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// Until the picture is there; the coordinator goes with it.
bool fetchOne()
{
    const auto coordinator =
        std::make_shared<CrossPromotionCoordinater>(std::make_shared<FetchProductViewModel>(), "Lamina");
    bool came = false;
    coordinator->fetchPromotion([&came](const PromotionResult<PromotionData>& result) {
        if (std::get_if<PromotionData>(&result))
            DispatchQueue::main().async([&came] { came = true; });
    });
    return DispatchQueue::main().runUntil([&came] { return came; }, 20);
}

void manyPromotions(benchmark::State& state)
{
    constexpr int kWarm = 100;
    constexpr int kMany = 1000;
    test::PromotionServer server;
    server.set(test::kApps, {.body = R"([{"appName":"Lamina","accountName":"us","isCheck":1}])"});
    server.set(test::kPromotions, {.body = R"([{"appLink":"https://example.org/","interstialLink":")" +
                                           server.url("/ad.jpg") + R"(","isCheck":1}])"});
    server.set("/ad.jpg", {.body = contents(smallPhoto(0))});
    const auto fetch = [&state](int count) {
        for (int i = 0; i < count; ++i)
            if (!fetchOne())
                state.SkipWithError("no promotion came");
    };
    for (auto _ : state) {
        fetch(kWarm);
        const double before = residentMegabytes();
        fetch(kMany);
        state.counters["grown MB"] = residentMegabytes() - before;
        state.counters["MB"] = residentMegabytes();
    }
}
BENCHMARK(manyPromotions)->Iterations(1)->UseRealTime()->Unit(benchmark::kMillisecond);

} // namespace
