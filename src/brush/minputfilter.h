#pragma once

#include "brush/mlowpass.h"

#include <QHash>
#include <QList>

class MEvent;

// The low-pass on chosen brush inputs of the view's events: position, direction
// and pressure by default, each by a coefficient of its own. Inputs without an
// entry pass through untouched.
class MInputFilter
{
public:
    // With the standard table: position 0.5, direction and pressure 0.15.
    MInputFilter();
    virtual ~MInputFilter() = default;

    // Adds or changes the filter of that MEnum::BrushInput; false for an input
    // out of range or an alpha outside (0, 1], and nothing changes.
    bool setFilter(int brushInput, double alpha);
    void removeFilter(int brushInput);
    void clear();
    bool hasFilter(int brushInput) const { return m_filters.contains(brushInput); }
    // The coefficient of that input's filter; 0 when it has none.
    double alpha(int brushInput) const;
    QList<int> inputs() const;

    // Each filtered input of the event is replaced by its filter's output.
    void filter(MEvent* event);
    // The next event after this passes through, as at the start of a stroke.
    void reset();

private:
    QHash<int, MLowPass> m_filters;
};
