// One lock for the library's process-wide state. The library keeps counters and catalogues that
// are not locked (the live-node counter of contour trees, the unit catalogue, the locale
// override), so only one thread may run in it at a time. Long calls (the solver, booleans, section
// figures) let go of the interpreter lock while they run, so other Python threads go on; they take
// this lock instead. Shapes are freed under it too, since freeing a tree counts its nodes down.
//
// Rule that keeps deadlocks out: a holder of this lock never waits for the interpreter lock, so
// code run under it makes and touches no Python object. The interpreter lock is given up before
// this lock is taken and taken back after it is let go; a thread that holds the interpreter lock
// may wait for this lock (freeing a shape, a short call), since its holder needs nothing back. The
// lock is recursive: a shape freed inside a locked call takes it again.
#pragma once

#include <mutex>
#include <utility>

#include <pybind11/pybind11.h>

namespace quillon::python {

std::recursive_mutex& LibraryMutex();

// Runs f without the interpreter lock and under the library lock. f must not touch Python objects.
template <typename F>
decltype(auto) WithoutInterpreter(F&& f) {
    pybind11::gil_scoped_release release;
    const std::lock_guard<std::recursive_mutex> lock(LibraryMutex());
    return std::forward<F>(f)();
}

// Runs f under the library lock, keeping the interpreter lock: for short calls. f must not touch
// Python objects either.
template <typename F>
decltype(auto) Locked(F&& f) {
    const std::lock_guard<std::recursive_mutex> lock(LibraryMutex());
    return std::forward<F>(f)();
}

}  // namespace quillon::python
