// Memory for samples that are about to be written: growing it writes nothing beforehand.
#pragma once

#include <memory>
#include <new>
#include <vector>

namespace Tracelyn {

template <class T>
struct UninitializedAllocator : std::allocator<T> {
    // Elements that resize() adds keep whatever the memory held.
    void construct(T* at) { ::new (static_cast<void*>(at)) T; }
};

template <class T>
using UninitializedVector = std::vector<T, UninitializedAllocator<T>>;

} // namespace Tracelyn
