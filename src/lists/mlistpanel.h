#pragma once

#include <QPointer>
#include <QRectF>
#include <QStringList>
#include <QWidget>

#include "lists/mlistpaneldelegate.h"

class QMimeData;
class MTableModel;

// The drawing surface of an MListWidget: the items of a table as a column of
// cells of fixed height, scrolled by firstY pixels. Row r lies at
// y = r * pitch - firstY, where the pitch is the cell height plus the gap.
class MListPanel : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(int firstY READ firstY WRITE setFirstY NOTIFY firstYChanged)

public:
    // Page keys scroll by this many pixels.
    static constexpr int pageStep = 50;
    // Room left under the last row when scrolled to the end.
    static constexpr int bottomMargin = 20;

    explicit MListPanel(QWidget* parent = nullptr);

    int firstY() const { return m_firstY; }
    qreal pitch() const { return m_cellHeight + m_gap; }
    int rowCount() const;
    // The largest firstY: the last row and the bottom margin fill the panel.
    int maximumFirstY() const;
    // The row under a y of the panel, -1 when none.
    int rowAt(int y) const;
    // The cell of a row, in panel coordinates.
    QRectF rowRect(int row) const;
    // Scrolls so that the row is the first shown, when it is not wholly visible.
    void ensureRowVisible(int row);
    // Where a drop at y puts a dragged row: before the row whose upper half
    // is under y; the row count below the last row.
    int dropRowAt(int y) const;
    // Files of the list's kind that a drop of data would import.
    QStringList importableFiles(const QMimeData* mime) const;
    // What a drop at y does: files of the list's kind are imported, a row
    // dragged from the list moves there. False when nothing was taken.
    bool dropData(const QMimeData* mime, int y);

    MTableModel* model() const { return m_model; }
    void setModel(MTableModel* model);
    MListPanelDelegate* delegate() const { return m_delegate; }
    void setDelegate(MListPanelDelegate* delegate);
    qreal cellWidth() const { return m_cellWidth; }
    qreal cellHeight() const { return m_cellHeight; }
    qreal gap() const { return m_gap; }
    void setCellSize(qreal width, qreal height);
    void setGap(qreal gap);

    QSize sizeHint() const override;

public Q_SLOTS:
    // Clamped to 0 and maximumFirstY().
    void setFirstY(int firstY);

Q_SIGNALS:
    void firstYChanged(int firstY);
    void click();
    void doubleClick();

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    // Makes the row under y current; false when there is none.
    bool selectAt(int y);
    bool acceptsDrop(const QMimeData* mime) const;

    QPointer<MTableModel> m_model;
    QPointer<MListPanelDelegate> m_delegate;
    int m_firstY = 0;
    qreal m_cellWidth = 100.0;
    qreal m_cellHeight = 25.0;
    qreal m_gap = 3.0;
    // Where the left button went down on a row, for the start of a drag.
    QPoint m_pressPosition;
    int m_pressRow = -1;
};
