#include "tests/support/failing_memory.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

constexpr long none = -1;

std::atomic<long> requestsUntilFailure{none};
std::atomic<bool> hasFailed{false};

bool IsRefused() {
    long left = requestsUntilFailure.load();
    while (left > 0)
        if (requestsUntilFailure.compare_exchange_weak(left, left - 1))
            return false;
    if (left == none)
        return false;
    hasFailed = true;
    return true;
}

void* Get(std::size_t bytes) noexcept {
    return IsRefused() ? nullptr : std::malloc(bytes > 0 ? bytes : 1);
}

void* GetOrThrow(std::size_t bytes) {
    void* const memory = Get(bytes);
    if (memory == nullptr)
        throw std::bad_alloc();
    return memory;
}

} // namespace

FailingMemory::FailingMemory(std::size_t number) {
    hasFailed = false;
    requestsUntilFailure = static_cast<long>(number);
}

FailingMemory::~FailingMemory() {
    requestsUntilFailure = none;
}

bool FailingMemory::HasFailed() const {
    return hasFailed;
}

// Of the leak checker, where a program has one.
extern "C" __attribute__((weak)) void __lsan_disable();
extern "C" __attribute__((weak)) void __lsan_enable();

IgnoredLeaks::IgnoredLeaks() {
    if (&__lsan_disable != nullptr)
        __lsan_disable();
}

IgnoredLeaks::~IgnoredLeaks() {
    if (&__lsan_enable != nullptr)
        __lsan_enable();
}

/// The leak checker asks for this: the toolkit loses the buffer of a conversion when the next request is refused.
extern "C" __attribute__((visibility("default"))) const char* __lsan_default_suppressions();
const char* __lsan_default_suppressions() {
    return "leak:wxMBConv::cMB2WC\nleak:wxMBConv::FromWChar\n";
}

// All forms that have no alignment: the sanitizer minds a block that comes from one family and goes by another.
void* operator new(std::size_t bytes) {
    return GetOrThrow(bytes);
}
void* operator new[](std::size_t bytes) {
    return GetOrThrow(bytes);
}
void* operator new(std::size_t bytes, const std::nothrow_t&) noexcept {
    return Get(bytes);
}
void* operator new[](std::size_t bytes, const std::nothrow_t&) noexcept {
    return Get(bytes);
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete[](void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
    std::free(memory);
}
void operator delete(void* memory, const std::nothrow_t&) noexcept {
    std::free(memory);
}
void operator delete[](void* memory, const std::nothrow_t&) noexcept {
    std::free(memory);
}
