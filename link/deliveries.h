#pragma once

#include <exception>

namespace live {

// Runs several deliveries to receivers that may throw: each is made, and the first exception goes on
// to the caller when all are done.
class Deliveries
{
public:
    template <class Delivery>
    void run(Delivery delivery)
    {
        try {
            delivery();
        } catch (...) {
            if (!m_first)
                m_first = std::current_exception();
        }
    }

    void rethrowFirst() const
    {
        if (m_first)
            std::rethrow_exception(m_first);
    }

private:
    std::exception_ptr m_first;
};

} // namespace live
