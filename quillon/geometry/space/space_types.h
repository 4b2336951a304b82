// Space primitives (gathered here as the module grows).
#pragma once

#include "quillon/geometry/space/arc3.h"
#include "quillon/geometry/space/line3.h"
#include "quillon/geometry/space/local3.h"
#include "quillon/geometry/space/plane3.h"
#include "quillon/geometry/space/sector3.h"
#include "quillon/geometry/space/space_matrix.h"
#include "quillon/geometry/space/space_relations.h"
#include "quillon/geometry/space/triangle3.h"
#include "quillon/geometry/space/vector3.h"
