#include "brush/msmoothfilter.h"

#include "brush/mlowpass.h"

#include <cmath>

MSmoothFilter::MSmoothFilter(double minimumCutoff, double beta, double derivativeCutoff)
    : m_minimumCutoff(minimumCutoff), m_beta(beta), m_derivativeCutoff(derivativeCutoff),
      m_signalFilter(std::make_unique<MLowPass>()), m_derivativeFilter(std::make_unique<MLowPass>())
{
    m_signalFilter->setAlpha(alpha(minimumCutoff));
    m_derivativeFilter->setAlpha(alpha(derivativeCutoff));
}

MSmoothFilter::~MSmoothFilter() = default;

double MSmoothFilter::alpha(double cutoff) const
{
    const double tau = 1.0 / (2.0 * M_PI * cutoff);
    return 1.0 / (1.0 + tau / (1.0 / m_frequency));
}

double MSmoothFilter::filter(double x, double time)
{
    // Two samples in the same instant, or out of order, say nothing about the
    // rate: an infinite or negative rate would turn the derivative into
    // inf or NaN and spoil the derivative filter for the rest of the stroke.
    if (m_lastTime != -1.0 && time != -1.0 && time > m_lastTime) {
        const double rate = 1.0 / (time - m_lastTime);
        if (std::isfinite(rate))
            m_frequency = rate;
    }
    m_lastTime = time;

    const double dx = m_signalFilter->first ? 0.0 : (x - m_signalFilter->input) * m_frequency;
    m_derivativeFilter->setAlpha(alpha(m_derivativeCutoff));
    const double edx = m_derivativeFilter->filter(dx);
    const double cutoff = m_minimumCutoff + m_beta * std::abs(edx);
    m_signalFilter->setAlpha(alpha(cutoff));
    return m_signalFilter->filter(x);
}

void MSmoothFilter::reset()
{
    m_signalFilter->reset();
    m_derivativeFilter->reset();
    m_lastTime = -1.0;
}
