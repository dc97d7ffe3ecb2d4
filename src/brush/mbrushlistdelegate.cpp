#include "brush/mbrushlistdelegate.h"

#include "app/msettings.h"
#include "brush/mbrush.h"

#include <QFont>
#include <QFontMetricsF>
#include <QIcon>
#include <QPainter>

MBrushListDelegate::MBrushListDelegate(QObject* parent) : MListPanelDelegate(parent) {}

void MBrushListDelegate::paint(QPainter* painter, QObject* item, const QRectF& rect, bool selected)
{
    auto* brush = qobject_cast<MBrush*>(item);
    if (!painter || !brush) {
        MListPanelDelegate::paint(painter, item, rect, selected);
        return;
    }
    painter->save();
    painter->fillRect(rect, selected ? MSettings::instance()->tableSelectionColor() : QColor(Qt::white));
    painter->setPen(Qt::darkGray);
    painter->drawRect(rect.adjusted(0.0, 0.0, -1.0, -1.0));

    painter->drawImage(rect.topLeft(), brush->preview());

    QStringList icons;
    if (brush->eraser())
        icons << QStringLiteral(":/icons/tools/eraser-tool.ico");
    if (!brush->shaderId().isEmpty())
        icons << QStringLiteral(":/icons/show-fx.ico");
    if (!brush->texture().isNull())
        icons << QStringLiteral(":/icons/texture.ico");
    for (int k = 0; k < icons.size(); ++k) {
        const QPointF at(rect.x() + iconLeft + iconStep * k, rect.y() + iconTop);
        painter->drawPixmap(at, QIcon(icons.at(k)).pixmap(iconSize, iconSize));
    }

    QFont font(QStringLiteral("Arial"));
    font.setPixelSize(9);
    painter->setFont(font);
    painter->setPen(Qt::black);
    const qreal textHeight = QFontMetricsF(font).height();
    const QRectF strip(rect.left(), rect.bottom() - textMargin - textHeight, rect.width() - textMargin,
                       textHeight);
    const QString text = QStringLiteral("%1 [%2]").arg(brush->description(), brush->group());
    painter->drawText(strip, Qt::AlignRight | Qt::AlignVCenter, text);
    painter->restore();
}
