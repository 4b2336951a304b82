// The program's commands of space: 'plate' (a drawing extruded to a plate, openings subtracted,
// written as OBJ and MTL), 'tube' (a polyline swept by a circle, written as OBJ) and 'obj-info'
// (figures of an OBJ file). cli.cpp lists them in its command table; like every command they take
// the Invocation, whose All() gives the repeatable options (--hole, --cut, ...) in order.
#pragma once

#include "tools/quillon/command.h"

namespace quillon::tool {

int RunPlate(const Invocation& call);
int RunTube(const Invocation& call);
int RunObjInfo(const Invocation& call);

}  // namespace quillon::tool
