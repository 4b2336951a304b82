#include "quillon/geometry/contours/pro_contour.h"

#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <set>
#include <typeinfo>
#include <vector>

namespace quillon {
namespace {

LAContour Square(double x, double y, double size) {
    LAContour c;
    for (const Point2& p :
         {Point2(x, y), Point2(x + size, y), Point2(x + size, y + size), Point2(x, y + size)})
        c.push_back(LAEdge(p));
    return c;
}

// Two solids with three holes: solid 0 at (0,0) size 10 with holes at (1,1) and (5,5); solid 1 at
// (20,0) size 4 with one hole. An arc edge in solid 1 makes the copies carry arc data too.
std::unique_ptr<ProComplexContour> BuildTree(ProContourFactory& f) {
    std::unique_ptr<ProComplexContour> complex(f.CreateComplexContour());
    ProSolidContour* s0 = complex->Attach(f.CreateSolidContour()->SetLAContour(Square(0, 0, 10)));
    s0->attribute = 7;
    s0->Attach(f.CreateEmptyContour()->SetLAContour(Square(1, 1, 2)));
    s0->Attach(f.CreateEmptyContour()->SetLAContour(Square(5, 5, 2)));
    LAContour outline = Square(20, 0, 4);
    outline.push_back(LAEdge(Point2(20, 4), Point2(20, 2), 3.141592653589793));
    ProSolidContour* s1 = complex->Attach(f.CreateSolidContour()->SetLAContour(outline));
    s1->attribute = -3;
    s1->Attach(f.CreateEmptyContour()->SetLAContour(Square(21, 1, 1)));
    return complex;
}

void CollectNodes(const ProContour* node, std::vector<const ProContour*>& out) {
    out.push_back(node);
    for (unsigned long i = 0; i < node->ChildrenCount(); ++i)
        CollectNodes(node->ContourChild(i), out);
}

bool SameEdges(const LAContour& a, const LAContour& b) {
    if (a.size() != b.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i) {
        if (a[i].type != b[i].type || a[i].start.distance(b[i].start) > 1e-12 ||
            (a[i].type == 1 &&
             (a[i].centre.distance(b[i].centre) > 1e-12 || a[i].angle != b[i].angle)))
            return false;
    }
    return true;
}

TEST(ProContour, AttachMovesOwnershipAndKeepsOneParent) {
    const int before = ProContour::get_contour_allocs();
    {
        ProContourFactory f;
        std::unique_ptr<ProSolidContour> a(f.CreateSolidContour());
        std::unique_ptr<ProSolidContour> b(f.CreateSolidContour());
        ProEmptyContour* hole = f.CreateEmptyContour();

        EXPECT_EQ(a->Attach(nullptr), nullptr);
        EXPECT_EQ(a->Attach(hole), hole);
        EXPECT_EQ(a->Attach(hole), hole);  // twice: still one entry
        EXPECT_EQ(a->ChildrenCount(), 1u);
        EXPECT_EQ(hole->Parent(), a.get());
        EXPECT_EQ(hole->ClosedContourLevel(), 1);
        EXPECT_EQ(a->ClosedChild(0), hole);
        EXPECT_EQ(a->ContourChild(0), hole);
        EXPECT_EQ(a->ClosedChild(1), nullptr);  // index equal to the count
        EXPECT_EQ(a->ContourChild(99), nullptr);

        // Moving the hole to b takes it out of a.
        EXPECT_EQ(b->Attach(hole), hole);
        EXPECT_EQ(a->ChildrenCount(), 0u);
        EXPECT_EQ(b->ChildrenCount(), 1u);
        EXPECT_EQ(hole->Parent(), b.get());

        // Solids move between complex contours the same way.
        std::unique_ptr<ProComplexContour> c1(f.CreateComplexContour());
        std::unique_ptr<ProComplexContour> c2(f.CreateComplexContour());
        ProSolidContour* s = c1->Attach(f.CreateSolidContour());
        EXPECT_EQ(c1->Attach(s), s);
        EXPECT_EQ(c1->ChildrenCount(), 1u);
        EXPECT_EQ(s->ClosedContourLevel(), 0);
        c2->Attach(s);
        EXPECT_EQ(c1->ChildrenCount(), 0u);
        EXPECT_EQ(c2->SolidChild(0), s);
        EXPECT_EQ(c2->SolidChild(1), nullptr);
        EXPECT_EQ(s->Parent(), c2.get());
        EXPECT_EQ(c1->Attach(nullptr), nullptr);

        // A node never becomes its own descendant.
        EXPECT_EQ(b->Attach(b.get()), nullptr);
        ProSolidContour* inner = f.CreateSolidContour()->SetLAContour(Square(0, 0, 1));
        EXPECT_EQ(b->Attach(inner), inner);  // a solid may stand as a hole of another
        EXPECT_EQ(inner->Parent(), b.get());
        EXPECT_EQ(inner->Attach(b.get()), nullptr);
        EXPECT_EQ(b->Parent(), nullptr);
        EXPECT_EQ(inner->ChildrenCount(), 0u);

        // Detach hands the node back without deleting it.
        hole->Detach();
        EXPECT_EQ(hole->Parent(), nullptr);
        EXPECT_EQ(b->ChildrenCount(), 1u);
        hole->Detach();  // no parent: nothing happens
        delete hole;
        // For subclasses, unlisting answers whether the child was listed.
        struct Unlisting : ProSolidContour {
            using ProSolidContour::remove_child_reference;
        } holder;
        ProClosedContour* listed = holder.Attach(f.CreateEmptyContour());
        EXPECT_TRUE(holder.remove_child_reference(listed));
        EXPECT_FALSE(holder.remove_child_reference(listed));
        delete listed;
        s->Detach();
        EXPECT_EQ(c2->ChildrenCount(), 0u);
        delete s;
    }
    EXPECT_EQ(ProContour::get_contour_allocs(), before);
}

TEST(ProContour, AllocationCounterAfterEveryDestructionPath) {
    const int before = ProContour::get_contour_allocs();
    ProContourFactory f;
    {
        auto tree = BuildTree(f);
        EXPECT_EQ(ProContour::get_contour_allocs(), before + 6);

        // A hole deleted directly leaves its solid's vector.
        ProSolidContour* s0 = tree->SolidChild(0);
        ProClosedContour* first = s0->ClosedChild(0);
        ProClosedContour* second = s0->ClosedChild(1);
        delete first;
        EXPECT_EQ(s0->ChildrenCount(), 1u);
        EXPECT_EQ(s0->ClosedChild(0), second);
        EXPECT_EQ(ProContour::get_contour_allocs(), before + 5);

        // A solid deleted directly takes its holes with it and leaves the complex contour.
        ProSolidContour* s1 = tree->SolidChild(1);
        delete s0;
        EXPECT_EQ(tree->ChildrenCount(), 1u);
        EXPECT_EQ(tree->SolidChild(0), s1);
        EXPECT_EQ(ProContour::get_contour_allocs(), before + 3);

        tree->Clear();
        EXPECT_EQ(tree->ChildrenCount(), 0u);
        EXPECT_EQ(ProContour::get_contour_allocs(), before + 1);
    }
    EXPECT_EQ(ProContour::get_contour_allocs(), before);

    { auto tree = BuildTree(f); }  // the whole tree through the complex contour's destructor
    EXPECT_EQ(ProContour::get_contour_allocs(), before);

    {
        // Copies are nodes of their own and are counted.
        ProSolidContour solid(Square(0, 0, 1));
        ProSolidContour copy(solid);
        ProClosedContour closed(copy);
        EXPECT_EQ(ProContour::get_contour_allocs(), before + 3);
        ProEmptyContour* hole = f.CreateEmptyContour();
        solid.Attach(hole);  // a stack solid still owns and deletes its holes
    }
    EXPECT_EQ(ProContour::get_contour_allocs(), before);
}

// A client factory with its own hole class, as the solver has.
struct TaggedHole : ProEmptyContour {
    ProContour* Duplicate() const override { return new TaggedHole(*this); }
};
struct TaggingFactory : ProContourFactory {
    ProEmptyContour* CreateEmptyContour() override { return new TaggedHole(); }
};

TEST(ProContour, DuplicateIsADeepCopySharingNothing) {
    const int before = ProContour::get_contour_allocs();
    TaggingFactory f;
    auto tree = BuildTree(f);
    std::unique_ptr<ProContour> copy(tree->Duplicate());
    EXPECT_EQ(ProContour::get_contour_allocs(), before + 12);

    std::vector<const ProContour*> a, b;
    CollectNodes(tree.get(), a);
    CollectNodes(copy.get(), b);
    ASSERT_EQ(a.size(), b.size());
    std::set<const ProContour*> original(a.begin(), a.end());
    for (std::size_t i = 0; i < b.size(); ++i) {
        EXPECT_EQ(original.count(b[i]), 0u);
        const ProContour& na = *a[i];
        const ProContour& nb = *b[i];
        EXPECT_EQ(typeid(na), typeid(nb));  // holes stay (tagged) holes, solids solids
        EXPECT_EQ(a[i]->ChildrenCount(), b[i]->ChildrenCount());
        auto* ca = dynamic_cast<const ProClosedContour*>(a[i]);
        auto* cb = dynamic_cast<const ProClosedContour*>(b[i]);
        ASSERT_EQ(ca == nullptr, cb == nullptr);
        if (ca != nullptr) {
            EXPECT_TRUE(SameEdges(*ca, *cb));
            EXPECT_EQ(ca->ClosedContourLevel(), cb->ClosedContourLevel());
        }
        auto* sa = dynamic_cast<const ProSolidContour*>(a[i]);
        if (sa != nullptr) {
            EXPECT_EQ(sa->attribute, dynamic_cast<const ProSolidContour*>(b[i])->attribute);
        }
        // Children of the copy point back into the copy.
        for (unsigned long k = 0; k < b[i]->ChildrenCount(); ++k)
            EXPECT_EQ(b[i]->ContourChild(k)->Parent(), b[i]);
    }
    EXPECT_EQ(copy->Parent(), nullptr);

    // A duplicated hole or solid is free: no parent.
    std::unique_ptr<ProContour> hole(tree->SolidChild(0)->ClosedChild(0)->Duplicate());
    EXPECT_EQ(hole->Parent(), nullptr);
    EXPECT_NE(dynamic_cast<TaggedHole*>(hole.get()), nullptr);

    // Changing the copy leaves the source alone.
    copy->Move(Vector2(100, 0));
    EXPECT_EQ(tree->SolidChild(0)->front().start.x, 0.0);
    tree.reset();
    hole.reset();
    copy.reset();
    EXPECT_EQ(ProContour::get_contour_allocs(), before);
}

TEST(ProContour, CopiesTakeGeometryAndAttributeButNoLinks) {
    ProContourFactory f;
    auto tree = BuildTree(f);
    ProSolidContour* source = tree->SolidChild(0);

    ProSolidContour copy(*source);
    EXPECT_EQ(copy.attribute, 7);
    EXPECT_EQ(copy.ChildrenCount(), 0u);
    EXPECT_EQ(copy.Parent(), nullptr);
    EXPECT_TRUE(SameEdges(copy, *source));

    ProClosedContour closed(*source->ClosedChild(0));
    EXPECT_EQ(closed.Parent(), nullptr);
    EXPECT_TRUE(SameEdges(closed, *source->ClosedChild(0)));

    // Assignment replaces geometry and attribute; the target keeps its own place and holes.
    ProSolidContour* target = tree->SolidChild(1);
    *target = *source;
    EXPECT_EQ(target->attribute, 7);
    EXPECT_TRUE(SameEdges(*target, *source));
    EXPECT_EQ(target->Parent(), tree.get());
    EXPECT_EQ(target->ChildrenCount(), 1u);
    EXPECT_EQ(source->ChildrenCount(), 2u);
}

TEST(ProContour, BoundRectAndMotionsCoverTheWholeTree) {
    ProContourFactory f;
    std::unique_ptr<ProComplexContour> empty(f.CreateComplexContour());
    EXPECT_FALSE(empty->GetBoundRect().is_valid());

    auto tree = BuildTree(f);
    BoundRect2 solids;
    for (unsigned long i = 0; i < tree->ChildrenCount(); ++i)
        solids += tree->SolidChild(i)->get_bound_rect();
    const BoundRect2 box = tree->GetBoundRect();
    ASSERT_TRUE(box.is_valid());
    EXPECT_EQ(box.get_LB().distance(solids.get_LB()) + box.get_RT().distance(solids.get_RT()), 0.0);
    // A hole alone gives its own rectangle.
    const BoundRect2 holeBox = tree->SolidChild(0)->ClosedChild(1)->GetBoundRect();
    EXPECT_EQ(holeBox.get_LB().distance({5, 5}) + holeBox.get_RT().distance({7, 7}), 0.0);

    // Each motion of the tree equals the same motion of every closed contour on its own.
    std::vector<LAContour> expected;
    std::vector<const ProContour*> nodes;
    CollectNodes(tree.get(), nodes);
    const Rotate2 r(0.7);
    const Isometry2 t(Rotate2(-1.1), Translate2(3, -4));
    const Vector2 v(2.5, -1.25);
    for (const ProContour* n : nodes) {
        if (auto* c = dynamic_cast<const ProClosedContour*>(n)) {
            LAContour g = *c;
            g.move(v);
            g.rotate(r);
            g.transform(t);
            expected.push_back(g);
        }
    }
    tree->Move(v);
    tree->Rotate(r);
    tree->Transform(t);
    std::size_t k = 0;
    for (const ProContour* n : nodes) {
        if (auto* c = dynamic_cast<const ProClosedContour*>(n)) {
            ASSERT_LT(k, expected.size());
            EXPECT_TRUE(SameEdges(*c, expected[k++]));
        }
    }
    EXPECT_EQ(k, 5u);  // two solids, three holes
}

struct CountingVisitor : ProContourVisitor {
    int complexes = 0;
    std::vector<std::int32_t> solids;
    void VisitComplexContour(ProComplexContour&) override { ++complexes; }
    void VisitSolidContour(ProSolidContour& s) override { solids.push_back(s.attribute); }
};

TEST(ProContour, VisitorReachesComplexAndSolidsOnly) {
    ProContourFactory f;
    auto tree = BuildTree(f);
    CountingVisitor v;
    (*tree)(v);
    EXPECT_EQ(v.complexes, 1);
    EXPECT_TRUE(v.solids.empty());
    tree->VisitAll(v);
    EXPECT_EQ(v.solids, (std::vector<std::int32_t>{7, -3}));
    tree->SolidChild(0)->ClosedChild(0)->Accept(v);  // a plain hole has no visit
    EXPECT_EQ(v.complexes, 1);
    EXPECT_EQ(v.solids.size(), 2u);
}

}  // namespace
}  // namespace quillon
