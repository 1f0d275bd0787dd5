#pragma once

#include "platform/base/Result.h"

#include <memory>
#include <string>

namespace lamina {

class UnfinishedFile;

/// A file that is written by a library, by its path, for as long as it takes, and then takes its name: as
/// `writeFileAtomically` does it, in steps. Destroyed before, it is gone, and what bears the name is as it was. Usable
/// from any thread, one step at a time.
class GrowingFile {
public:
    /// What a kill or the loss of power leaves of it.
    enum class Leftover {
        Swept, ///< a temporary file, see FileWriting.h: it can be made again
        Kept,  ///< "STEM.recording-1a2b3c4d.EXT" beside the target: it can't, and is the user's. No sweep touches it
    };

    /// Makes the file, empty; the error's subject is `path`. A pipe, device or folder is refused.
    static Result<std::unique_ptr<GrowingFile>> make(const std::string& path, Leftover leftover = Leftover::Swept);
    ~GrowingFile();
    GrowingFile(const GrowingFile&) = delete;
    GrowingFile& operator=(const GrowingFile&) = delete;

    /// Leads to the open file, under /proc; lasts as long as this object.
    std::string descriptorPath() const;
    /// The name in the target's folder that it bears for now.
    const std::string& temporaryName() const;
    /// Has the contents on the device where they replace others; may take seconds.
    Outcome finish();
    /// Takes the name; at once.
    Outcome takeName();
    /// Of a `Kept` one: it stays, under the name that it has.
    void keep();

private:
    GrowingFile(std::string path, std::string name, std::unique_ptr<UnfinishedFile> file, bool replaces);
    Outcome outcome() const;

    std::string m_path;
    std::string m_name;
    std::unique_ptr<UnfinishedFile> m_file;
    bool m_replaces;
};

} // namespace lamina
