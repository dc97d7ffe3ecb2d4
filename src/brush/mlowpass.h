#pragma once

// A first-order low-pass on one value: each output moves from the last output
// towards the new input by the fraction alpha. The first input after a reset
// passes through, so that a stroke doesn't start by sliding in from zero.
class MLowPass
{
public:
    // An alpha outside (0, 1] is ignored and the coefficient stays 1.
    explicit MLowPass(double alpha = 1.0);

    // Ignored outside (0, 1], NaN included: the old coefficient stays.
    void setAlpha(double a);
    double filter(double x);
    void reset() { first = true; }

    bool first = true;
    double alpha = 1.0;
    double value = 0.0;
    double input = 0.0;
};
