// The bookkeeping the solver's two containment trees share: a node owns its children (in
// insertion order) and knows its parent; attaching a node takes it from its former parent first.
#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

namespace quillon {

template <typename Node>
class LAS_TreeNode {
public:
    LAS_TreeNode() = default;
    ~LAS_TreeNode() {
        for (Node* c : children) delete c;
    }
    LAS_TreeNode(const LAS_TreeNode&) = delete;
    LAS_TreeNode& operator=(const LAS_TreeNode&) = delete;

    int GetChildCount() const { return static_cast<int>(children.size()); }
    Node* GetChild(int i) const { return children[static_cast<std::size_t>(i)]; }
    Node* GetParent() const { return parent; }

    // Appends child here, taking it from its former parent.
    void Attach(Node* child) {
        if (child->parent != nullptr) child->parent->Detach(child);
        child->parent = static_cast<Node*>(this);
        children.push_back(child);
    }

protected:
    void Detach(Node* child) {
        const auto it = std::find(children.begin(), children.end(), child);
        if (it != children.end()) children.erase(it);
        child->parent = nullptr;
    }

    std::vector<Node*> children;  // owned
    Node* parent = nullptr;
};

}  // namespace quillon
