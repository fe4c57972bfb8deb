#pragma once

#include <atomic>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <sanitizer/allocator_interface.h>

/// Aborts when what is allocated grows by more than the bound: ten times the input and a little, which is
/// what reading a file may take.
class MemoryWatch {
public:
    explicit MemoryWatch(std::size_t input) {
        static const int installed = __sanitizer_install_malloc_and_free_hooks(on_allocation, on_release);
        (void)installed;
        constexpr std::size_t little = std::size_t{256} << 10;
        bound_ = __sanitizer_get_current_allocated_bytes() + 10 * input + little;
    }
    ~MemoryWatch() { bound_ = 0; }
    MemoryWatch(const MemoryWatch&) = delete;
    MemoryWatch& operator=(const MemoryWatch&) = delete;

private:
    static void on_allocation(const volatile void*, std::size_t) {
        const std::size_t now = __sanitizer_get_current_allocated_bytes();
        if (bound_ == 0 || now <= bound_) return;
        std::fprintf(stderr, "%zu bytes allocated, %zu over the bound\n", now, now - bound_);
        std::abort();
    }
    static void on_release(const volatile void*) {}

    static inline std::atomic<std::size_t> bound_ = 0;
};
