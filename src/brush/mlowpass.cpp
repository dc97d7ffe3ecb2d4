#include "brush/mlowpass.h"

MLowPass::MLowPass(double a)
{
    setAlpha(a);
}

void MLowPass::setAlpha(double a)
{
    if (a > 0.0 && a <= 1.0)
        alpha = a;
}

double MLowPass::filter(double x)
{
    input = x;
    if (first) {
        value = x;
        first = false;
    } else {
        value = (1.0 - alpha) * value + alpha * x;
    }
    return value;
}
