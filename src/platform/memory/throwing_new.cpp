// mimalloc ends the program where its `operator new` finds no memory, and offers no handler that
// could throw. With these, one mail that is too much costs that mail and not the program.

#include <cstdlib>
#include <new>

namespace {

void *or_throw(void *memory)
{
    if (!memory)
        throw std::bad_alloc();
    return memory;
}

void *aligned(std::size_t size, std::align_val_t alignment)
{
    return or_throw(std::aligned_alloc(static_cast<std::size_t>(alignment), size));
}

} // namespace

void *operator new(std::size_t size)
{
    return or_throw(std::malloc(size));
}

void *operator new[](std::size_t size)
{
    return or_throw(std::malloc(size));
}

void *operator new(std::size_t size, std::align_val_t alignment)
{
    return aligned(size, alignment);
}

void *operator new[](std::size_t size, std::align_val_t alignment)
{
    return aligned(size, alignment);
}
