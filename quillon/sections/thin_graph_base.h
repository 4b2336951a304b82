// Planar graphs addressed by index: the class tree under the thin-walled wall graph.
//
// GraphBase is the read-only view the analysis walks (counts, edge ends); GraphBase2D adds the
// vertex coordinates. GraphContainer<V, E> owns the two lists, vertices then edges, where an
// element's index is its position; E must carry the int fields `begin` and `end`.
// Graph<V, E> joins the view to the container. All queries are plain accessors over the lists;
// an index outside its list answers -1 (edge ends) or the point (0, 0) (vertices) and never
// throws.
#pragma once

#include <cstddef>

#include "quillon/geometry/plane/mvector.h"
#include "quillon/geometry/plane/plane_types.h"

namespace quillon {

class GraphBase {
public:
    virtual ~GraphBase() = default;

    virtual int VertexCount() const = 0;
    virtual int EdgeCount() const = 0;
    virtual int getBegin(int edge) const = 0;
    virtual int getEnd(int edge) const = 0;
};

class GraphBase2D : public GraphBase {
public:
    virtual Point2 getVertex(int vertex) const = 0;
};

template <class V, class E>
class GraphContainer {
public:
    Mvector<V> vertices;
    Mvector<E> edges;

    virtual ~GraphContainer() = default;

    virtual int VCount() const { return static_cast<int>(vertices.size()); }
    virtual int ECount() const { return static_cast<int>(edges.size()); }
    virtual int getB(int edge) const { return HasEdge(edge) ? edges[Index(edge)].begin : -1; }
    virtual int getE(int edge) const { return HasEdge(edge) ? edges[Index(edge)].end : -1; }
    virtual void Clear() {
        vertices.clear();
        edges.clear();
    }

protected:
    bool HasVertex(int v) const { return v >= 0 && Index(v) < vertices.size(); }
    bool HasEdge(int e) const { return e >= 0 && Index(e) < edges.size(); }
    static std::size_t Index(int i) { return static_cast<std::size_t>(i); }
};

template <class V, class E>
class Graph : public GraphBase2D, public GraphContainer<V, E> {
public:
    int VertexCount() const override { return this->VCount(); }
    int EdgeCount() const override { return this->ECount(); }
    int getBegin(int edge) const override { return this->getB(edge); }
    int getEnd(int edge) const override { return this->getE(edge); }
    Point2 getVertex(int vertex) const override {
        return this->HasVertex(vertex) ? Point2(this->vertices[this->Index(vertex)]) : Point2();
    }
};

}  // namespace quillon
