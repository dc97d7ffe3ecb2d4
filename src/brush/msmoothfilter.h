#pragma once

#include <memory>

class MLowPass;

// An adaptive low-pass for noisy hand input: the cutoff frequency rises with
// the filtered speed of the signal, so that slow movements lose their jitter
// and fast ones lose little to lag.
class MSmoothFilter
{
public:
    MSmoothFilter(double minimumCutoff, double beta, double derivativeCutoff);
    virtual ~MSmoothFilter();

    // time in seconds. A time of -1 (unknown), or one not after the last,
    // leaves the estimated rate as it was.
    double filter(double x, double time);
    void reset();

    // The coefficient of a low-pass with cutoff c at the current rate.
    double alpha(double cutoff) const;

    double frequency() const { return m_frequency; }
    double minimumCutoff() const { return m_minimumCutoff; }
    double beta() const { return m_beta; }
    double derivativeCutoff() const { return m_derivativeCutoff; }
    double lastTime() const { return m_lastTime; }
    const MLowPass& signalFilter() const { return *m_signalFilter; }
    const MLowPass& derivativeFilter() const { return *m_derivativeFilter; }

private:
    double m_frequency = 1.0;
    double m_minimumCutoff;
    double m_beta;
    double m_derivativeCutoff;
    std::unique_ptr<MLowPass> m_signalFilter;
    std::unique_ptr<MLowPass> m_derivativeFilter;
    double m_lastTime = -1.0;
};
