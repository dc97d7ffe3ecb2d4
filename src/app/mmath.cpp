#include "app/mmath.h"

#include <cmath>

MMath::MMath()
{
    m_table[0] = 0.0;
    for (int i = 1; i < tableSize; ++i)
        m_table[i] = std::atan2(10.0, (10.0 / i) * 29.0);
}
