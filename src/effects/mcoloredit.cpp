#include "effects/mcoloredit.h"

#include <QColorDialog>
#include <QPainter>
#include <QStyleOptionButton>
#include <QStylePainter>

MColorEdit::MColorEdit(QWidget* parent) : QPushButton(parent)
{
    connect(this, &QPushButton::clicked, this, &MColorEdit::chooseColor);
}

QSize MColorEdit::sizeHint() const
{
    return QPushButton::sizeHint().expandedTo(QSize(60, 0));
}

void MColorEdit::set_color(const QColor& color)
{
    if (color == m_color)
        return;
    m_color = color;
    setToolTip(m_color.isValid() ? m_color.name(m_showAlpha ? QColor::HexArgb : QColor::HexRgb) : QString());
    update();
    Q_EMIT colorChanged(m_color);
}

void MColorEdit::set_showAlpha(bool showAlpha)
{
    if (showAlpha == m_showAlpha)
        return;
    m_showAlpha = showAlpha;
    Q_EMIT showAlphaChanged(m_showAlpha);
}

void MColorEdit::chooseColor()
{
    const QColor chosen = askColor(m_color);
    if (chosen.isValid())
        set_color(chosen);
}

QColor MColorEdit::askColor(const QColor& current)
{
    QColorDialog::ColorDialogOptions options;
    if (m_showAlpha)
        options |= QColorDialog::ShowAlphaChannel;
    return QColorDialog::getColor(current.isValid() ? current : QColor(Qt::white), this, tr("Choose a color"),
                                  options);
}

void MColorEdit::paintEvent(QPaintEvent* event)
{
    Q_UNUSED(event)
    QStylePainter painter(this);
    QStyleOptionButton option;
    initStyleOption(&option);
    option.text.clear();
    option.icon = QIcon();
    painter.drawControl(QStyle::CE_PushButton, option);

    const int margin = style()->pixelMetric(QStyle::PM_ButtonMargin, &option, this);
    const QRect swatch = style()
                             ->subElementRect(QStyle::SE_PushButtonContents, &option, this)
                             .adjusted(margin / 2, margin / 2, -margin / 2, -margin / 2);
    if (!swatch.isValid())
        return;
    if (m_color.isValid()) {
        // A checkerboard under a colour that isn't opaque shows how much it covers.
        if (m_color.alpha() < 255) {
            QPixmap checker(8, 8);
            checker.fill(Qt::white);
            QPainter checkerPainter(&checker);
            checkerPainter.fillRect(0, 0, 4, 4, Qt::lightGray);
            checkerPainter.fillRect(4, 4, 4, 4, Qt::lightGray);
            painter.fillRect(swatch, QBrush(checker));
        }
        painter.fillRect(swatch, m_color);
    } else {
        // No colour: an empty box crossed out.
        painter.setPen(Qt::darkGray);
        painter.drawLine(swatch.bottomLeft(), swatch.topRight());
    }
    painter.setPen(isEnabled() ? Qt::darkGray : Qt::lightGray);
    painter.drawRect(swatch.adjusted(0, 0, -1, -1));
}
