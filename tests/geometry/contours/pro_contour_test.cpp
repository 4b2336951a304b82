#include "quillon/geometry/contours/pro_contour.h"

#include <set>
#include <typeinfo>

#include "las_test_support.h"

namespace quillon {
namespace {

using namespace las_test;

using ProContourTree = LeakChecked;

LAContour Square(double x, double y, double size) { return RectContour(x, y, x + size, y + size); }

// Two solids with three holes: solid 0 at (0,0) size 10 with holes at (1,1) and (5,5); solid 1 at
// (20,0) size 4 with one hole. An arc edge in solid 1 makes the copies carry arc data too.
std::unique_ptr<ProComplexContour> BuildTree(ProContourFactory& f) {
    std::unique_ptr<ProComplexContour> complex(f.CreateComplexContour());
    ProSolidContour* s0 = complex->Attach(f.CreateSolidContour()->SetLAContour(Square(0, 0, 10)));
    s0->attribute = 7;
    s0->Attach(f.CreateEmptyContour()->SetLAContour(Square(1, 1, 2)));
    s0->Attach(f.CreateEmptyContour()->SetLAContour(Square(5, 5, 2)));
    LAContour outline = Square(20, 0, 4);
    outline.push_back(LAEdge(Point2(20, 4), Point2(20, 2), kPi));
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
    for (std::size_t i = 0; i < a.size(); ++i)
        if (a[i].type != b[i].type || a[i].start.distance(b[i].start) > 1e-12 ||
            a[i].centre.distance(b[i].centre) > 1e-12 || a[i].angle != b[i].angle)
            return false;
    return true;
}

TEST_F(ProContourTree, AttachMovesOwnershipAndKeepsOneParent) {
    ProContourFactory f;
    std::unique_ptr<ProSolidContour> a(f.CreateSolidContour()), b(f.CreateSolidContour());
    ProEmptyContour* hole = f.CreateEmptyContour();
    EXPECT_EQ(a->Attach(nullptr), nullptr);
    EXPECT_EQ(a->Attach(hole), hole);
    EXPECT_EQ(a->Attach(hole), hole);  // twice: still one entry
    EXPECT_EQ(a->ChildrenCount(), 1u);
    EXPECT_EQ(hole->ClosedContourLevel(), 1);
    EXPECT_EQ(a->ContourChild(0), hole);
    EXPECT_EQ(a->ClosedChild(1), nullptr);  // index equal to the count
    // Moving the hole to b takes it out of a.
    EXPECT_EQ(b->Attach(hole), hole);
    EXPECT_EQ(a->ChildrenCount(), 0u);
    EXPECT_EQ(hole->Parent(), b.get());
    // Solids move between complex contours the same way.
    std::unique_ptr<ProComplexContour> c1(f.CreateComplexContour()), c2(f.CreateComplexContour());
    ProSolidContour* s = c1->Attach(f.CreateSolidContour());
    EXPECT_EQ(c1->Attach(nullptr), nullptr);
    EXPECT_EQ(c1->Attach(s), s);  // twice: still one entry
    EXPECT_EQ(s->ClosedContourLevel(), 0);
    c2->Attach(s);
    EXPECT_EQ(c1->ChildrenCount(), 0u);
    EXPECT_EQ(c2->SolidChild(0), s);
    EXPECT_EQ(c2->SolidChild(1), nullptr);
    EXPECT_EQ(s->Parent(), c2.get());
    // A node never becomes its own descendant; a solid may stand as a hole of another.
    EXPECT_EQ(b->Attach(b.get()), nullptr);
    ProSolidContour* inner = f.CreateSolidContour();
    EXPECT_EQ(b->Attach(inner), inner);
    EXPECT_EQ(inner->Attach(b.get()), nullptr);
    EXPECT_EQ(b->Parent(), nullptr);
    EXPECT_EQ(inner->ChildrenCount(), 0u);
    // Detach hands the node back without deleting it.
    hole->Detach();
    EXPECT_EQ(hole->Parent(), nullptr);
    EXPECT_EQ(b->ChildrenCount(), 1u);
    hole->Detach();  // no parent: nothing happens
    delete hole;
    // For subclasses, unlisting answers whether the child was listed; a hole lists none.
    struct SolidUnlisting : ProSolidContour {
        using ProSolidContour::remove_child_reference;
    } holder;
    struct ComplexUnlisting : ProComplexContour {
        using ProComplexContour::remove_child_reference;
    } list;
    struct HoleUnlisting : ProEmptyContour {
        using ProEmptyContour::remove_child_reference;
    } leaf;
    ProClosedContour* listed = holder.Attach(f.CreateEmptyContour());
    ProSolidContour* solid = list.Attach(f.CreateSolidContour());
    EXPECT_TRUE(holder.remove_child_reference(listed) && list.remove_child_reference(solid));
    EXPECT_FALSE(holder.remove_child_reference(listed) || list.remove_child_reference(solid) ||
                 leaf.remove_child_reference(solid));
    delete listed;
    delete solid;
}

TEST_F(ProContourTree, AllocationCounterAfterEveryDestructionPath) {
    ProContourFactory f;
    {
        auto tree = BuildTree(f);
        EXPECT_EQ(ProContour::get_contour_allocs(), nodesBefore + 6);
        // A hole deleted directly leaves its solid's vector.
        ProSolidContour* s0 = tree->SolidChild(0);
        ProClosedContour* second = s0->ClosedChild(1);
        delete s0->ClosedChild(0);
        EXPECT_EQ(s0->ClosedChild(0), second);
        EXPECT_EQ(ProContour::get_contour_allocs(), nodesBefore + 5);
        // A solid deleted directly takes its holes with it and leaves the complex contour.
        ProSolidContour* s1 = tree->SolidChild(1);
        delete s0;
        EXPECT_EQ(tree->ChildrenCount(), 1u);
        EXPECT_EQ(tree->SolidChild(0), s1);
        EXPECT_EQ(ProContour::get_contour_allocs(), nodesBefore + 3);
        tree->Clear();
        EXPECT_EQ(tree->ChildrenCount(), 0u);
        EXPECT_EQ(ProContour::get_contour_allocs(), nodesBefore + 1);
    }
    {
        // Copies are nodes of their own, counted, with geometry and attribute but no links.
        auto tree = BuildTree(f);
        ProSolidContour* source = tree->SolidChild(0);
        ProSolidContour copy(*source);
        ProClosedContour closed(copy);
        EXPECT_EQ(ProContour::get_contour_allocs(), nodesBefore + 8);
        EXPECT_EQ(copy.attribute, 7);
        EXPECT_TRUE(copy.ChildrenCount() == 0 && copy.Parent() == nullptr);
        EXPECT_TRUE(SameEdges(closed, *source));
        copy.Attach(f.CreateEmptyContour());  // a stack solid still owns and deletes its holes
        // Assignment replaces geometry and attribute; the target keeps its own place and holes.
        ProSolidContour* target = tree->SolidChild(1);
        *target = *source;
        EXPECT_EQ(target->attribute, 7);
        EXPECT_TRUE(SameEdges(*target, *source));
        EXPECT_EQ(target->Parent(), tree.get());
        EXPECT_EQ(target->ChildrenCount(), 1u);
    }
}

// A client factory with its own hole class, as the solver has.
struct TaggedHole : ProEmptyContour {
    ProContour* Duplicate() const override { return new TaggedHole(*this); }
};
struct TaggingFactory : ProContourFactory {
    ProEmptyContour* CreateEmptyContour() override { return new TaggedHole(); }
};

TEST_F(ProContourTree, DuplicateIsADeepCopySharingNothing) {
    TaggingFactory f;
    auto tree = BuildTree(f);
    std::unique_ptr<ProContour> copy(tree->Duplicate());
    EXPECT_EQ(ProContour::get_contour_allocs(), nodesBefore + 12);
    std::vector<const ProContour*> a, b;
    CollectNodes(tree.get(), a);
    CollectNodes(copy.get(), b);
    ASSERT_EQ(a.size(), b.size());
    std::set<const ProContour*> original(a.begin(), a.end());
    for (std::size_t i = 0; i < b.size(); ++i) {
        EXPECT_EQ(original.count(b[i]), 0u);
        const ProContour &na = *a[i], &nb = *b[i];
        EXPECT_EQ(typeid(na), typeid(nb));  // holes stay (tagged) holes, solids solids
        EXPECT_EQ(a[i]->ChildrenCount(), b[i]->ChildrenCount());
        if (auto* ca = dynamic_cast<const ProClosedContour*>(a[i])) {
            EXPECT_TRUE(SameEdges(*ca, *dynamic_cast<const ProClosedContour*>(b[i])));
            EXPECT_EQ(ca->ClosedContourLevel(),
                      dynamic_cast<const ProClosedContour*>(b[i])->ClosedContourLevel());
        }
        if (auto* sa = dynamic_cast<const ProSolidContour*>(a[i])) {
            EXPECT_EQ(sa->attribute, dynamic_cast<const ProSolidContour*>(b[i])->attribute);
        }
        for (unsigned long k = 0; k < b[i]->ChildrenCount(); ++k)  // children point to the copy
            EXPECT_EQ(b[i]->ContourChild(k)->Parent(), b[i]);
    }
    EXPECT_EQ(copy->Parent(), nullptr);
    // A duplicated hole is free: no parent.
    std::unique_ptr<ProContour> hole(tree->SolidChild(0)->ClosedChild(0)->Duplicate());
    EXPECT_EQ(hole->Parent(), nullptr);
    // Changing the copy leaves the source alone.
    copy->Move(Vector2(100, 0));
    EXPECT_EQ(tree->SolidChild(0)->front().start.x, 0.0);
}

TEST_F(ProContourTree, BoundRectAndMotionsCoverTheWholeTree) {
    ProContourFactory f;
    EXPECT_FALSE(ProComplexContour().GetBoundRect().is_valid());
    auto tree = BuildTree(f);
    const BoundRect2 box = tree->GetBoundRect();
    EXPECT_EQ(box.get_LB().distance({0, 0}) + box.get_RT().distance({24, 10}), 0.0);
    const BoundRect2 holeBox = tree->SolidChild(0)->ClosedChild(1)->GetBoundRect();
    EXPECT_EQ(holeBox.get_LB().distance({5, 5}) + holeBox.get_RT().distance({7, 7}), 0.0);
    // Each motion of the tree equals the same motion of every closed contour on its own.
    std::vector<LAContour> expected;
    std::vector<const ProContour*> nodes;
    CollectNodes(tree.get(), nodes);
    const Rotate2 r(0.7);
    const Isometry2 t(Rotate2(-1.1), Translate2(3, -4));
    const Vector2 v(2.5, -1.25);
    for (const ProContour* n : nodes)
        if (auto* c = dynamic_cast<const ProClosedContour*>(n)) {
            expected.push_back(*c);
            expected.back().move(v);
            expected.back().rotate(r);
            expected.back().transform(t);
        }
    tree->Move(v);
    tree->Rotate(r);
    tree->Transform(t);
    std::size_t k = 0;
    for (const ProContour* n : nodes)
        if (auto* c = dynamic_cast<const ProClosedContour*>(n)) {
            EXPECT_TRUE(SameEdges(*c, expected[k++]));
        }
    EXPECT_EQ(k, 5u);  // two solids, three holes
}

TEST_F(ProContourTree, VisitorReachesComplexAndSolidsOnly) {
    struct Recording : ProContourVisitor {
        std::vector<std::int32_t> seen;  // attributes of the solids, 1000 for the complex contour
        void VisitComplexContour(ProComplexContour&) override { seen.push_back(1000); }
        void VisitSolidContour(ProSolidContour& s) override { seen.push_back(s.attribute); }
    } v;
    ProContourFactory f;
    auto tree = BuildTree(f);
    (*tree)(v);
    tree->SolidChild(0)->ClosedChild(0)->Accept(v);  // a plain hole has no visit
    tree->VisitAll(v);
    EXPECT_EQ(v.seen, (std::vector<std::int32_t>{1000, 7, -3}));
}

}  // namespace
}  // namespace quillon
