#include "effects/mfield.h"

#include <QColor>
#include <QIcon>
#include <QImage>
#include <QPainter>
#include <QPixmap>
#include <QSize>

#include <utility>

void MField::setMinimum(double value)
{
    m_minimum = value;
    if (m_minimum > m_maximum)
        std::swap(m_minimum, m_maximum);
}

void MField::setMaximum(double value)
{
    m_maximum = value;
    if (m_minimum > m_maximum)
        std::swap(m_minimum, m_maximum);
}

QVariant MField::format(const QVariant& value, int role) const
{
    switch (role) {
    case DisplayRole:
        if (type == QVariant::Image)
            return value;
        if (hasPickList()) {
            const int index = pickList.indexOfValue(value);
            if (index >= 0)
                return pickList.at(index).text;
        }
        if (type == QVariant::Color)
            return value.value<QColor>().name(QColor::HexArgb);
        if (type == QVariant::Double && isPercentage)
            return QStringLiteral("%1 %").arg(value.toDouble() * 100.0, 0, 'f', 0);
        if (type == QVariant::Double)
            return QString::number(value.toDouble(), 'g', 6) + (unit.isEmpty() ? QString() : QLatin1Char(' ') + unit);
        return value.toString() + (unit.isEmpty() ? QString() : QLatin1Char(' ') + unit);
    case DecorationRole:
        if (type == QVariant::Color) {
            QPixmap swatch(16, 16);
            swatch.fill(value.value<QColor>());
            QPainter painter(&swatch);
            painter.setPen(Qt::darkGray);
            painter.drawRect(0, 0, 15, 15);
            return QIcon(swatch);
        }
        return QVariant();
    case SizeHintRole:
        if (type == QVariant::Image)
            return value.value<QImage>().size();
        return QVariant();
    default:
        return QVariant();
    }
}
