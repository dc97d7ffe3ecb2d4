#include "effects/mpicklist.h"

int MPickList::indexOfValue(const QVariant& value) const
{
    for (int i = 0; i < size(); ++i)
        if (at(i).value == value)
            return i;
    return -1;
}
