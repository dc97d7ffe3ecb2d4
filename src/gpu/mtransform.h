#pragma once

#include <QMatrix4x4>
#include <QObject>
#include <QPointF>
#include <QRectF>
#include <QTransform>

// The view transform: a canvas point is rotated about the rotation centre,
// scaled (and flipped), then translated into widget coordinates.
class MTransform : public QObject
{
    Q_OBJECT

public:
    static constexpr double minimumScale = 0.01;
    static constexpr double maximumScale = 40.0;

    explicit MTransform(QObject* parent = nullptr);

    QPointF translation() const { return m_translation; }
    double rotation() const { return m_rotation; }
    double scale() const { return m_scale; }
    QPointF rotationCentre() const { return m_rotationCentre; }
    QPointF zoomAnchor() const { return m_zoomAnchor; }
    bool isFlippedHorizontally() const { return m_flipHorizontal; }
    bool isFlippedVertically() const { return m_flipVertical; }
    QTransform matrix() const { return m_matrix; }
    QMatrix4x4 matrix4x4() const { return QMatrix4x4(m_matrix); }

    QPointF mapToWidget(const QPointF& point) const { return m_matrix.map(point); }
    QPointF mapToCanvas(const QPointF& point) const { return m_matrix.inverted().map(point); }
    QRectF mapRectToWidget(const QRectF& rect) const { return m_matrix.mapRect(rect); }
    QRectF mapRectToCanvas(const QRectF& rect) const { return m_matrix.inverted().mapRect(rect); }

    // Scales to scale (clamped), keeping the widget point anchor in place.
    void zoom(double scale, const QPointF& anchor);
    void setTranslation(const QPointF& translation);
    void translate(const QPointF& delta);
    // A NaN angle is ignored.
    void setRotation(double degrees);
    void setRotationCentre(const QPointF& centre);
    void flipHorizontal();
    void flipVertical();
    void reset();
    // Takes every value of other and rebuilds.
    void copyFrom(const MTransform& other);

Q_SIGNALS:
    void update();
    void scaleChanged(double scale);

private:
    void rebuild();

    QPointF m_translation;
    double m_rotation = 0.0;
    double m_scale = 1.0;
    QPointF m_rotationCentre;
    QPointF m_zoomAnchor;
    QTransform m_matrix;
    bool m_flipHorizontal = false;
    bool m_flipVertical = false;
};
