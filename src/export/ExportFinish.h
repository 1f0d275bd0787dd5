#pragma once

#include "export/ExportProtocols.h"
#include "platform/image/pixels/UIImage.h"

#include <functional>
#include <memory>

namespace lamina {

class UIViewController;

/// What an editor gives for its work to be exported.
struct ExportedWork {
    std::function<UIImage()> flatten; ///< the work as one picture, asked for anew for each exporter; empty: no memory
    std::function<void()> exported;   ///< what was flattened last is safe in a file or in the photo library
};

/// The finish of every editor: from the chooser over the exporter of the chosen type to the share screen, and back.
/// All of these screens lie over the editor, which stays as it is. Held by the editor. Main thread, but for
/// `dataPassingDetails`.
class ExportFinish : public savingMethodPass,
                     public NewSavingMethod,
                     public DataPassingToShareController,
                     public std::enable_shared_from_this<ExportFinish> {
public:
    /// The editor outlives this; so does what the functions of `work` use.
    ExportFinish(UIViewController& editor, ExportedWork work);

    /// Asks which type to save as. Nothing while something lies over the editor.
    void openChooser();

    /// Flattens the work and opens the exporter of that type; an alert where memory is short.
    void selectedtypeWithType(SavingtypeMethod type) override;
    /// The same.
    void methodCallWithType(SavingtypeMethod type) override;
    /// Dismisses the exporter, and then opens the share screen. A record without a file of a type that is a file ends
    /// in an alert. From any thread.
    void dataPassingDetails(const SaveModelDetails& details) override;

    /// Opens the exporter of the type with that number; nothing for a number that stands for none.
    void presentControllerWithType(int type, const UIImage& image);

private:
    void flattenAndPresent(SavingtypeMethod type);
    void takeResult(const SaveModelDetails& details);
    void presentShareScreen(const SaveModelDetails& details);

    UIViewController& m_editor;
    ExportedWork m_work;
};

} // namespace lamina
