// A node of the contour solver's graph: one distinct point and the elements that meet there,
// kept in clockwise order of the direction in which they leave the node.
//
// Clock angles are measured clockwise from +y (12 o'clock) in [0, 2π). Elements leaving along the
// same tangent are ordered by which way they turn and by radius (see IsNextClockWise). The order
// is fixed when an element is connected and never re-sorted.
//
// Walks: a contour walk takes, at every node, the counter-clockwise neighbour of the element it
// arrived by (the rightmost turn), so it traces the face on its right; bounded faces come out
// clockwise and the unbounded outer face, traced counter-clockwise, is refused by the angle test.
// A walk that reaches a node it has already passed (other than its start) fails.
#pragma once

#include <cstdint>
#include <vector>

#include "quillon/geometry/contours/pro_contour.h"
#include "quillon/geometry/plane/la_contour.h"
#include "quillon/geometry/plane/plane_types.h"

namespace quillon {

class LAS_Solver;
class LAS_Element;
class LAS_Arc;
class LAS_FoundContour;

class LAS_NodeInfo {
public:
    enum ArcOrient { ArcOrientNone = 0, ArcOrientClockwise = 1, ArcOrientCounterClockwise = 2 };

    LAS_NodeInfo(const Point2& p, LAS_Solver* owner);
    LAS_NodeInfo(const LAS_NodeInfo&) = delete;
    LAS_NodeInfo& operator=(const LAS_NodeInfo&) = delete;

    const Point2& GetPoint() const { return point; }
    // This node's index in the solver's node list (-1 when it is not listed).
    int GetSelfIndex() const;
    int GetElemCount() const { return static_cast<int>(elements.size()); }
    // The i-th connected element in clockwise order (null out of range).
    LAS_Element* GetElem(int i) const;
    // Elements whose half-edge leaving this node is not used yet.
    int GetUnUsedElemCount() const;

    // Inserts e before the first element that e does not follow clockwise (appends otherwise).
    void ConnectElement(LAS_Element* e);
    void DisconnectElement(LAS_Element* e);
    // Position of e in the list, or -1.
    int IsElementConnected(LAS_Element* e) const;

    // Index of e's end that is not this node.
    int GetElementSecondEnd(LAS_Element* e) const;
    Point2 GetElementTangentialPoint(LAS_Element* e) const;

    double GetClockAngle(LAS_Element* e) const;
    double GetClockAngle(const Point2& p) const;
    // From an angle in [0, 2π) counted from +x: π/2 - a for a in [0, π/2], else 5π/2 - a.
    double GetClockAngle(double a) const;

    // True when b follows a in clockwise order round this node. Equal clock angles (within
    // 1e-11 rad, the noise of the tangent construction, and with the tangential points no farther
    // than epsilon from each other's direction) are tangent ties, decided by turning side
    // and radius: after a line comes what does not turn counter-clockwise; after an arc turning
    // counter-clockwise comes a line; of two arcs, one turning clockwise comes after one turning
    // counter-clockwise, two counter-clockwise ones by increasing radius, two clockwise ones by
    // decreasing radius (equal radii: b follows a).
    bool IsNextClockWise(LAS_Element* a, LAS_Element* b) const;

    // The neighbour of e going clockwise (Next) or counter-clockwise (Prev) with wrap-around,
    // skipping elements whose half-edge from this node is used (skipUsed) or that already belong
    // to a contour or polyline (skipCounted); null when e is not connected or none qualifies.
    LAS_Element* GetNextClockWise(LAS_Element* e, int skipUsed, int skipCounted) const;
    LAS_Element* GetPrevClockWise(LAS_Element* e, int skipUsed, int skipCounted) const;

    // Clockwise angle from a to b, in [0, 2π): on the tangential points (GetClockWiseAngle), on
    // the arcs' middle points (Ex), or on the chords (Line).
    double GetClockWiseAngle(LAS_Element* a, LAS_Element* b) const;
    double GetClockWiseAngleEx(LAS_Element* a, LAS_Element* b) const;
    double GetClockWiseAngleLine(LAS_Element* a, LAS_Element* b) const;
    // An arc leaving this node counts as a vertex at its middle point: its inner angles go to the
    // right-hand and left-hand sums. Lines add nothing.
    void AddWalkAngle(LAS_Element* e, double& right, double& left) const;

    // Starts a walk along every element whose half-edge from here is unused. With makeClosed each
    // bounded face becomes a new closed contour appended to `closed`; without it, an LAS_Contour
    // appended to the solver's base contours. The LAContour list is not written. Returns the
    // number of contours made.
    int FindContours(ProContourFactory* factory, std::vector<ProClosedContour*>& closed,
                     std::vector<LAContour*>& lists, int makeClosed);
    // 1 when the walk starting along e from this node closes, else 0.
    int FindContour(LAS_Element* e, LAS_FoundContour* found);
    int GetNextRightContourEdge(LAS_Element* e, LAS_FoundContour* found);

    // Chains of elements that belong to no contour, as open polylines appended to `out`.
    int FindPolylines(std::vector<LAContour*>& out);
    int FindPolyline(LAS_Element* e, LAS_FoundContour* found);
    int GetNextPolylineEdge(LAS_Element* e, LAS_FoundContour* found);

    // Kept for callers that ask; every arc answers ArcOrientNone.
    ArcOrient GetArcOrient(LAS_Arc*) const { return ArcOrientNone; }

private:
    friend class LAS_Solver;
    friend class LAS_FoundContour;

    LAS_NodeInfo* FarNode(LAS_Element* e) const;
    // The shared walk of GetNextClockWise (direction 1) and GetPrevClockWise (-1).
    LAS_Element* Neighbour(LAS_Element* e, int direction, int skipUsed, int skipCounted) const;

    Point2 point;
    LAS_Solver* solver;
    std::vector<LAS_Element*> elements;  // not owned, clockwise
    int index = -1;                      // position in the solver's list, kept by the solver
    std::uint64_t walkMark = 0;          // id of the last walk that passed here
};

}  // namespace quillon
