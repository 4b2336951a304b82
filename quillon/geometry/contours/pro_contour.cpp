#include "quillon/geometry/contours/pro_contour.h"

#include <iterator>
#include <new>

namespace quillon {

int ProContour::contour_allocs = 0;  // mutate: off (read as differences only)

// ---- ProContour
// ----------------------------------------------------------------------------------

ProContour::~ProContour() { --contour_allocs; }

ProContour* ProContour::Parent() const { return nullptr; }

unsigned long ProContour::ChildrenCount() const { return 0; }

ProContour* ProContour::ContourChild(unsigned long) const { return nullptr; }

bool ProContour::remove_child_reference(ProContour*) { return false; }

namespace {

// Calls f on every closed contour of the tree rooted at `node`, parents before children.
template <class Node, class F>
void ForEachClosed(Node* node, F&& f) {
    if (auto* closed = dynamic_cast<ProClosedContour*>(const_cast<ProContour*>(node))) f(*closed);
    const unsigned long n = node->ChildrenCount();
    for (unsigned long i = 0; i < n; ++i) {
        if (ProContour* child = node->ContourChild(i)) ForEachClosed(child, f);
    }
}

// Removes the entry equal to `child`. Attach keeps entries unique, so the first equal entry is the
// only one; the search runs from the back because trees are torn down from the back. The comparison
// is made on the ProContour view so that it holds for a node whose own destructor is running.
template <class T>
bool RemoveEntry(std::vector<T*>& children, ProContour* child) {
    for (auto it = children.rbegin(); it != children.rend(); ++it) {
        if (static_cast<ProContour*>(*it) == child) {
            children.erase(std::next(it).base());
            return true;
        }
    }
    return false;
}

}  // namespace

BoundRect2 ProContour::GetBoundRect() const {
    BoundRect2 box;
    ForEachClosed(this, [&box](ProClosedContour& c) { box += c.get_bound_rect(); });
    return box;
}

void ProContour::Move(const Vector2& v) {
    ForEachClosed(this, [&v](ProClosedContour& c) { c.move(v); });
}

void ProContour::Rotate(const Rotate2& r) {
    ForEachClosed(this, [&r](ProClosedContour& c) { c.rotate(r); });
}

void ProContour::Transform(const Isometry2& t) {
    ForEachClosed(this, [&t](ProClosedContour& c) { c.transform(t); });
}

// ---- ProClosedContour
// ----------------------------------------------------------------------------

ProClosedContour& ProClosedContour::operator=(const ProClosedContour& o) {
    if (this != &o) LAContour::operator=(o);
    return *this;
}

ProClosedContour::~ProClosedContour() { Detach(); }

ProContour* ProClosedContour::Duplicate() const { return new ProClosedContour(*this); }

void ProClosedContour::Accept(ProContourVisitor&) {}

void ProClosedContour::Detach() {
    if (parent == nullptr) return;
    ProContour* former = parent;
    parent = nullptr;
    former->remove_child_reference(this);
}

ProClosedContour* ProClosedContour::SetLAContour(const LAContour& geometry) {
    LAContour::operator=(geometry);
    return this;
}

int ProClosedContour::ClosedContourLevel() const {
    int level = 0;
    for (ProContour* p = Parent(); p != nullptr; p = p->Parent()) {
        if (dynamic_cast<ProClosedContour*>(p) == nullptr) break;
        ++level;
    }
    return level;
}

// ---- ProSolidContour
// -----------------------------------------------------------------------------

ProSolidContour& ProSolidContour::operator=(const ProSolidContour& o) {
    if (this != &o) {
        ProClosedContour::operator=(o);
        attribute = o.attribute;
    }
    return *this;
}

namespace {

// Attaches deep copies of `children` to `copy` and returns it; if a copy cannot be made, `copy`
// and what it holds are deleted before the failure passes on, so nothing leaks.
template <typename Owner, typename Child>
Owner* DuplicateChildrenInto(Owner* copy, const std::vector<Child*>& children) {
    try {
        for (Child* child : children) {
            ProContour* d = child->Duplicate();
            if (auto* typed = dynamic_cast<Child*>(d)) {
                copy->Attach(typed);
            } else {
                delete d;
            }
        }
    } catch (...) {
        delete copy;
        throw;
    }
    return copy;
}

}  // namespace

ProSolidContour::~ProSolidContour() {
    // Each hole's destructor takes it out of `children`.
    while (!children.empty()) delete children.back();
    Detach();
}

ProContour* ProSolidContour::Duplicate() const {
    return DuplicateChildrenInto(new ProSolidContour(*this), children);
}

void ProSolidContour::Accept(ProContourVisitor& v) { v.VisitSolidContour(*this); }

ProContour* ProSolidContour::ContourChild(unsigned long i) const { return ClosedChild(i); }

ProClosedContour* ProSolidContour::ClosedChild(unsigned long i) const {
    return i < children.size() ? children[i] : nullptr;
}

ProClosedContour* ProSolidContour::Attach(ProClosedContour* c) {
    if (c == nullptr || c->parent == this) return c;  // held exactly when we are its parent
    for (const ProContour* p = this; p != nullptr; p = p->Parent()) {
        if (p == c) return nullptr;  // would make a cycle
    }
    children.reserve(children.size() + 1);  // nothing can fail after the detach; mutate: off
    c->Detach();
    c->parent = this;
    children.push_back(c);
    return c;
}

ProSolidContour* ProSolidContour::SetLAContour(const LAContour& geometry) {
    ProClosedContour::SetLAContour(geometry);
    return this;
}

bool ProSolidContour::remove_child_reference(ProContour* child) {
    return RemoveEntry(children, child);
}

// ---- ProComplexContour
// ---------------------------------------------------------------------------

ProComplexContour::~ProComplexContour() { Clear(); }

ProContour* ProComplexContour::Duplicate() const {
    return DuplicateChildrenInto(new ProComplexContour(), children);
}

void ProComplexContour::Accept(ProContourVisitor& v) { v.VisitComplexContour(*this); }

ProContour* ProComplexContour::ContourChild(unsigned long i) const { return SolidChild(i); }

ProSolidContour* ProComplexContour::SolidChild(unsigned long i) const {
    return i < children.size() ? children[i] : nullptr;
}

ProSolidContour* ProComplexContour::Attach(ProSolidContour* s) {
    if (s == nullptr || s->parent == this) return s;
    children.reserve(children.size() + 1);
    s->Detach();
    s->parent = this;
    children.push_back(s);
    return s;
}

void ProComplexContour::Clear() {
    // Each solid's destructor takes it out of `children`.
    while (!children.empty()) delete children.back();
}

void ProComplexContour::VisitAll(ProContourVisitor& v) {
    // By index: a visitor may not add solids, but the list is read afresh at each step.
    for (std::size_t i = 0; i < children.size(); ++i) children[i]->Accept(v);
}

bool ProComplexContour::remove_child_reference(ProContour* child) {
    return RemoveEntry(children, child);
}

// ---- ProEmptyContour
// -----------------------------------------------------------------------------

ProContour* ProEmptyContour::Duplicate() const { return new ProEmptyContour(*this); }

// ---- ProContourFactory
// ---------------------------------------------------------------------------

ProComplexContour* ProContourFactory::CreateComplexContour() {
    return new (std::nothrow) ProComplexContour();
}

ProSolidContour* ProContourFactory::CreateSolidContour() {
    return new (std::nothrow) ProSolidContour();
}

ProEmptyContour* ProContourFactory::CreateEmptyContour() {
    return new (std::nothrow) ProEmptyContour();
}

}  // namespace quillon
