#pragma once

#include "platform/base/Result.h"
#include "platform/photos/index/PhotoRecords.h"
#include "platform/photos/index/PhotoStoreModule_p.h"
#include "platform/photos/index/PhotoStore_p.h"
#include "platform/photos/index/sqlite/Database_p.h"
#include "platform/photos/index/sqlite/PhotoTableReads_p.h"
#include "platform/photos/index/sqlite/PhotoTableRows_p.h"

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace lamina {

/// One connection that writes and one that reads beside it, each with its statements.
struct PhotoConnections {
    explicit PhotoConnections(const std::string& path);

    Database writing;
    Database reading;
    PhotoTableRows rows{writing};
    PhotoTableReads reads{reading};
};

/// The file "photos.sqlite", which other processes may have open too. Whatever is done finds out whether the file is
/// damaged; it is mended then, and the same done again.
class PhotoFile final : public PhotoStore {
public:
    static Result<std::unique_ptr<PhotoStore>> open(PhotoStoreFile file);

    std::string identity() const override { return m_file.identity; }
    bool isKept() const override { return true; }
    std::uint64_t lossCount() const override { return m_mendings; }

    Result<std::vector<FolderRecord>> folders() override;
    Result<std::vector<PhotoPlace>> photos() override;
    Result<std::vector<PhotoRecord>> photosInFolder(FolderID folder) override;
    Result<std::vector<PhotoRecord>> records(std::span<const PhotoID> photos) override;
    Result<std::optional<PhotoRecord>> find(FileKey key) override;
    Outcome write(const std::function<void(PhotoRows&)>& changes) override;
    StoreContents contents() override;

private:
    explicit PhotoFile(PhotoStoreFile file)
        : m_file(std::move(file))
    {
    }
    Outcome connect();
    Outcome remake();
    Outcome mend(std::uint64_t mendingsSeen);
    template <class Work>
    auto withMending(std::mutex& mutex, Database PhotoConnections::*database, const Work& work)
        -> Result<decltype(work(std::declval<PhotoConnections&>()))>;
    template <class Read>
    auto read(const Read& read) -> Result<decltype(read(std::declval<PhotoTableReads&>()))>;

    PhotoStoreFile m_file;
    std::mutex m_writing; ///< for the connection that writes; before the next where both are held
    std::mutex m_reading; ///< for the other one
    std::unique_ptr<PhotoConnections> m_connections;
    StoreContents m_saved; ///< of a file that could not be mended, when there is no connection any more
    std::atomic<std::uint64_t> m_mendings = 0;
};

} // namespace lamina
