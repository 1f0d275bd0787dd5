#pragma once

#include "platform/base/Result.h"
#include "platform/host/system/FileChooserOptions.h"
#include "platform/host/system/Portal.h"
#include "platform/host/system/PortalRequest.h"

#include <functional>
#include <string>

namespace lamina {

/// How asking for a file ended.
struct FileChooserAnswer {
    /// The ways in which it can end.
    enum class Kind {
        Chosen,      ///< `path` is the file
        Cancelled,   ///< by the user
        Unavailable, ///< no chooser could be shown, or it went away; `error` says why. Another way of choosing may do
        Failed, ///< something was chosen that is no file of this device; `error` holds its name and the cause to show
    };
    Kind kind = Kind::Cancelled;
    std::string path;
    Error error;
};

/// Tells a picker how asking ended. What was chosen goes to `chosen`; where no chooser could be shown `unavailable`
/// asks in another way.
template <class Picker, class Chosen, class Unavailable>
void tellPicker(Picker& picker, const FileChooserAnswer& answer, Chosen chosen, Unavailable unavailable)
{
    switch (answer.kind) {
    case FileChooserAnswer::Kind::Chosen:
        return chosen(answer.path);
    case FileChooserAnswer::Kind::Cancelled:
        return picker.cancel();
    case FileChooserAnswer::Kind::Failed:
        return picker.fail(answer.error);
    case FileChooserAnswer::Kind::Unavailable:
        return unavailable();
    }
}

/// The desktop's own file chooser, by the portal org.freedesktop.portal.FileChooser of the session bus. One question at
/// a time; see PortalRequest. Main thread.
class FileChooserPortal {
public:
    using Completion = std::function<void(const FileChooserAnswer& answer)>;

    explicit FileChooserPortal(BusConnector connector = sessionBus);

    /// Opens the chooser for a picture or a folder that is there. The completion runs once, on a later turn of the main
    /// queue, unless the question is taken back before; it may destroy this object. A question that is still open is
    /// cancelled first.
    void open(FileChooserQuestion question, Completion completion);
    /// The same for a place and a name for a file. The user has been asked about replacing what bears the name.
    void save(const FileSaveQuestion& question, Completion completion);

    /// Takes the question back: the chooser closes, the completion is not called any more. The second time nothing
    /// happens.
    void cancel() { m_request.cancel(); }

    /// See PortalRequest.
    void setPatience(int milliseconds) { m_request.setPatience(milliseconds); }

private:
    void ask(std::string what, PortalRequest::Prepare prepare, Completion completion);

    PortalRequest m_request;
};

} // namespace lamina
