// The library as its callers see it, over real folders.
#include "platform/photos/PHPhotoLibrary.h"
#include "CommandRunner.h"
#include "TestPictures.h"
#include "platform/base/DispatchQueue.h"
#include "platform/photos/LibraryAccess_p.h"
#include "platform/photos/LibraryEngine_p.h"
#include "platform/photos/PHAssetChangeRequest.h"
#include "platform/photos/PHAssetCollectionChangeRequest.h"
#include "platform/photos/PHAssetCreationRequest.h"
#include "platform/photos/PHChange.h"
#include "platform/photos/PHCollection.h"

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <gtest/gtest.h>
#include <iterator>
#include <memory>
#include <string>
#include <sys/resource.h>
#include <variant>
#include <vector>

namespace lamina::test {
namespace {

namespace fs = std::filesystem;

/// Hears of changes, and whether a change's own handler was called before.
class Reports : public PHPhotoLibraryChangeObserver {
public:
    void photoLibraryDidChange(const PHChange& change) override
    {
        EXPECT_TRUE(DispatchQueue::main().isCurrent());
        if (heard)
            heard(change);
    }
    std::function<void(const PHChange&)> heard;
};

/// A home of its own, with photos in folders of every kind.
class Library : public testing::Test {
protected:
    void SetUp() override
    {
        fs::create_directory(home.path("config"));
        writeFile(home.path("config/user-dirs.dirs"), "XDG_PICTURES_DIR=\"$HOME/Fotos\"\n");
        ::setenv("HOME", home.path().c_str(), 1);
        ::setenv("XDG_CONFIG_HOME", home.path("config").c_str(), 1);
        ::setenv("XDG_CACHE_HOME", home.path("cache").c_str(), 1);
        for (const char* const name :
             {"Fotos/loose.png", "Fotos/sea/a.png", "Fotos/trips/rome/b.png", "Fotos/trips/c.png", "Fotos/Camera/d.png",
              "Fotos/Lamina/f.png", "card/g.png", "elsewhere/h.png"}) {
            fs::create_directories(fs::path(home.path(name)).parent_path());
            writePng(home.path(name), rampPicture(6, 4, 0));
        }
        fs::create_directory(home.path("Fotos/empty"));
        LibraryEngine::shared().configure(defaultLibraryRoots());
        PHPhotoLibrary::setFurtherFolders({home.path("card")});
        PHPhotoLibrary::registerChangeObserver(reports);
        LibraryEngine::shared().waitUntilComplete();
        // After a test of the same process the engine was complete before it had these folders.
        ASSERT_TRUE(waitFor([] { return fetchAssetsInAssetCollection(allPhotos()).count() == kPhotos; }));
    }
    void TearDown() override
    {
        PHPhotoLibrary::unregisterChangeObserver(reports.get());
        LibraryEngine::shared().configure({});
    }

    static constexpr std::size_t kPhotos = 7;

    static bool waitFor(const std::function<bool()>& condition)
    {
        return DispatchQueue::main().runUntil(condition, 20);
    }
    /// "title count", and what is in a list between brackets, depth first.
    static std::string told(const std::vector<PHCollection>& collections)
    {
        std::string text;
        for (const PHCollection& collection : collections)
            if (const auto* const list = std::get_if<PHCollectionList>(&collection))
                text += list->localizedTitle + " [" + told(fetchCollectionsInCollectionList(*list)) + "] ";
            else
                text += told(std::get<PHAssetCollection>(collection)) + ' ';
        return text;
    }
    static std::string told(const PHAssetCollection& album)
    {
        return album.localizedTitle + ' ' + std::to_string(fetchAssetsInAssetCollection(album).count());
    }
    static PHAssetCollection smart(PHAssetCollectionSubtype subtype)
    {
        return fetchAssetCollectionsWithType(PHAssetCollectionType::SmartAlbum, subtype).at(0);
    }
    static PHAssetCollection allPhotos() { return smart(PHAssetCollectionSubtype::SmartAlbumUserLibrary); }
    static PHAssetCollection sea()
    {
        return fetchAssetCollectionsWithType(PHAssetCollectionType::Album, PHAssetCollectionSubtype::AlbumRegular)
            .at(0);
    }
    /// What became of a change, "done" or the cause.
    static std::string outcomeOf(const std::function<void()>& changes)
    {
        std::string outcome;
        PHPhotoLibrary::performChanges(changes,
                                       [&](const Outcome& ended) { outcome = ended ? "done" : ended.error().cause; });
        EXPECT_TRUE(DispatchQueue::main().runUntilIdle(60));
        return outcome;
    }

    const TemporaryFolder home;
    const std::shared_ptr<Reports> reports = std::make_shared<Reports>();
};

TEST_F(Library, HasAFolderAsAnAlbumAndWhatIsOfOneKindAsASmartOne)
{
    EXPECT_TRUE(PHPhotoLibrary::isComplete());
    EXPECT_EQ(told(fetchTopLevelUserCollections()), "sea 1 trips [trips 1 rome 1 ] card 1 ");
    std::string smartOnes;
    for (const PHAssetCollection& album :
         fetchAssetCollectionsWithType(PHAssetCollectionType::SmartAlbum, PHAssetCollectionSubtype::AlbumRegular))
        smartOnes +=
            told(album) + (album.path.empty() ? ", " : " in " + fs::relative(album.path, home.path()).string() + ", ");
    EXPECT_EQ(smartOnes, "All Photos 7, Camera 1 in Fotos/Camera, Screenshots 0, Lamina 1 in Fotos/Lamina, ");
    EXPECT_EQ(sea().path, home.path("Fotos/sea"));
    EXPECT_EQ(fetchAssetsInAssetCollection(sea()).objectAtIndex(0).path, home.path("Fotos/sea/a.png"));
    EXPECT_TRUE(fetchCollectionsInCollectionList({}).empty());
    EXPECT_TRUE(fetchAssetsInAssetCollection({}).isEmpty());
    EXPECT_TRUE(fetchAssetCollectionsWithType(PHAssetCollectionType::Album, PHAssetCollectionSubtype::SmartAlbumCamera)
                    .empty());
}

TEST_F(Library, AddsAPictureToAnAlbumAndTellsOfItAfterwards)
{
    const PHFetchResult before = fetchAssetsInAssetCollection(sea());
    const PHFetchResult allBefore = fetchAssetsInAssetCollection(allPhotos());
    std::string order;
    std::optional<PHFetchResultChangeDetails> details;
    bool everywhere = false;
    reports->heard = [&](const PHChange& change) {
        if (const auto found = change.changeDetailsForFetchResult(before)) {
            order += "told ";
            details = found;
            everywhere = change.changeDetailsForFetchResult(allBefore).has_value();
        }
    };
    PHObjectPlaceholder placeholder;
    std::vector<PHAsset> atOnce;
    PHPhotoLibrary::performChanges(
        [&] {
            auto* const creation = PHAssetChangeRequest::creationRequestForAssetFromImage(
                UIImage(chartPicture(9, 7, CGImageAlphaInfo::NoneSkipLast), 1, UIImageOrientation::Right));
            placeholder = creation->placeholderForCreatedAsset();
            PHAssetCollectionChangeRequest::changeRequestForAssetCollection(sea())->addAssets({placeholder});
        },
        [&](const Outcome& outcome) {
            order += outcome ? "done " : outcome.error().message();
            atOnce = fetchAssetsWithLocalIdentifiers({placeholder.localIdentifier});
        });
    ASSERT_TRUE(waitFor([&] { return details.has_value(); }));
    EXPECT_EQ(order, "done told ");
    EXPECT_TRUE(everywhere);
    ASSERT_EQ(atOnce.size(), 1u);
    EXPECT_EQ(fs::path(atOnce[0].path).parent_path(), home.path("Fotos/sea"));
    EXPECT_EQ(fs::path(atOnce[0].path).extension(), ".jpg");
    EXPECT_EQ(readPictureFile(atOnce[0].path).size(), (IntSize{7, 9}));
    EXPECT_EQ(details->insertedIndexes(), std::vector<std::size_t>{0}); // the newest
    EXPECT_TRUE(details->removedIndexes().empty() && !details->hasMoves());
    const PHAsset added = details->fetchResultAfterChanges().objectAtIndex(0);
    EXPECT_EQ(added.localIdentifier, placeholder.localIdentifier);
    EXPECT_EQ(added.path, atOnce[0].path);
    EXPECT_EQ(added.pixelWidth, 7);
    EXPECT_EQ(before.count(), 1u); // as it was
    EXPECT_EQ(details->fetchResultAfterChanges(), fetchAssetsInAssetCollection(sea()));
}

TEST_F(Library, ChangesNothingWhereAChangeFails)
{
    EXPECT_EQ(PHAssetChangeRequest::creationRequestForAssetFromImage({}), nullptr);
    EXPECT_EQ(PHAssetCollectionChangeRequest::changeRequestForAssetCollection(sea()), nullptr);
    const UIImage small(rampPicture(4, 4, 0));
    const auto addTo = [&](const PHAssetCollection& album, const UIImage& picture, const std::string& foreign = {}) {
        return outcomeOf([&, album] {
            PHAssetChangeRequest::creationRequestForAssetFromImage(small);
            auto* const creation = PHAssetChangeRequest::creationRequestForAssetFromImage(picture);
            const PHObjectPlaceholder added{foreign.empty() ? creation->placeholderForCreatedAsset().localIdentifier
                                                            : foreign};
            PHAssetCollectionChangeRequest::changeRequestForAssetCollection(album)->addAssets({added});
        });
    };
    const PHAssetCollection album = sea();
    const std::string refused = "photos can’t be added to this album";
    EXPECT_EQ(addTo(album, UIImage()), "there is no picture");
    EXPECT_EQ(addTo(smart(PHAssetCollectionSubtype::SmartAlbumLamina), small), refused);
    EXPECT_EQ(addTo(album, small, "somebody else"), refused);

    // The second file does not fit on the disk.
    ::signal(SIGXFSZ, SIG_IGN);
    rlimit former{};
    ::getrlimit(RLIMIT_FSIZE, &former);
    const rlimit full{1 << 20, former.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &full);
    const std::string outcome = addTo(album, UIImage(noisePicture(1000, 1000, CGImageAlphaInfo::NoneSkipLast)));
    ::setrlimit(RLIMIT_FSIZE, &former);
    EXPECT_EQ(outcome, "the file is too large for the device");

    fs::remove_all(home.path("Fotos/sea"));
    EXPECT_EQ(addTo(album, small), "no such folder");
    EXPECT_TRUE(waitFor([] { return fetchAssetsInAssetCollection(allPhotos()).count() == kPhotos - 1; }));
    EXPECT_EQ(std::distance(fs::directory_iterator(home.path("Fotos/Lamina")), {}), 1);
}

TEST_F(Library, ShowsFilesFromElsewhereWhileTheProcessLives)
{
    std::vector<PHAsset> added;
    PHPhotoLibrary::addFiles({home.path("elsewhere/h.png"), home.path("none.png"), home.path("Fotos/sea/a.png")},
                             [&](const std::vector<PHAsset>& assets) { added = assets; });
    ASSERT_TRUE(DispatchQueue::main().runUntilIdle(60));
    ASSERT_EQ(added.size(), 2u);
    const PHFetchResult all = fetchAssetsInAssetCollection(allPhotos());
    EXPECT_EQ(all.count(), kPhotos + 1);
    ASSERT_TRUE(all.indexOfObject(added[0]));
    EXPECT_EQ(all.objectAtIndex(*all.indexOfObject(added[0])).path, home.path("elsewhere/h.png"));
    EXPECT_EQ(added[1], fetchAssetsInAssetCollection(sea()).firstObject());
}

TEST(LibraryAccess, IsRefusedWhereNoFolderThatIsThereMayBeRead)
{
    const TemporaryFolder home;
    fs::create_directory(home.path("open"));
    fs::create_directories(home.path("made/Lamina"));
    fs::create_symlink("closed", home.path("closed")); // even the administrator can't go round in a circle
    writeFile(home.path("mark"), "");
    const std::string open = home.path("open");
    const std::string closed = home.path("closed");
    const std::string none = home.path("none");
    const std::string made = home.path("made"); // by the application itself
    const struct {
        std::string pictures;
        std::vector<std::string> further;
        PHAuthorizationStatus access;
        bool shownInSandbox;
    } table[] = {
        {open, {}, PHAuthorizationStatus::Authorized, true},
        {closed, {}, PHAuthorizationStatus::Denied, true},
        {closed, {none}, PHAuthorizationStatus::Denied, true},
        {closed, {open}, PHAuthorizationStatus::Authorized, true},
        {open, {closed}, PHAuthorizationStatus::Authorized, true},
        {none, {closed}, PHAuthorizationStatus::Denied, true},
        {none, {open}, PHAuthorizationStatus::Authorized, true},
        {none, {}, PHAuthorizationStatus::Authorized, false},
        {made, {}, PHAuthorizationStatus::Authorized, false},
        {made, {open}, PHAuthorizationStatus::Authorized, true},
        {"", {home.path("mark")}, PHAuthorizationStatus::Authorized, false}, // a file in the way
    };
    for (const auto& c : table) {
        SCOPED_TRACE(c.pictures + " and " + std::to_string(c.further.size()));
        LibraryRoots roots;
        roots.pictures = c.pictures;
        roots.further = c.further;
        EXPECT_EQ(accessTo(roots), c.access);
        roots.ownFolder = home.path("made/Lamina");
        roots.sandboxMark = home.path("mark");
        EXPECT_EQ(foldersAreShown(roots), c.shownInSandbox);
        roots.sandboxMark = none;
        EXPECT_TRUE(foldersAreShown(roots));
    }
}

} // namespace
} // namespace lamina::test
