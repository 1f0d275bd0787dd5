#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace lamina {

/// Where a picture comes from: a file, or bytes that were pasted or dropped. A cheap value; usable from any thread.
struct PhotoSource {
    std::string path;                                       ///< of a file; empty: the bytes count
    std::shared_ptr<const std::vector<std::uint8_t>> bytes; ///< a picture file's contents; null: the path counts
    std::string name;                                       ///< to show to the user: "beach.jpg"

    /// The name is the path's last part.
    static PhotoSource fromFile(std::string path)
    {
        PhotoSource source;
        source.name = path.substr(path.find_last_of('/') + 1);
        source.path = std::move(path);
        return source;
    }
    /// A picture file's contents, shown under `name`.
    static PhotoSource fromBytes(std::vector<std::uint8_t> bytes, std::string name)
    {
        PhotoSource source;
        source.bytes = std::make_shared<const std::vector<std::uint8_t>>(std::move(bytes));
        source.name = std::move(name);
        return source;
    }
};

} // namespace lamina
