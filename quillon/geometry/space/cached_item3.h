// CachedItem3: what the geometric item kinds that build their solid on demand share, the cached
// solid and its valid flag.
#pragma once

#include "quillon/geometry/space/item3.h"
#include "quillon/geometry/space/solid3.h"

namespace quillon {

class CachedItem3 : public GeometricItem3 {
protected:
    // eps is the cached solid's tolerance (negative: 1e-10).
    explicit CachedItem3(double eps) : solid(eps) {}

    // True when the cached solid is valid. Otherwise it is marked valid and emptied, before the
    // caller builds it: a build that fails is not tried again until a setter clears the cache.
    bool Cached() const {
        if (valid) return true;
        valid = true;
        solid.Clear();
        return false;
    }
    // What every setter does first.
    void Invalidate() const {
        solid.Clear();
        valid = false;
    }

    mutable Solid3 solid;
    mutable bool valid = false;
};

}  // namespace quillon
