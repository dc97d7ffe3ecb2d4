#include "lists/mlistpaneldelegate.h"

#include <QApplication>
#include <QFontMetricsF>
#include <QPainter>
#include <QPalette>

MListPanelDelegate::MListPanelDelegate(QObject* parent) : QObject(parent) {}

void MListPanelDelegate::paint(QPainter* painter, QObject* item, const QRectF& rect, bool selected)
{
    if (!painter || !item)
        return;
    const QPalette palette = QApplication::palette();
    painter->save();
    painter->fillRect(rect, palette.color(selected ? QPalette::Highlight : QPalette::Base));
    painter->setPen(palette.color(selected ? QPalette::HighlightedText : QPalette::Text));
    const QRectF textRect = rect.adjusted(4.0, 0.0, -4.0, 0.0);
    const QString text =
        QFontMetricsF(painter->font()).elidedText(itemText(item), Qt::ElideRight, textRect.width());
    painter->drawText(textRect, Qt::AlignLeft | Qt::AlignVCenter, text);
    painter->restore();
}

QString MListPanelDelegate::itemText(const QObject* item)
{
    if (!item)
        return QString();
    const QString description = item->property("description").toString().trimmed();
    return description.isEmpty() ? item->property("id").toString() : description;
}
