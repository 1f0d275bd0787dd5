#pragma once

#include "platform/photos/PHAsset.h"
#include "platform/photos/PHFetchResult.h"
#include "platform/photos/PHFetchResultChangeDetails.h"
#include "platform/view/ListModel.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace lamina {

/// The grid's items for views: the camera first, then the photos of a fetch result. A row is read when it is asked for
/// and nothing is kept of it, so that many photos cost nothing. Main thread.
///
/// Fields: `identifier` (of the photo; empty for the camera), `isCamera`, `stamp` (another number when the photo's file
/// was replaced).
class PhotoGridModel : public ListModelBase {
    Q_OBJECT

public:
    explicit PhotoGridModel(QObject* parent = nullptr);

    const PHFetchResult& photos() const { return m_photos; }

    /// Other photos instead of all that there are.
    void reset(PHFetchResult photos);
    /// What has come and gone, a range of rows after another. Where that would be a great many ranges views are told
    /// to begin anew, which is quicker. Moves must not be among the changes.
    void update(const PHFetchResultChangeDetails& changes);
    /// Views read this row again.
    void reload(int item);

protected:
    std::size_t rowTotal() const override;
    std::size_t fieldTotal() const override;
    QByteArray fieldName(std::size_t field) const override;
    QVariant fieldValue(std::size_t row, std::size_t field) const override;

private:
    struct Range {
        std::size_t first = 0;
        std::size_t count = 0;
    };
    static std::vector<Range> rangesOf(const std::vector<std::size_t>& indexes);
    void remove(const Range& range);
    void insert(const Range& range);
    PHAsset photoAt(std::size_t index) const;

    PHFetchResult m_photos;
    // While an update is told range by range: where each row's photo stands, in the former result, or in the new one
    // where it is counted on from the former one's end.
    PHFetchResult m_former;
    std::vector<std::size_t> m_underway;
    bool m_updating = false;
};

} // namespace lamina
