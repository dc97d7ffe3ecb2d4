#include "effects/msliderspinbox.h"

#include <QDoubleSpinBox>
#include <QEvent>
#include <QHBoxLayout>
#include <QSignalBlocker>
#include <QSlider>

#include <algorithm>
#include <cmath>

namespace {

// With a range that reaches zero or below, the logarithmic scale is taken over
// the offset from the minimum; this is how many times finer the lower end is
// spaced than the upper one.
constexpr double logSpread = 100.0;

// The fewest decimals, up to 6, that show this step exactly.
int decimalsFor(double step)
{
    step = std::abs(step);
    if (step <= 0.0 || !std::isfinite(step))
        return 2;
    for (int decimals = 0; decimals < 6; ++decimals) {
        const double scaled = step * std::pow(10.0, decimals);
        if (std::abs(scaled - std::round(scaled)) < 1e-6 * scaled)
            return decimals;
    }
    return 6;
}

// Wheel turns reach a control only when it has the focus, so that scrolling a
// long panel doesn't change the values it passes over.
class WheelGuard : public QObject
{
public:
    using QObject::QObject;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::Wheel) {
            auto* widget = qobject_cast<QWidget*>(watched);
            if (widget && !widget->hasFocus()) {
                // Ignored and handled: the parent gets the turn instead.
                event->ignore();
                return true;
            }
        }
        return QObject::eventFilter(watched, event);
    }
};

} // namespace

MSliderSpinbox::MSliderSpinbox(QWidget* parent)
    : QWidget(parent), m_slider(new QSlider(Qt::Horizontal, this)), m_spinBox(new QDoubleSpinBox(this))
{
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_slider, 1);
    layout->addWidget(m_spinBox);

    m_slider->setRange(0, sliderResolution);
    m_slider->setFocusPolicy(Qt::StrongFocus);
    // Typing "12" must not pass through 1 on its way.
    m_spinBox->setKeyboardTracking(false);
    m_spinBox->setFocusPolicy(Qt::StrongFocus);
    m_spinBox->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    auto* guard = new WheelGuard(this);
    m_slider->installEventFilter(guard);
    m_spinBox->installEventFilter(guard);
    setFocusProxy(m_slider);

    connect(m_slider, &QSlider::valueChanged, this, &MSliderSpinbox::onSliderValueChanged);
    connect(m_slider, &QSlider::sliderMoved, this, &MSliderSpinbox::onSliderMoved);
    connect(m_spinBox, QOverload<double>::of(&QDoubleSpinBox::valueChanged), this,
            &MSliderSpinbox::onSpinBoxValueChanged);
    updateControls();
}

int MSliderSpinbox::positionOf(double value) const
{
    const double span = m_maximum - m_minimum;
    if (!(span > 0.0))
        return 0;
    value = std::clamp(value, m_minimum, m_maximum);
    double ratio = (value - m_minimum) / span;
    if (m_isLogarithmic) {
        if (m_minimum > 0.0)
            ratio = std::log(value / m_minimum) / std::log(m_maximum / m_minimum);
        else
            ratio = std::log1p(logSpread * ratio) / std::log1p(logSpread);
    }
    return std::clamp(int(std::lround(ratio * sliderResolution)), 0, sliderResolution);
}

double MSliderSpinbox::valueAt(int position) const
{
    if (position <= 0)
        return m_minimum;
    if (position >= sliderResolution)
        return m_maximum;
    const double span = m_maximum - m_minimum;
    const double ratio = double(position) / sliderResolution;
    if (m_isLogarithmic) {
        if (m_minimum > 0.0)
            return m_minimum * std::exp(ratio * std::log(m_maximum / m_minimum));
        return m_minimum + span * std::expm1(ratio * std::log1p(logSpread)) / logSpread;
    }
    double value = m_minimum + ratio * span;
    // A linear slider lands on the steps of the spin box.
    if (m_singleStep > 0.0) {
        value = m_minimum + std::round((value - m_minimum) / m_singleStep) * m_singleStep;
        const double grain = std::pow(10.0, decimalsFor(m_singleStep));
        value = std::round(value * grain) / grain;
    }
    return std::clamp(value, m_minimum, m_maximum);
}

void MSliderSpinbox::set_value(double value)
{
    if (value == m_value)
        return;
    m_value = value;
    showValue(m_value);
    Q_EMIT valueChanged(m_value);
}

void MSliderSpinbox::set_isLogarithmic(bool isLogarithmic)
{
    if (isLogarithmic == m_isLogarithmic)
        return;
    m_isLogarithmic = isLogarithmic;
    updateControls();
    Q_EMIT isLogarithmicChanged(m_isLogarithmic);
}

void MSliderSpinbox::set_isPercentage(bool isPercentage)
{
    if (isPercentage == m_isPercentage)
        return;
    m_isPercentage = isPercentage;
    updateControls();
    Q_EMIT isPercentageChanged(m_isPercentage);
}

void MSliderSpinbox::set_minimum(double minimum)
{
    if (minimum == m_minimum)
        return;
    m_minimum = minimum;
    updateControls();
    Q_EMIT minimumChanged(m_minimum);
}

void MSliderSpinbox::set_maximum(double maximum)
{
    if (maximum == m_maximum)
        return;
    m_maximum = maximum;
    updateControls();
    Q_EMIT maximumChanged(m_maximum);
}

void MSliderSpinbox::set_singleStep(double singleStep)
{
    if (singleStep == m_singleStep)
        return;
    m_singleStep = singleStep;
    updateControls();
    Q_EMIT singleStepChanged(m_singleStep);
}

void MSliderSpinbox::set_suffix(const QString& suffix)
{
    if (suffix == m_suffix)
        return;
    m_suffix = suffix;
    m_spinBox->setSuffix(m_suffix);
    Q_EMIT suffixChanged(m_suffix);
}

void MSliderSpinbox::set_showSpinBox(bool showSpinBox)
{
    if (showSpinBox == m_showSpinBox)
        return;
    m_showSpinBox = showSpinBox;
    m_spinBox->setVisible(m_showSpinBox);
    Q_EMIT showSpinBoxChanged(m_showSpinBox);
}

void MSliderSpinbox::set_spinBoxWidth(int spinBoxWidth)
{
    if (spinBoxWidth == m_spinBoxWidth)
        return;
    m_spinBoxWidth = spinBoxWidth;
    updateControls();
    Q_EMIT spinBoxWidthChanged(m_spinBoxWidth);
}

void MSliderSpinbox::set_sliderTracking(bool sliderTracking)
{
    if (sliderTracking == m_sliderTracking)
        return;
    m_sliderTracking = sliderTracking;
    m_slider->setTracking(m_sliderTracking);
    Q_EMIT sliderTrackingChanged(m_sliderTracking);
}

void MSliderSpinbox::onSliderValueChanged(int position)
{
    const double value = valueAt(position);
    if (value == m_value)
        return;
    m_value = value;
    const QSignalBlocker blocker(m_spinBox);
    m_spinBox->setValue(m_value * displayFactor());
    Q_EMIT valueChanged(m_value);
}

void MSliderSpinbox::onSliderMoved(int position)
{
    // Without tracking the value changes on release; the number follows the
    // handle meanwhile all the same.
    if (m_sliderTracking)
        return;
    const QSignalBlocker blocker(m_spinBox);
    m_spinBox->setValue(valueAt(position) * displayFactor());
}

void MSliderSpinbox::onSpinBoxValueChanged(double shown)
{
    const double value = shown / displayFactor();
    if (value == m_value)
        return;
    m_value = value;
    const QSignalBlocker blocker(m_slider);
    m_slider->setValue(positionOf(m_value));
    Q_EMIT valueChanged(m_value);
}

void MSliderSpinbox::updateControls()
{
    const double factor = displayFactor();
    int decimals = decimalsFor(m_singleStep * factor);
    // A logarithmic scale reaches finer values near a small minimum than the step.
    if (m_isLogarithmic && m_minimum > 0.0)
        decimals = std::max(decimals, decimalsFor(m_minimum * factor));
    {
        const QSignalBlocker blocker(m_spinBox);
        m_spinBox->setDecimals(decimals);
        m_spinBox->setRange(m_minimum * factor, m_maximum * factor);
        m_spinBox->setSingleStep(m_singleStep * factor);
        m_spinBox->setSuffix(m_suffix);
    }
    const int stepPositions =
        m_maximum > m_minimum && m_singleStep > 0.0 && !m_isLogarithmic
            ? int(std::lround(m_singleStep / (m_maximum - m_minimum) * sliderResolution))
            : 1;
    m_slider->setSingleStep(std::clamp(stepPositions, 1, sliderResolution));
    m_slider->setPageStep(std::clamp(stepPositions * 10, 1, sliderResolution));
    m_slider->setTracking(m_sliderTracking);
    if (m_spinBoxWidth > 0) {
        m_spinBox->setFixedWidth(m_spinBoxWidth);
    } else {
        m_spinBox->setMinimumWidth(0);
        m_spinBox->setMaximumWidth(QWIDGETSIZE_MAX);
    }
    m_spinBox->setVisible(m_showSpinBox);
    showValue(m_value);
}

void MSliderSpinbox::showValue(double value)
{
    const QSignalBlocker sliderBlocker(m_slider);
    const QSignalBlocker spinBoxBlocker(m_spinBox);
    m_slider->setValue(positionOf(value));
    m_spinBox->setValue(value * displayFactor());
}
