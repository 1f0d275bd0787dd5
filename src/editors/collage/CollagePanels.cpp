#include "editors/collage/CollagePanels.h"
