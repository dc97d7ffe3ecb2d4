#include "tools/mstrokestyle.h"

#include <QVector>

MStrokeStyle::MStrokeStyle(QObject* parent) : QObject(parent) {}

QPen MStrokeStyle::pen() const
{
    QPen result(m_strokeColor);
    result.setWidthF(m_strokeSize);
    result.setStyle(Qt::PenStyle(m_strokeStyle));
    if (m_dashLength > 0.0 && m_strokeStyle != NoStyle && m_strokeStyle != SolidLine)
        result.setDashPattern(QVector<qreal>{m_dashLength, m_dashSpace});
    return result;
}

void MStrokeStyle::set_strokeColor(const QColor& value)
{
    if (value == m_strokeColor)
        return;
    m_strokeColor = value;
    Q_EMIT strokeColorChanged(value);
}

void MStrokeStyle::set_strokeSize(double value)
{
    if (value == m_strokeSize)
        return;
    m_strokeSize = value;
    Q_EMIT strokeSizeChanged(value);
}

void MStrokeStyle::set_strokeStyle(int value)
{
    if (value == m_strokeStyle)
        return;
    m_strokeStyle = value;
    Q_EMIT strokeStyleChanged(value);
}

void MStrokeStyle::set_dashLength(double value)
{
    if (value == m_dashLength)
        return;
    m_dashLength = value;
    Q_EMIT dashLengthChanged(value);
}

void MStrokeStyle::set_dashSpace(double value)
{
    if (value == m_dashSpace)
        return;
    m_dashSpace = value;
    Q_EMIT dashSpaceChanged(value);
}
