#pragma once

#include <QString>
#include <QWidget>

class QDoubleSpinBox;
class QSlider;

// A slider and a spin box showing one double value. The value is kept as set:
// the range binds the two controls only. A percentage shows value × 100 in the
// spin box; a logarithmic slider spaces its positions by the logarithm of the
// value.
//
// spinBoxWidth fixes the width of the spin box; 0 leaves it as wide as its
// range and suffix need.
class MSliderSpinbox : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(double value READ value WRITE set_value NOTIFY valueChanged USER true)
    Q_PROPERTY(bool isLogarithmic READ isLogarithmic WRITE set_isLogarithmic NOTIFY isLogarithmicChanged)
    Q_PROPERTY(bool isPercentage READ isPercentage WRITE set_isPercentage NOTIFY isPercentageChanged)
    Q_PROPERTY(double minimum READ minimum WRITE set_minimum NOTIFY minimumChanged)
    Q_PROPERTY(double maximum READ maximum WRITE set_maximum NOTIFY maximumChanged)
    Q_PROPERTY(double singleStep READ singleStep WRITE set_singleStep NOTIFY singleStepChanged)
    Q_PROPERTY(QString suffix READ suffix WRITE set_suffix NOTIFY suffixChanged)
    Q_PROPERTY(bool showSpinBox READ showSpinBox WRITE set_showSpinBox NOTIFY showSpinBoxChanged)
    Q_PROPERTY(int spinBoxWidth READ spinBoxWidth WRITE set_spinBoxWidth NOTIFY spinBoxWidthChanged)
    Q_PROPERTY(bool sliderTracking READ sliderTracking WRITE set_sliderTracking NOTIFY sliderTrackingChanged)

public:
    // Positions of the slider from minimum to maximum.
    static constexpr int sliderResolution = 1000;

    explicit MSliderSpinbox(QWidget* parent = nullptr);

    double value() const { return m_value; }
    bool isLogarithmic() const { return m_isLogarithmic; }
    bool isPercentage() const { return m_isPercentage; }
    double minimum() const { return m_minimum; }
    double maximum() const { return m_maximum; }
    double singleStep() const { return m_singleStep; }
    QString suffix() const { return m_suffix; }
    bool showSpinBox() const { return m_showSpinBox; }
    int spinBoxWidth() const { return m_spinBoxWidth; }
    bool sliderTracking() const { return m_sliderTracking; }

    // The slider position that shows a value, and the value at a position,
    // under the current range and scale. Positions run from 0 to
    // sliderResolution; values outside the range take the nearest end.
    int positionOf(double value) const;
    double valueAt(int position) const;

    QSlider* slider() const { return m_slider; }
    QDoubleSpinBox* spinBox() const { return m_spinBox; }

public Q_SLOTS:
    void set_value(double value);
    void set_isLogarithmic(bool isLogarithmic);
    void set_isPercentage(bool isPercentage);
    void set_minimum(double minimum);
    void set_maximum(double maximum);
    void set_singleStep(double singleStep);
    void set_suffix(const QString& suffix);
    void set_showSpinBox(bool showSpinBox);
    void set_spinBoxWidth(int spinBoxWidth);
    void set_sliderTracking(bool sliderTracking);

Q_SIGNALS:
    void valueChanged(double value);
    void isLogarithmicChanged(bool isLogarithmic);
    void isPercentageChanged(bool isPercentage);
    void minimumChanged(double minimum);
    void maximumChanged(double maximum);
    void singleStepChanged(double singleStep);
    void suffixChanged(const QString& suffix);
    void showSpinBoxChanged(bool showSpinBox);
    void spinBoxWidthChanged(int spinBoxWidth);
    void sliderTrackingChanged(bool sliderTracking);

private:
    void onSliderValueChanged(int position);
    void onSliderMoved(int position);
    void onSpinBoxValueChanged(double shown);
    // The factor between the value and what the spin box shows.
    double displayFactor() const { return m_isPercentage ? 100.0 : 1.0; }
    // Brings both controls to the current range, scale and value.
    void updateControls();
    void showValue(double value);

    QSlider* m_slider;
    QDoubleSpinBox* m_spinBox;
    double m_value = 0.0;
    bool m_isLogarithmic = false;
    bool m_isPercentage = false;
    double m_minimum = 0.0;
    double m_maximum = 1.0;
    double m_singleStep = 0.1;
    QString m_suffix;
    bool m_showSpinBox = true;
    int m_spinBoxWidth = 0;
    bool m_sliderTracking = true;
};
