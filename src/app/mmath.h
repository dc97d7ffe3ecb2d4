#pragma once

#include "app/msingleton.h"

#include <array>

// Process-wide numeric constants and the angle table built at start-up.
class MMath : public MSingleton<MMath>
{
public:
    MMath();

    static constexpr double constantA = 0.6495;
    static constexpr double epsilon = 0.0001;
    static constexpr int tableSize = 30;

    const std::array<double, tableSize>& table() const { return m_table; }

private:
    std::array<double, tableSize> m_table{};
};
