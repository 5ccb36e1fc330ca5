// Memory that runs out anywhere in the viewer is reported before the exception goes its way.
#include "support/Assertion.h"

#include <cstdlib>
#include <new>

void* operator new(std::size_t size) {
    return support::Allocate(size);
}

void operator delete(void* memory) noexcept {
    std::free(memory);
}

void operator delete(void* memory, std::size_t /*size*/) noexcept {
    std::free(memory);
}
