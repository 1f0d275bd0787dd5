#pragma once

#include "editors/common/KeptPictures.h"
#include "editors/common/RecordValue.h"
#include "platform/base/DispatchQueue.h"
#include "platform/base/Result.h"
#include "platform/files/PrivateFolder.h"
#include "platform/image/pixels/UIImage.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace lamina {

/// Which editor's work it is, and the version of the form in which that editor writes its records.
struct KeptKind {
    std::string_view name; ///< of its folder too: small letters
    int version = 1;
};

/// A work that was left without being exported, as it is offered.
struct KeptOffer {
    std::string folder;
    std::string kind; ///< the name of a KeptKind
    double when = 0;  ///< seconds since 1970, UTC: when it was last changed
};

/// Posted on the main thread after a kept work has been let go of or removed: what is offered may be another one.
inline constexpr const char* kKeptWorksChangedNotification = "KeptWorksChanged";

/// Where work is kept from now on; empty, as it is at first: nowhere, and nothing is offered. Main thread, while no
/// work is open.
void setKeptWorksFolder(std::string folder);
/// See setKeptWorksFolder.
const std::string& keptWorksFolder();

/// On which all works are read and written, one after another, so that whoever opens one finds it written. A queue of
/// their own: a photo that is chosen meanwhile does not wait for the pictures of a work. Who submits here holds
/// `DispatchQueue::main().expectWork()` until the answer is there. Usable from any thread.
DispatchQueue& keptWorksQueue();

/// Why a work that is offered can't be had, each in one wording; without a subject.
Error workIsOpenElsewhere();
/// See workIsOpenElsewhere.
Error workIsDamaged();

/// The work that was changed last among those of these kinds that nobody has open, in this process or another. What
/// can't be read is not offered; why is logged once. Reads small files. Main thread.
std::optional<KeptOffer> offeredWork(const std::vector<KeptKind>& kinds);

/// Removes the work with all its files. An error when another process has it open, or a file can't be removed.
Outcome removeKeptWork(const KeptOffer& offer);

/// The print of a work, for whoever offers it; empty when there is none. Usable from any thread.
UIImage printOfKeptWork(const KeptOffer& offer);

/// One work that is kept: a folder with a journal of its last two records, their pictures and a print, which this
/// process has for itself as long as the object lives. It can be read again after a kill at any moment, a full disk or
/// a loss of power: pictures are there before the record that names them, and go after it. One thread at a time.
class KeptWork {
public:
    /// Puts the work into `record`, and its pictures into `pictures`.
    using Write = std::function<void(KeptPictures& pictures, RecordValue& record)>;

    /// A work that is begun: with the first record it takes the place of the one of its kind that is offered.
    static std::shared_ptr<KeptWork> begin(const KeptKind& kind);
    /// Opens an offered work and reads the pictures of its last record. An error when another process has it open, or
    /// nothing in it can be read.
    static Result<std::shared_ptr<KeptWork>> open(const KeptOffer& offer, const KeptKind& kind);
    ~KeptWork();
    KeptWork(const KeptWork&) = delete;
    KeptWork& operator=(const KeptWork&) = delete;

    const KeptKind& kind() const { return m_kind; }
    /// Calls `read` with the records that there are, the last one first, until it takes one.
    bool read(const std::function<bool(const RecordValue& record, KeptPictures& pictures)>& read);

    /// Keeps the work as it is now, with a print of how it looks.
    Outcome write(const Write& write, const UIImage& print);
    /// Removes what is kept. It can be written anew.
    Outcome remove();

private:
    explicit KeptWork(const KeptKind& kind);
    void loadPictures();
    Outcome claim();
    bool claimFolder(const std::string& folder);
    std::string recordOf(RecordValue work, const std::vector<std::string>& pictures) const;
    Outcome writeJournal(const std::string& record);
    Outcome writePrint(const UIImage& print) const;
    void removeOtherFiles() const;
    std::vector<std::string> pictureNames() const;

    KeptKind m_kind;
    std::string m_folder;
    std::optional<FolderLock> m_lock;
    bool m_hadFolder = false;
    std::optional<KeptPictures> m_pictures;
    std::vector<std::string> m_records; ///< those in the journal
};

} // namespace lamina
