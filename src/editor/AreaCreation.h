#pragma once

#include "model/Geometry.h"

namespace corrieval {

class CPageArea;
class CTunePage;
struct CRuntimeClass;

// Puts a new area of `kind` (a class derived from CPageArea) on the page over `band`, with what a
// new area of its kind holds: a music area its systems and bars, a legend its columns. Returns
// the area, or null when `kind` is not an area or the band has no size.
CPageArea* CreateArea(CTunePage& page, const CRuntimeClass& kind, const RectF& band);

} // namespace corrieval
