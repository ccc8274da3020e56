// CList: a list of values with positions.
#pragma once

#include <windows.h>

#include <deque>

struct __POSITION;
/// A place in a list; null is no place.
using POSITION = __POSITION*;

template <class TYPE, class ARG_TYPE = const TYPE&> class CList {
public:
    CList() = default;
    CList(const CList&) = delete;
    CList& operator=(const CList&) = delete;

    INT_PTR GetCount() const { return static_cast<INT_PTR>(nodes.size()); }
    BOOL IsEmpty() const { return nodes.empty(); }

    /// Appends the value and tells where it is.
    POSITION AddTail(ARG_TYPE newElement) {
        Node* last = nodes.empty() ? nullptr : &nodes.back();
        nodes.push_back({newElement, nullptr});
        if (last)
            last->next = &nodes.back();
        return positionOf(nodes.back());
    }

    POSITION GetHeadPosition() const { return nodes.empty() ? nullptr : positionOf(nodes.front()); }
    /// The value at the position, which moves on to the next one.
    const TYPE& GetNext(POSITION& rPosition) const {
        const Node* node = reinterpret_cast<const Node*>(rPosition);
        rPosition = node->next ? positionOf(*node->next) : nullptr;
        return node->value;
    }
    /// Where the first equal value is, or null.
    POSITION Find(ARG_TYPE searchValue) const {
        for (const Node& node : nodes)
            if (node.value == searchValue)
                return positionOf(node);
        return nullptr;
    }

private:
    struct Node {
        TYPE value;
        Node* next;
    };

    static POSITION positionOf(const Node& node) {
        return reinterpret_cast<POSITION>(const_cast<Node*>(&node));
    }

    // A deque never moves its elements when one is appended, so positions stay valid.
    std::deque<Node> nodes;
};
