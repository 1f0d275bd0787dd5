// How a collage is written into a record, and read from it.

#include "editors/collage/CollageComposition.h"

#include "editors/common/KeptWork.h"
#include "editors/common/RecordValue.h"
#include "editors/common/KeptPictures.h"

namespace lamina {

KeptKind keptKind(const CollageComposition&)
{
    return {"collage", 1};
}

void writeRecord(const CollageComposition&, KeptPictures&, RecordValue&) {}

bool readRecord(const RecordValue&, KeptPictures&, CollageComposition&)
{
    return false;
}

} // namespace lamina
