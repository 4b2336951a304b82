#include "python/src/library_lock.h"

namespace quillon::python {

std::recursive_mutex& LibraryMutex() {
    // Never destroyed: shapes still alive when the interpreter shuts down are freed after every
    // static of this module is gone, and they take the lock.
    static auto* mutex = new std::recursive_mutex;
    return *mutex;
}

}  // namespace quillon::python
