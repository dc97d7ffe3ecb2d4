#include "lists/mlistpanel.h"

#include "lists/mlistpaneldelegate.h"
#include "lists/mtablemodel.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>

#include <cmath>

MListPanel::MListPanel(QWidget* parent) : QWidget(parent)
{
    setFocusPolicy(Qt::StrongFocus);
    setMinimumWidth(int(std::ceil(m_cellWidth)));
}

int MListPanel::rowCount() const
{
    return m_model ? m_model->count() : 0;
}

int MListPanel::maximumFirstY() const
{
    const double extent = pitch() * rowCount() + bottomMargin - height();
    return qMax(0, int(std::ceil(extent)));
}

int MListPanel::rowAt(int y) const
{
    if (pitch() <= 0.0)
        return -1;
    const double position = (double(m_firstY) + y) / pitch();
    if (position < 0.0)
        return -1;
    const int row = int(position);
    return row < rowCount() ? row : -1;
}

QRectF MListPanel::rowRect(int row) const
{
    return QRectF(0.0, row * pitch() - m_firstY, width(), m_cellHeight);
}

void MListPanel::ensureRowVisible(int row)
{
    if (row < 0 || row >= rowCount())
        return;
    const QRectF rect = rowRect(row);
    if (rect.top() < 0.0 || rect.bottom() > height())
        setFirstY(int(std::floor(row * pitch())));
}

void MListPanel::setModel(MTableModel* model)
{
    m_model = model;
    setFirstY(m_firstY);
    update();
}

void MListPanel::setDelegate(MListPanelDelegate* delegate)
{
    m_delegate = delegate;
    update();
}

void MListPanel::setCellSize(qreal width, qreal height)
{
    m_cellWidth = width;
    m_cellHeight = height;
    setMinimumWidth(int(std::ceil(width)));
    setFirstY(m_firstY);
    updateGeometry();
    update();
}

void MListPanel::setGap(qreal gap)
{
    m_gap = gap;
    setFirstY(m_firstY);
    update();
}

QSize MListPanel::sizeHint() const
{
    return QSize(int(std::ceil(m_cellWidth)), int(std::ceil(pitch() * 10.0)));
}

void MListPanel::setFirstY(int firstY)
{
    const int clamped = qBound(0, firstY, maximumFirstY());
    if (clamped == m_firstY)
        return;
    m_firstY = clamped;
    update();
    Q_EMIT firstYChanged(clamped);
}

void MListPanel::paintEvent(QPaintEvent* event)
{
    Q_UNUSED(event)
    QPainter painter(this);
    painter.fillRect(rect(), palette().color(QPalette::Window));
    if (!m_model || !m_delegate || pitch() <= 0.0)
        return;
    const int rows = rowCount();
    const int first = qMax(0, int(std::floor(m_firstY / pitch())));
    const int last = qMin(rows - 1, int(std::floor((m_firstY + height()) / pitch())));
    for (int row = first; row <= last; ++row)
        m_delegate->paint(&painter, m_model->item(row), rowRect(row), row == m_model->currentRow());
}

bool MListPanel::selectAt(int y)
{
    setFocus(Qt::MouseFocusReason);
    const int row = rowAt(y);
    if (row < 0 || !m_model)
        return false;
    m_model->setCurrentRow(row);
    update();
    return true;
}

void MListPanel::mousePressEvent(QMouseEvent* event)
{
    if (selectAt(event->pos().y()))
        Q_EMIT click();
}

void MListPanel::mouseDoubleClickEvent(QMouseEvent* event)
{
    if (selectAt(event->pos().y()))
        Q_EMIT doubleClick();
}

void MListPanel::keyPressEvent(QKeyEvent* event)
{
    const int step = int(std::round(pitch()));
    switch (event->key()) {
    case Qt::Key_Up:
        setFirstY(m_firstY - step);
        break;
    case Qt::Key_Down:
        setFirstY(m_firstY + step);
        break;
    case Qt::Key_PageUp:
        setFirstY(m_firstY - pageStep);
        break;
    case Qt::Key_PageDown:
        setFirstY(m_firstY + pageStep);
        break;
    default:
        QWidget::keyPressEvent(event);
        return;
    }
    event->accept();
}

void MListPanel::wheelEvent(QWheelEvent* event)
{
    // One notch of a wheel scrolls one row.
    const int notches = event->angleDelta().y() / 120;
    if (notches == 0) {
        event->ignore();
        return;
    }
    setFirstY(m_firstY - notches * int(std::round(pitch())));
    event->accept();
}

void MListPanel::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    setFirstY(m_firstY);
}
