// Elements of the contour solver's graph: a straight line or a circular arc between two nodes.
//
// Elements address their nodes by index into the owning solver's node list and reach points
// through it. Each end carries a "used" flag: the half-edge leaving that end has become part of a
// found contour. The use count says in how many contours or polylines the element takes part.
// Arcs keep their centre as a node of its own and a signed sweep (positive: counter-clockwise from
// the begin node to the end node).
#pragma once

#include <cstdint>
#include <vector>

#include "quillon/geometry/contours/las_box_grid.h"
#include "quillon/geometry/contours/solver_curve.h"
#include "quillon/geometry/plane/plane_types.h"

namespace quillon {

class LAS_Solver;

class LAS_Element {
public:
    enum Type { Line = 0, Arc = 1 };

    LAS_Element(int beginIndex, int endIndex, Type elementType, LAS_Solver* owner);
    virtual ~LAS_Element() = default;
    LAS_Element(const LAS_Element&) = delete;
    LAS_Element& operator=(const LAS_Element&) = delete;

    // Contact points with another element (see Solver2d's crossing operations); the base has none.
    // `points` is cleared first; the result is its size. The last argument is not used.
    virtual int Cross(LAS_Element* other, std::vector<Point2>& points, int reserve = 4);
    // True when p equals the begin or the end point within the solver's epsilon.
    virtual bool IsOnEnd(const Point2& p);
    // A point giving the direction in which the element leaves the node at its end opposite to
    // `otherEndIndex`; (0, 0) for the base.
    virtual Point2 GetTangential(int otherEndIndex);
    // Curvature data for ordering elements that leave a node along one tangent; (0, 0) for the
    // base, which leaves the outputs alone.
    virtual Point2 GetPointInfo(int otherEndIndex, double& radius, int& side);

    int GetBegin() const { return begin; }
    int GetEnd() const { return end; }
    Type GetType() const { return type; }
    Point2 GetBeginPoint() const;
    Point2 GetEndPoint() const;
    LAS_Solver* GetSolver() const { return solver; }

    // Marks the half-edge leaving the end with that node index (both ends when both have it; an
    // index that is neither end changes nothing).
    void SetUsed(int nodeIndex);
    // The used flag of the end with that index (begin tested first); 0 for any other index.
    int IsUsed(int nodeIndex) const;
    void NotifyUsed() { ++useCount; }
    int GetUseCount() const { return useCount; }

    // The element as a curve between its node points, the form in which Solver2d is asked.
    virtual SolverCurve GetCurve() const;

protected:
    // The contacts of the two elements' curves, through the solver's Solver2d: the shared body of
    // the line's and the arc's Cross.
    int CrossCurves(const LAS_Element* other, std::vector<Point2>& points) const;

    LAS_Solver* solver;
    Type type;
    int begin;
    int end;
    int usedAtBegin = 0;
    int usedAtEnd = 0;
    int useCount = 0;

private:
    friend class LAS_Solver;
    friend class LAS_NodeInfo;

    std::uint64_t serial = 0;  // creation order: the element list is always sorted by it
    las_index::Box box;        // Solver2d::ContactBox of the element, set when listed
    // Half-edges known to start a walk round the unbounded face (bit 0 leaving begin, bit 1
    // leaving end): such a walk closes on the same cycle from any of its half-edges, so it need
    // not be traced again.
    unsigned char rejectedWalk = 0;
    LAS_Element* sameEnds = nullptr;  // next listed element with the same two end nodes
};

class LAS_Line : public LAS_Element {
public:
    LAS_Line(int beginIndex, int endIndex, LAS_Solver* owner);

    void GetLine(Sector2& s) const;
    // Same two nodes, in either direction.
    bool operator==(const LAS_Line& o) const;

    Point2 GetTangential(int otherEndIndex) override;
    // The point of node i; side 1, radius 0.
    Point2 GetPointInfo(int otherEndIndex, double& radius, int& side) override;
    int Cross(LAS_Element* other, std::vector<Point2>& points, int reserve = 4) override;
    // Splits at p through Solver2d::SplitLine; 1 only when that gave two pieces.
    int Split(const Point2& p, Sector2& a, Sector2& b) const;
};

class LAS_Arc : public LAS_Element {
public:
    LAS_Arc(int beginIndex, int endIndex, int centreIndex, double sweepAngle, LAS_Solver* owner);
    // The arc from begin to end through the given middle point. The sweep is 4·atan2(2h, c)
    // (c the chord, h the sagitta), never negative; the centre is the crossing of the circles of
    // radius R about begin and end (found with a tolerance of 0.0001), the one whose distance to
    // the middle point is nearest R, and is added to the solver as a node. When the circles do not
    // meet the centre index stays -1 and the arc must not be used.
    LAS_Arc(int beginIndex, int endIndex, int middleIndex, LAS_Solver* owner);

    int GetCenter() const { return center; }
    double GetSweep() const { return sweep; }
    Point2 GetCenterPoint() const;
    // Centre, begin angle and stored sweep; radius |centre - begin|.
    void GetArc(Arc2& a) const;
    // Same centre node and either the same ends with sweeps within 0.0001, or swapped ends with
    // opposite sweeps within 0.0001.
    bool operator==(const LAS_Arc& o) const;

    // The crossing of the tangent at this node with the ray from the centre turned by π/6 the way
    // the arc leaves the node: a point ahead on the arc's tangent.
    Point2 GetTangential(int otherEndIndex) override;
    // The centre; radius |centre - node|; side 1 when the arc, leaving the node opposite
    // `otherEndIndex`, turns counter-clockwise.
    Point2 GetPointInfo(int otherEndIndex, double& radius, int& side) override;
    int Cross(LAS_Element* other, std::vector<Point2>& points, int reserve = 4) override;
    int Split(const Point2& p, Arc2& a, Arc2& b) const;

    SolverCurve GetCurve() const override;

protected:
    int center = -1;
    double sweep = 0.0;
};

}  // namespace quillon
