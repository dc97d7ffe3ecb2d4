#pragma once

// What a parameter panel asks of an object whose settings can be driven by
// dynamics curves (a brush): whether a setting has a curve at the moment.
// A panel offers curve buttons only over an object that derives from this.
class MCurveOwner
{
public:
    virtual ~MCurveOwner() = default;
    virtual bool hasCurve(int setting) const = 0;
};
