#pragma once

#include <cstddef>

// Lets `new` fail for what is larger, as long as it lives. Programs that use it have an operator
// new of their own.
class AllocationLimit
{
public:
    explicit AllocationLimit(std::size_t bytes) { set(bytes); }
    ~AllocationLimit();
    AllocationLimit(const AllocationLimit &) = delete;
    AllocationLimit &operator=(const AllocationLimit &) = delete;

private:
    static void set(std::size_t bytes);
};
