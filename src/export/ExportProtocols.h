#pragma once

#include "export/SaveModelDetails.h"
#include "export/functions/ExportWork.h"

// How the screens of an export speak to each other. Who is spoken to is held weakly: one that is gone hears nothing.

namespace lamina {

/// Hears which type was chosen.
class savingMethodPass {
public:
    virtual ~savingMethodPass() = default;
    /// The user chose this type; the chooser has gone. Main thread.
    virtual void selectedtypeWithType(SavingtypeMethod type) = 0;
};

/// Opens another exporter in the place of one that has closed.
class NewSavingMethod {
public:
    virtual ~NewSavingMethod() = default;
    /// The exporter has closed: open that of this type. Main thread.
    virtual void methodCallWithType(SavingtypeMethod type) = 0;
};

/// Takes an export's result on to the share screen.
class DataPassingToShareController {
public:
    virtual ~DataPassingToShareController() = default;
    /// From any thread.
    virtual void dataPassingDetails(const SaveModelDetails& details) = 0;
};

/// Hears which colour profile was chosen, and closes the sheet.
class ColorProfilePassed {
public:
    virtual ~ColorProfilePassed() = default;
    /// A row of `kColorProfileTitles`. Main thread.
    virtual void profileSelected(int index) = 0;
};

} // namespace lamina
