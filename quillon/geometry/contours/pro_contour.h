// Structured contours: the owning tree that gives a plane outline its nesting.
//
// A ProComplexContour (the whole shape) owns ProSolidContour children (solid regions); a
// ProSolidContour is itself a closed contour (its outer boundary, an LAContour) and owns
// ProClosedContour children (its holes, normally ProEmptyContour nodes). A ProContourFactory
// creates the nodes and a ProContourVisitor walks them.
//
// Ownership: a parent owns its children and deletes them; a child knows its parent only through a
// non-owning pointer. Every node belongs to at most one parent. Attach moves a child under a new
// parent (detaching it from the old one first); Detach hands a child back to the caller without
// deleting it; a child that is destroyed removes itself from its parent's list, so deleting a node
// directly is always safe. Factories and Duplicate return new heap nodes owned by the caller.
//
// Leak check: ProContour::get_contour_allocs() counts live nodes of every class in the process; it
// returns to its former value once every tree built since has been destroyed. The counter is not
// locked: trees are used from one thread.
//
// Geometry follows the line-arc contour conventions (signed sweeps, counter-clockwise positive).
// Nothing here throws except allocation in Attach and Duplicate; null children and indices out of
// range give null results.
#pragma once

#include <cstdint>
#include <vector>

#include "quillon/geometry/plane/la_contour.h"
#include "quillon/geometry/plane/plane_types.h"

namespace quillon {

class ProContourVisitor;
class ProClosedContour;
class ProSolidContour;
class ProComplexContour;
class ProEmptyContour;

// The abstract node. Virtual operations in their fixed slot order: destructor, Duplicate, Parent,
// ChildrenCount, Accept, ContourChild, remove_child_reference.
class ProContour {
public:
    virtual ~ProContour();

    // A deep copy of this node and everything below it, without parent, owned by the caller.
    virtual ProContour* Duplicate() const = 0;
    // The owning node, or null (the base has none).
    virtual ProContour* Parent() const;
    // Number of direct children (0 for the base and for a plain closed contour).
    virtual unsigned long ChildrenCount() const;
    virtual void Accept(ProContourVisitor& v) = 0;
    // The i-th direct child in insertion order; null when i is out of range or there are none.
    virtual ProContour* ContourChild(unsigned long i) const;

    void operator()(ProContourVisitor& v) { Accept(v); }

    // Union of the bounding rectangles of every closed contour in the tree rooted here (this node
    // included when it is one); empty when there is none.
    BoundRect2 GetBoundRect() const;
    // Apply LAContour::move / rotate / transform to every closed contour in the tree rooted here.
    void Move(const Vector2& v);
    void Rotate(const Rotate2& r);
    void Transform(const Isometry2& t);

    // Number of contour nodes alive in the process.
    static int get_contour_allocs() { return contour_allocs; }

protected:
    ProContour() { ++contour_allocs; }
    // A copy is a new node: it is counted, and takes neither parent nor children.
    ProContour(const ProContour&) { ++contour_allocs; }
    ProContour& operator=(const ProContour&) { return *this; }

    // Removes the first entry equal to `child` from this node's list of children without deleting
    // it. True when an entry was removed; the base has no children and returns false.
    virtual bool remove_child_reference(ProContour* child);

    // A closed contour asks its parent (any node type) to forget it.
    friend class ProClosedContour;

private:
    static int contour_allocs;
};

// A closed line-arc contour in a tree: a hole of a solid, or (through ProSolidContour) a solid.
class ProClosedContour : public ProContour, public LAContour {
public:
    ProClosedContour() = default;
    explicit ProClosedContour(const LAContour& geometry) : LAContour(geometry) {}
    // Copies take the geometry only: no parent.
    ProClosedContour(const ProClosedContour& o) : ProContour(o), LAContour(o) {}
    // Replaces the geometry only; this node keeps its own parent.
    ProClosedContour& operator=(const ProClosedContour& o);
    // Detaches itself from its parent.
    ~ProClosedContour() override;

    ProContour* Duplicate() const override;
    ProContour* Parent() const override { return parent; }
    // A plain closed contour has no visitor operation of its own.
    void Accept(ProContourVisitor& v) override;

    // Leaves the parent (which forgets this node without deleting it); no-op without a parent.
    void Detach();
    // Replaces the geometry (copied) and returns this node.
    ProClosedContour* SetLAContour(const LAContour& geometry);
    LAContour& GetLAContour() { return *this; }
    const LAContour& GetLAContour() const { return *this; }
    // Number of consecutive closed-contour ancestors: 0 for a free contour or a solid of a complex
    // contour, 1 for a hole of a solid.
    int ClosedContourLevel() const;

protected:
    ProContour* parent = nullptr;  // not owning

    // The two owners set the back pointer when they take a child.
    friend class ProSolidContour;
    friend class ProComplexContour;
};

// A solid region: its own geometry is the outer boundary; its children are its holes.
class ProSolidContour : public ProClosedContour {
public:
    ProSolidContour() = default;
    explicit ProSolidContour(const LAContour& geometry) : ProClosedContour(geometry) {}
    // Copies take geometry and attribute: no children, no parent.
    ProSolidContour(const ProSolidContour& o) : ProClosedContour(o), attribute(o.attribute) {}
    // Replaces geometry and attribute; this node keeps its own children and parent.
    ProSolidContour& operator=(const ProSolidContour& o);
    // Deletes the holes one by one, then leaves the parent.
    ~ProSolidContour() override;

    ProContour* Duplicate() const override;
    unsigned long ChildrenCount() const override {
        return static_cast<unsigned long>(children.size());
    }
    void Accept(ProContourVisitor& v) override;
    ProContour* ContourChild(unsigned long i) const override;

    // The i-th hole, or null when i >= ChildrenCount().
    ProClosedContour* ClosedChild(unsigned long i) const;
    // Takes ownership of c and returns it. Null is returned unchanged; a child already held is left
    // where it is. Otherwise c leaves its former parent and is appended. A node cannot become its
    // own descendant: attaching this node or one of its ancestors is refused and returns null
    // (ownership stays where it was).
    ProClosedContour* Attach(ProClosedContour* c);
    ProSolidContour* SetLAContour(const LAContour& geometry);

    // Meaning chosen by clients; stored, copied and written as text here.
    std::int32_t attribute = 0;

protected:
    bool remove_child_reference(ProContour* child) override;

    std::vector<ProClosedContour*> children;  // owned, in insertion order
};

// A whole shape: a list of solids.
class ProComplexContour : public ProContour {
public:
    ProComplexContour() = default;
    // A complex contour owns a tree; a copy is made with Duplicate, never implicitly.
    ProComplexContour(const ProComplexContour&) = delete;
    ProComplexContour& operator=(const ProComplexContour&) = delete;
    // Deletes the solids.
    ~ProComplexContour() override;

    ProContour* Duplicate() const override;
    unsigned long ChildrenCount() const override {
        return static_cast<unsigned long>(children.size());
    }
    void Accept(ProContourVisitor& v) override;
    ProContour* ContourChild(unsigned long i) const override;

    // The i-th solid, or null when i >= ChildrenCount().
    ProSolidContour* SolidChild(unsigned long i) const;
    // Same rules as ProSolidContour::Attach.
    ProSolidContour* Attach(ProSolidContour* s);
    // Deletes every solid.
    void Clear();
    // Accept(v) on each solid in order.
    void VisitAll(ProContourVisitor& v);

protected:
    bool remove_child_reference(ProContour* child) override;

    std::vector<ProSolidContour*> children;  // owned, in insertion order
};

// The hole node: a closed contour made by ProContourFactory::CreateEmptyContour and written as "H".
class ProEmptyContour : public ProClosedContour {
public:
    using ProClosedContour::ProClosedContour;
    ProEmptyContour() = default;
    ProEmptyContour(const ProEmptyContour&) = default;
    ProEmptyContour& operator=(const ProEmptyContour&) = default;
    ~ProEmptyContour() override = default;

    ProContour* Duplicate() const override;
};

// Walks complex and solid contours. Derived visitors may add operations for their own node classes.
class ProContourVisitor {
public:
    virtual ~ProContourVisitor() = default;
    virtual void VisitComplexContour(ProComplexContour& c) = 0;
    virtual void VisitSolidContour(ProSolidContour& s) = 0;
};

// Creates default nodes owned by the caller (null when memory runs out). Clients with node classes
// of their own derive a factory.
class ProContourFactory {
public:
    virtual ~ProContourFactory() = default;
    virtual ProComplexContour* CreateComplexContour();
    virtual ProSolidContour* CreateSolidContour();
    virtual ProEmptyContour* CreateEmptyContour();
};

}  // namespace quillon
