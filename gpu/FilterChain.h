#pragma once
// Owns the nodes of one chain for the length of one image operation and releases their GL objects
// when it goes, with the context held, so that no path through an operation leaks a texture.

#include "gpu/GPUImageOutput.h"

#include <memory>
#include <vector>

class FilterChain
{
public:
    FilterChain() = default;
    ~FilterChain();
    FilterChain(const FilterChain&) = delete;
    FilterChain& operator=(const FilterChain&) = delete;

    /** Takes ownership of a node and returns it for wiring. */
    template <typename Node>
    Node* add(Node* node)
    {
        nodes.push_back(node);
        return node;
    }

    template <typename Node, typename... Args>
    Node* make(Args&&... args)
    {
        return add(new Node(std::forward<Args>(args)...));
    }

    /** Connects the nodes in the order given, each to the next one's first free input. */
    static void wire(std::initializer_list<GPUImageOutput*> sequence);

    /** Destroys and deletes every node now (the destructor does it otherwise). */
    void release();

private:
    std::vector<GPUImageOutput*> nodes;
};
