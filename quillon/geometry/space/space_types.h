// Space primitives (gathered here as the module grows).
#pragma once

#include "quillon/geometry/space/local3.h"
#include "quillon/geometry/space/space_matrix.h"
#include "quillon/geometry/space/vector3.h"
