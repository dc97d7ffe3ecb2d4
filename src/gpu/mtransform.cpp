#include "gpu/mtransform.h"

#include <cmath>

MTransform::MTransform(QObject* parent) : QObject(parent) {}

void MTransform::rebuild()
{
    QTransform rotation;
    rotation.translate(m_rotationCentre.x(), m_rotationCentre.y());
    rotation.rotate(m_rotation);
    rotation.translate(-m_rotationCentre.x(), -m_rotationCentre.y());
    const QTransform scaling = QTransform::fromScale(m_scale * (m_flipHorizontal ? -1.0 : 1.0),
                                                     m_scale * (m_flipVertical ? -1.0 : 1.0));
    const QTransform translation = QTransform::fromTranslate(m_translation.x(), m_translation.y());
    // QTransform composes left to right: rotation is applied first.
    m_matrix = rotation * scaling * translation;
    Q_EMIT update();
}

void MTransform::zoom(double scale, const QPointF& anchor)
{
    if (scale == m_scale)
        return;
    scale = qBound(minimumScale, scale, maximumScale);
    const double factor = scale / m_scale;
    QTransform around;
    around.translate(m_translation.x(), m_translation.y());
    around.scale(factor, factor);
    around.translate(-m_translation.x(), -m_translation.y());
    m_translation += anchor - around.map(anchor);
    m_scale = scale;
    m_zoomAnchor = anchor;
    rebuild();
    Q_EMIT scaleChanged(m_scale);
}

void MTransform::setTranslation(const QPointF& translation)
{
    m_translation = translation;
    rebuild();
}

void MTransform::translate(const QPointF& delta)
{
    m_translation += delta;
    rebuild();
}

void MTransform::setRotation(double degrees)
{
    if (std::isnan(degrees))
        return;
    m_rotation = degrees;
    rebuild();
}

void MTransform::setRotationCentre(const QPointF& centre)
{
    m_rotationCentre = centre;
    rebuild();
}

void MTransform::flipHorizontal()
{
    m_flipHorizontal = !m_flipHorizontal;
    rebuild();
}

void MTransform::flipVertical()
{
    m_flipVertical = !m_flipVertical;
    rebuild();
}

void MTransform::reset()
{
    m_translation = QPointF();
    m_rotation = 0.0;
    m_scale = 1.0;
    m_rotationCentre = QPointF();
    m_zoomAnchor = QPointF();
    m_flipHorizontal = false;
    m_flipVertical = false;
    rebuild();
}

void MTransform::copyFrom(const MTransform& other)
{
    m_translation = other.m_translation;
    m_rotation = other.m_rotation;
    m_scale = other.m_scale;
    m_rotationCentre = other.m_rotationCentre;
    m_zoomAnchor = other.m_zoomAnchor;
    m_flipHorizontal = other.m_flipHorizontal;
    m_flipVertical = other.m_flipVertical;
    rebuild();
}
