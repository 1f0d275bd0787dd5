#pragma once

#include "platform/photos/PHFetchResult.h"

#include <string>
#include <variant>
#include <vector>

namespace lamina {

/// Who gathers an album's pictures: the user, or a rule. The values are the platform's.
enum class PHAssetCollectionType { Album = 1, SmartAlbum = 2 };

/// Which album it is. The values are the platform's, but for the last two, which are ours.
enum class PHAssetCollectionSubtype {
    AlbumRegular = 2,             ///< a folder; asked for among smart albums: any of them
    SmartAlbumUserLibrary = 209,  ///< all pictures
    SmartAlbumScreenshots = 211,  ///< the folders of screenshots
    SmartAlbumCamera = 1'000'001, ///< the folders that cameras fill
    SmartAlbumLamina = 1'000'002, ///< what this application has saved
};

/// An album. A plain value.
struct PHAssetCollection {
    std::string localIdentifier; ///< names the album for as long as its folder is there
    std::string localizedTitle;  ///< to be shown: the folder's name, or a smart album's in the user's language
    PHAssetCollectionType assetCollectionType = PHAssetCollectionType::Album;
    PHAssetCollectionSubtype assetCollectionSubtype = PHAssetCollectionSubtype::AlbumRegular;
    std::string path; ///< its folder; empty: none, or several

    /// The same album, whatever it holds.
    friend bool operator==(const PHAssetCollection& x, const PHAssetCollection& y)
    {
        return x.localIdentifier == y.localIdentifier;
    }
};

/// A folder of folders with pictures. A plain value.
struct PHCollectionList {
    std::string localIdentifier;
    std::string localizedTitle;
    std::string path;

    friend bool operator==(const PHCollectionList& x, const PHCollectionList& y)
    {
        return x.localIdentifier == y.localIdentifier;
    }
};

using PHCollection = std::variant<PHAssetCollection, PHCollectionList>;

// The library's albums at this moment. While it is read for the first time they grow; a change is told to observers
// (see PHPhotoLibrary.h). Albums that hold pictures when they are fetched can be empty when their pictures are.
// Folders without pictures are no albums. Usable from any thread; the first call opens the index (some 50 ms).

/// The folders directly under the user's folder for pictures, by title, and each further folder of the library. Those
/// that are smart albums are not among them.
std::vector<PHCollection> fetchTopLevelUserCollections();

/// What a folder of folders holds: an album of the same title for the pictures directly in it, if there are any, then
/// its folders. Empty when it is gone.
std::vector<PHCollection> fetchCollectionsInCollectionList(const PHCollectionList& list);

/// The albums of a type and subtype; with `AlbumRegular` all of the type: the smart albums in the order user library,
/// camera, screenshots, Lamina, empty ones too, or all folders with pictures, depth first.
std::vector<PHAssetCollection> fetchAssetCollectionsWithType(PHAssetCollectionType type,
                                                             PHAssetCollectionSubtype subtype);

/// The pictures of an album, newest first and by date: when it was taken where the file says so, else when it was last
/// written. Empty when the album is gone.
PHFetchResult fetchAssetsInAssetCollection(const PHAssetCollection& collection);

} // namespace lamina
