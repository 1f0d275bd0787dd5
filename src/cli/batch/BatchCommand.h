#pragma once

#include "cli/batch/BatchPlan.h"
#include "cli/common/PictureCommand.h"
#include "platform/base/CGGeometry.h"
#include "platform/image/codecs/PictureDecoding.h"
#include "platform/photos/PhotoSource.h"

#include <CLI/App.hpp>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace lamina {

/// A subcommand that makes a picture of others, or of each of many files a picture in a folder: those that stand behind
/// `--each`, then those that the list `--from` names. They take the first place among the inputs; the further ones are
/// read once and serve all.
///
/// Files are worked on side by side, as many as there are cores and as fit into memory. One that fails is told and
/// stops no other.
class BatchCommand : public PictureCommand {
public:
    ExitCode run() override;

protected:
    BatchCommand(CLI::App& application, const std::string& name, const std::string& about);

    /// Adds `--each`, `--from` and `--shard`.
    void addBatch();
    /// Whether the command line names many files. `inputs` are then those that all share.
    bool isBatch() const { return !m_each.empty() || !m_list.empty(); }

    Outcome checkOutput() const override;
    /// How pictures are to be read.
    DecodeOptions decodeOptions() const;

    /// What was made of one file.
    struct Made {
        UIImage picture;
        std::string report = {};  ///< for standard output; empty: nothing
        std::string warning = {}; ///< what should be known of it; empty: nothing
    };
    /// Takes over the pictures that all files share, and does what is to be done once. What fails here is the whole
    /// work.
    virtual Outcome prepare(std::vector<UIImage> shared) = 0;
    /// About the most memory, in bytes, that `makeOf` and writing take for a picture of such sides. Any thread.
    virtual std::size_t memoryFor(IntSize sides) const = 0;
    /// Reads one file, whose sides are these by its own words, if any, and makes the picture. Any thread.
    virtual Result<Made> makeOf(const PhotoSource& source, std::optional<IntSize> sides,
                                const DecodeOptions& options) = 0;

private:
    ExitCode runBatch();
    Outcome checkBatch();
    Result<std::vector<std::string>> listNames() const;
    /// What all files go through.
    struct Run;
    ExitCode workOn(const std::vector<BatchFile>& files);
    /// One file from end to end; gives what is to be reported of it.
    Result<std::string> process(const BatchFile& file, Run& run);
    /// Of a file that doesn't tell its sides: all that there is, if it is a picture at all.
    std::size_t memoryForUnknown(const std::string& path) const;
    static Outcome write(const UIImage& picture, const BatchFile& file, Run& run);

    std::vector<std::string> m_each;
    std::string m_list;
    std::string m_shard;
};

} // namespace lamina
