#include "document/mlayer.h"

#include <QUuid>

MLayer::MLayer(QObject* parent) : MShaderObject(parent), m_name(tr("Layer")), m_imageGuid(newId()) {}

MLayer::~MLayer() = default;

QString MLayer::newId()
{
    return QUuid::createUuid().toString().toUpper();
}

void MLayer::clear() {}

bool MLayer::isEmpty() const
{
    return false;
}

void MLayer::assign(const MLayer& other)
{
    set_mask(other.mask());
    m_type = other.type();
    setName(other.name());
    setOpacity(other.opacity());
    setLocked(other.locked());
    setVisible(other.visible());
    setColor(other.color());
    setEraserMode(other.eraserMode());
    copyFrom(other);
}

void MLayer::set_mask(int mask)
{
    if (mask == m_mask)
        return;
    m_mask = mask;
    Q_EMIT maskChanged(mask);
}

void MLayer::setName(const QString& name)
{
    if (name == m_name)
        return;
    m_name = name;
    Q_EMIT nameChanged(name);
}

void MLayer::setOpacity(double opacity)
{
    // Exact comparison: the undo of a property change must land on the very value.
    if (opacity == m_opacity)
        return;
    m_opacity = opacity;
    Q_EMIT opacityChanged(opacity);
}

void MLayer::setLocked(bool locked)
{
    if (locked == m_locked)
        return;
    m_locked = locked;
    Q_EMIT lockedChanged(locked);
}

void MLayer::setVisible(bool visible)
{
    if (visible == m_visible)
        return;
    m_visible = visible;
    Q_EMIT visibleChanged(visible);
}

void MLayer::setColor(const QColor& color)
{
    if (color == m_color)
        return;
    m_color = color;
    Q_EMIT colorChanged(color);
}

void MLayer::setThumbnail(const QImage& thumbnail)
{
    m_thumbnail = thumbnail;
    Q_EMIT thumbnailChanged(m_thumbnail);
    setImageGuid(newId());
}

void MLayer::setImageGuid(const QString& id)
{
    if (id == m_imageGuid)
        return;
    m_imageGuid = id;
    Q_EMIT imageGuidChanged(id);
}

void MLayer::setEraserMode(bool eraserMode)
{
    if (eraserMode == m_eraserMode)
        return;
    m_eraserMode = eraserMode;
    Q_EMIT eraserModeChanged(eraserMode);
}
