// The photo library and the picker over 50,000 photos in 100 folders, beside bare SQLite, a bare walk and the bare
// decoder.

#include "picker/YMSPhotoPickerViewController.h"
#include "platform/base/DispatchQueue.h"
#include "platform/base/MemoryWarning.h"
#include "platform/base/NotificationCenter.h"
#include "platform/files/PrivateFolder.h"
#include "platform/image/pixels/UIImage.h"
#include "platform/photos/LibraryEngine_p.h"
#include "platform/photos/PHCachingImageManager.h"
#include "platform/photos/PHChange.h"
#include "platform/photos/PHCollection.h"
#include "platform/photos/PHPhotoLibrary.h"
#include "platform/photos/index/PhotoIndex.h"
#include "support/BareLibrary.h"
#include "support/BenchPhotos.h"
#include "support/ManyPhotos.h"
#include "support/Measuring.h"

#include <QCoreApplication>

#include <algorithm>
#include <array>
#include <benchmark/benchmark.h>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <memory>
#include <span>
#include <string>
#include <unistd.h>
#include <vector>

namespace {

using namespace lamina;
namespace fs = std::filesystem;

constexpr std::size_t kFirstCells = 24;

LibraryRoots rootsOver(const std::string& cache)
{
    const std::string pictures = bench::folderOfManyPhotos();
    return {pictures, {}, pictures + "/Lamina", cache};
}

/// An index of all photos, made once a run.
const std::string& cacheWithIndex()
{
    static const std::string cache = [] {
        std::string folder = bench::homeFolder() + "/with-index";
        LibraryEngine(rootsOver(folder)).waitUntilComplete();
        return folder;
    }();
    return cache;
}

double megabytesIn(const std::string& folder)
{
    std::uintmax_t bytes = 0;
    for (const auto& entry : fs::recursive_directory_iterator(folder)) {
        if (entry.is_regular_file())
            bytes += entry.file_size();
    }
    return static_cast<double>(bytes) / (1024.0 * 1024.0);
}

double processSeconds()
{
    timespec spent{};
    ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &spent);
    return static_cast<double>(spent.tv_sec) + static_cast<double>(spent.tv_nsec) * 1e-9;
}

// ---- the index ----

/// From nothing to the library's list and the rows of the first screenful, as a picker opens it. At most 50 ms.
void openWithIndex(benchmark::State& state)
{
    const LibraryRoots roots = rootsOver(cacheWithIndex());
    for (auto _ : state) {
        std::unique_ptr<LibraryEngine> engine;
        std::size_t photos = 0;
        state.SetIterationTime(bench::seconds([&] {
            engine = std::make_unique<LibraryEngine>(roots);
            const LibrarySnapshotPtr library = engine->snapshot();
            photos = library->all->size();
            const std::span<const PhotoID> first = std::span(*library->all).first(std::min(photos, kFirstCells));
            benchmark::DoNotOptimize(library->index->records(first));
        }));
        if (photos != bench::kManyPhotos)
            state.SkipWithError("the index doesn't have all photos");
    }
}
BENCHMARK(openWithIndex)->MeasureProcessCPUTime()->UseManualTime()->Unit(benchmark::kMillisecond);

void openBareTable(benchmark::State& state)
{
    const std::string path = bench::homeFolder() + "/bare.sqlite";
    bench::fillBareTable(path);
    for (auto _ : state)
        benchmark::DoNotOptimize(bench::readBareTable(path));
}
BENCHMARK(openBareTable)->MeasureProcessCPUTime()->UseRealTime()->Unit(benchmark::kMillisecond);

/// All photos walked, their headers read and the index written: at most 2 s, at most 8 MB.
void firstIndex(benchmark::State& state)
{
    const std::string cache = bench::homeFolder() + "/first-index";
    bench::folderOfManyPhotos();
    for (auto _ : state) {
        fs::remove_all(cache);
        double firstPhotos = 0;
        auto engine = std::make_unique<LibraryEngine>(rootsOver(cache));
        state.SetIterationTime(bench::seconds([&] {
            firstPhotos = bench::seconds([&] {
                while (engine->snapshot()->all->empty())
                    ::usleep(1000);
            });
            engine->waitUntilComplete();
        }));
        if (engine->snapshot()->all->size() != bench::kManyPhotos)
            state.SkipWithError("the index doesn't have all photos");
        engine.reset();
        state.counters["firstPhotos_ms"] = firstPhotos * 1000;
        state.counters["index_MB"] = megabytesIn(cache);
    }
}
BENCHMARK(firstIndex)->MeasureProcessCPUTime()->UseManualTime()->Iterations(1)->Unit(benchmark::kMillisecond);

void bareWalk(benchmark::State& state)
{
    const std::string folder = bench::folderOfManyPhotos();
    for (auto _ : state)
        benchmark::DoNotOptimize(bench::walkBare(folder));
}
BENCHMARK(bareWalk)->MeasureProcessCPUTime()->UseRealTime()->Unit(benchmark::kMillisecond);

void fillBareTable(benchmark::State& state)
{
    for (auto _ : state)
        bench::fillBareTable(bench::homeFolder() + "/bare.sqlite");
}
BENCHMARK(fillBareTable)->MeasureProcessCPUTime()->UseRealTime()->Unit(benchmark::kMillisecond);

// ---- thumbnails ----

const std::vector<std::string>& photosOfTheFirstCells()
{
    static const std::vector<std::string> paths =
        bench::largePhotos((fs::temp_directory_path() / "lamina-bench-large").string(), kFirstCells);
    return paths;
}

/// Asks for a screenful of cells as the grid does, and waits until each has its final picture.
void showCells(PHCachingImageManager& manager)
{
    const PHImageRequestOptions options{.deliveryMode = PHImageRequestOptionsDeliveryMode::HighQualityFormat};
    std::size_t shown = 0;
    for (const std::string& path : photosOfTheFirstCells()) {
        const PHAsset asset{.localIdentifier = path, .path = path, .pixelWidth = 4000, .pixelHeight = 3000};
        manager.requestImageForAsset(asset, {266, 266}, PHImageContentMode::AspectFill, options,
                                     [&](const UIImage& picture) { shown += picture ? 1 : 0; });
    }
    DispatchQueue::main().runUntilIdle();
    if (shown != kFirstCells)
        std::abort();
}

void forgetThumbnailsInMemory()
{
    NotificationCenter::defaultCenter().post(UIApplicationDidReceiveMemoryWarningNotification);
}

/// 24 cells whose thumbnails were made in an earlier run: at most 50 ms.
void cellsFromTheCache(benchmark::State& state)
{
    PHCachingImageManager manager;
    showCells(manager);
    for (auto _ : state) {
        forgetThumbnailsInMemory();
        state.SetIterationTime(bench::seconds([&] { showCells(manager); }));
    }
}
BENCHMARK(cellsFromTheCache)->MeasureProcessCPUTime()->UseManualTime()->Unit(benchmark::kMillisecond);

/// 24 cells of photos with 12 megapixels that nobody has seen yet: at most 1.3 times their decoding.
void cellsFromLargePhotos(benchmark::State& state)
{
    PHCachingImageManager manager;
    photosOfTheFirstCells();
    for (auto _ : state) {
        forgetThumbnailsInMemory();
        fs::remove_all(cacheFolder() + "/thumbnails");
        state.SetIterationTime(bench::seconds([&] { showCells(manager); }));
    }
}
BENCHMARK(cellsFromLargePhotos)->MeasureProcessCPUTime()->UseManualTime()->Unit(benchmark::kMillisecond);

void bareReducedDecode(benchmark::State& state)
{
    for (auto _ : state)
        bench::decodeBare(photosOfTheFirstCells());
}
BENCHMARK(bareReducedDecode)->MeasureProcessCPUTime()->UseRealTime()->Unit(benchmark::kMillisecond);

// ---- a library that is open ----

PHAssetCollection allPhotos()
{
    return fetchAssetCollectionsWithType(PHAssetCollectionType::SmartAlbum,
                                         PHAssetCollectionSubtype::SmartAlbumUserLibrary)
        .front();
}

void openLibrary()
{
    fetchAssetsInAssetCollection(allPhotos());
    LibraryEngine::shared().waitUntilComplete();
    DispatchQueue::main().drain();
}

/// Follows the number of photos as a grid does.
class PhotoCount : public PHPhotoLibraryChangeObserver {
public:
    void photoLibraryDidChange(const PHChange& change) override
    {
        if (const auto details = change.changeDetailsForFetchResult(m_photos))
            m_photos = details->fetchResultAfterChanges();
    }

    /// False when there are other photos than so many even after a while.
    bool waitFor(std::size_t count) const
    {
        return DispatchQueue::main().runUntil([&] { return m_photos.count() == count; }, 10);
    }

private:
    PHFetchResult m_photos = fetchAssetsInAssetCollection(allPhotos());
};

/// From the end of writing a file to the moment when the grid has it, 250 ms of which are spent on gathering more: at
/// most 0.5 s.
void newPhotoToChange(benchmark::State& state)
{
    const std::string folder = bench::folderOfManyPhotos() + "/Album 00/";
    fs::remove(folder + "new.jpg");
    openLibrary();
    const auto photos = std::make_shared<PhotoCount>();
    PHPhotoLibrary::registerChangeObserver(photos);
    bool told = photos->waitFor(bench::kManyPhotos);
    for (auto _ : state) {
        fs::copy_file(folder + "IMG_00000.jpg", folder + "new.jpg");
        state.SetIterationTime(bench::seconds([&] { told = told && photos->waitFor(bench::kManyPhotos + 1); }));
        fs::remove(folder + "new.jpg");
        told = told && photos->waitFor(bench::kManyPhotos);
    }
    if (!told)
        state.SkipWithError("nobody was told of the change");
}
BENCHMARK(newPhotoToChange)->MeasureProcessCPUTime()->UseManualTime()->Iterations(5)->Unit(benchmark::kMillisecond);

/// Five seconds in which nothing happens: processor time in milliseconds.
void idleWithLibrary(benchmark::State& state)
{
    openLibrary();
    for (auto _ : state) {
        const double before = processSeconds();
        ::sleep(5);
        DispatchQueue::main().drain();
        state.SetIterationTime(5);
        state.counters["cpu_ms"] = (processSeconds() - before) * 1000;
    }
}
BENCHMARK(idleWithLibrary)->MeasureProcessCPUTime()->UseManualTime()->Iterations(1)->Unit(benchmark::kMillisecond);

/// Shows all photos screenful by screenful, as fast as a flung grid, and prints how many megabytes library and picker
/// have taken at the most.
void scrollThroughPicker()
{
    DispatchQueue::main().bindToCurrentThread();
    const double before = bench::residentMegabytes();
    openLibrary();
    const auto picker = std::make_shared<YMSPhotoPickerViewController>();
    picker->numberOfPhotoToSelect = 3;
    picker->view();
    picker->viewWillAppear(false);
    picker->placeGrid(360, 676, 2, 0, 0);
    double most = 0;
    constexpr int kVisible = 24;
    constexpr double kSecondsAScreenful = 0.004;
    std::vector<QObject*> cells;
    for (int first = 1; first <= bench::kManyPhotos; first += kVisible) {
        for (QObject* cell : std::exchange(cells, {}))
            picker->endDisplaying(cell);
        for (int item = first; item < std::min(first + kVisible, bench::kManyPhotos + 1); ++item)
            cells.push_back(picker->cellForItem(item));
        DispatchQueue::main().runUntil([] { return false; }, kSecondsAScreenful);
        if (first % 100 == 1)
            most = std::max(most, bench::residentMegabytes());
    }
    DispatchQueue::main().runUntilIdle();
    most = std::max(most, bench::residentMegabytes());
    std::printf("%.1f\n", most - before);
    std::fflush(stdout);
    if (picker->photosModel()->rowCount() != bench::kManyPhotos + 1)
        std::abort();
    std::_Exit(0);
}

/// The same in a process of its own, which has done nothing else: under 60 MB.
void memoryOfPicker(benchmark::State& state)
{
    openLibrary(); // so that the index is there
    const std::string command = fs::read_symlink("/proc/self/exe").string() + " --scroll";
    for (auto _ : state) {
        std::array<char, 32> text{};
        std::FILE* const output = ::popen(command.c_str(), "re");
        if (output == nullptr || std::fgets(text.data(), text.size(), output) == nullptr || ::pclose(output) != 0)
            state.SkipWithError("the picker did not come to its end");
        double megabytes = 0;
        std::from_chars(text.data(), text.data() + text.size(), megabytes);
        state.counters["resident_MB"] = megabytes;
    }
}
BENCHMARK(memoryOfPicker)->MeasureProcessCPUTime()->UseRealTime()->Iterations(1)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    if (argc > 1 && std::string_view(argv[1]) == "--scroll")
        scrollThroughPicker();
    bench::moveIn();
    ::setenv("LAMINA_MODULES", LAMINA_MODULES, 0);
    DispatchQueue::main().bindToCurrentThread();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    fs::remove_all(bench::homeFolder());
    return 0;
}
