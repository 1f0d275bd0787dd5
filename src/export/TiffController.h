#pragma once

#include "export/ExporterViewController.h"

#include <QObject>

namespace lamina {

/// Saves as TIFF, into the photo library too. There is nothing to choose.
class TiffController : public ExporterViewController {
    Q_OBJECT

public:
    static constexpr double kHeight = 267; ///< of the sheet for a picture, points

    TiffController();
};

} // namespace lamina
