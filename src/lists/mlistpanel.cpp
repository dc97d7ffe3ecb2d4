#include "lists/mlistpanel.h"

#include "lists/mlistpaneldelegate.h"
#include "lists/mparamlist.h"
#include "lists/mtablemodel.h"

#include <QApplication>
#include <QDrag>
#include <QDropEvent>
#include <QFileInfo>
#include <QKeyEvent>
#include <QMimeData>
#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>

#include <cmath>

MListPanel::MListPanel(QWidget* parent) : QWidget(parent)
{
    setFocusPolicy(Qt::StrongFocus);
    setMinimumWidth(int(std::ceil(m_cellWidth)));
    setAcceptDrops(true);
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

int MListPanel::dropRowAt(int y) const
{
    if (pitch() <= 0.0)
        return rowCount();
    const double position = (double(m_firstY) + y) / pitch();
    return qBound(0, int(std::floor(position + 0.5)), rowCount());
}

QStringList MListPanel::importableFiles(const QMimeData* mime) const
{
    const auto* list = qobject_cast<const MParamList*>(m_model.data());
    QStringList files;
    if (!list || !mime || !mime->hasUrls())
        return files;
    const QList<QUrl> urls = mime->urls();
    for (const QUrl& url : urls) {
        const QFileInfo info(url.toLocalFile());
        if (url.isLocalFile() && info.isFile() &&
            info.suffix().compare(list->extension(), Qt::CaseInsensitive) == 0)
            files.append(info.absoluteFilePath());
    }
    return files;
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
    m_pressRow = -1;
    if (!selectAt(event->pos().y()))
        return;
    if (event->button() == Qt::LeftButton) {
        m_pressRow = m_model->currentRow();
        m_pressPosition = event->pos();
    }
    Q_EMIT click();
}

void MListPanel::mouseMoveEvent(QMouseEvent* event)
{
    if (!(event->buttons() & Qt::LeftButton) || m_pressRow < 0 || !m_model ||
        (event->pos() - m_pressPosition).manhattanLength() < QApplication::startDragDistance())
        return;
    QMimeData* mime = m_model->mimeData({m_model->index(m_pressRow, 0)});
    m_pressRow = -1;
    if (!mime)
        return;
    auto* drag = new QDrag(this);
    drag->setMimeData(mime);
    drag->exec(Qt::MoveAction);
}

bool MListPanel::acceptsDrop(const QMimeData* mime) const
{
    return m_model && (m_model->canDropMimeData(mime, Qt::MoveAction, -1, 0, QModelIndex()) ||
                       !importableFiles(mime).isEmpty());
}

void MListPanel::dragEnterEvent(QDragEnterEvent* event)
{
    if (acceptsDrop(event->mimeData()))
        event->acceptProposedAction();
    else
        event->ignore();
}

void MListPanel::dragMoveEvent(QDragMoveEvent* event)
{
    if (acceptsDrop(event->mimeData()))
        event->acceptProposedAction();
    else
        event->ignore();
}

void MListPanel::dropEvent(QDropEvent* event)
{
    if (dropData(event->mimeData(), event->pos().y()))
        event->acceptProposedAction();
    else
        event->ignore();
}

bool MListPanel::dropData(const QMimeData* mime, int y)
{
    if (!acceptsDrop(mime))
        return false;
    // Files dropped from outside are imported; a row of this list moves.
    const QStringList files = importableFiles(mime);
    bool dropped = false;
    if (!files.isEmpty()) {
        auto* list = qobject_cast<MParamList*>(m_model.data());
        for (const QString& file : files)
            dropped = list->importFile(file) || dropped;
    } else {
        dropped = m_model->dropMimeData(mime, Qt::MoveAction, dropRowAt(y), 0, QModelIndex());
    }
    update();
    return dropped;
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
