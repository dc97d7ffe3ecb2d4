#include "panels/mshaderlistdelegate.h"

#include "app/msettings.h"
#include "effects/mshader.h"

#include <QFont>
#include <QFontMetricsF>
#include <QIcon>
#include <QImage>
#include <QPainter>

MShaderListDelegate::MShaderListDelegate(QObject* parent) : MListPanelDelegate(parent) {}

QRectF MShaderListDelegate::thumbnailRect(const QRectF& cell)
{
    const qreal side = qMax<qreal>(0.0, cell.height() - 2 * margin);
    return QRectF(cell.left() + margin, cell.top() + margin, side, side);
}

QRectF MShaderListDelegate::markRect(const QRectF& cell)
{
    return QRectF(cell.right() - margin - markSize, cell.top() + margin, markSize, markSize);
}

void MShaderListDelegate::paint(QPainter* painter, QObject* item, const QRectF& rect, bool selected)
{
    if (!painter || !item)
        return;
    painter->save();
    painter->fillRect(rect, selected ? MSettings::instance()->tableSelectionColor() : QColor(Qt::white));
    painter->setPen(Qt::darkGray);
    painter->drawRect(rect.adjusted(0.0, 0.0, -1.0, -1.0));

    const QRectF thumbnail = thumbnailRect(rect);
    const QImage preview = item->property("preview").value<QImage>();
    if (!preview.isNull())
        painter->drawImage(thumbnail, preview.scaled(thumbnail.size().toSize(), Qt::KeepAspectRatio,
                                                     Qt::SmoothTransformation));

    const bool engine = item->property("type").toInt() == MShader::BrushShader;
    if (engine)
        painter->drawPixmap(
            markRect(rect).topLeft(),
            QIcon(QStringLiteral(":/icons/actions/actionBrushTool.svg")).pixmap(markSize, markSize));

    const QString description = item->property("description").toString();
    const QString group = item->property("group").toString();
    const QString text = group.isEmpty() ? description : QStringLiteral("%1 [%2]").arg(description, group);
    QFont font = painter->font();
    font.setPixelSize(11);
    painter->setFont(font);
    painter->setPen(Qt::black);
    const qreal left = thumbnail.right() + 2 * margin;
    // The mark's column stays free on every row, so that texts line up.
    const qreal right = markRect(rect).left() - margin;
    const QRectF textRect(left, rect.top(), qMax<qreal>(0.0, right - left), rect.height());
    painter->drawText(textRect, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextWordWrap,
                      QFontMetricsF(font).elidedText(text, Qt::ElideRight, textRect.width() * 2));
    painter->restore();
}
