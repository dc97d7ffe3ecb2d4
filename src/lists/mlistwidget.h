#pragma once

#include <QPointer>
#include <QWidget>

class MListPanel;
class MListPanelDelegate;
class MTableModel;
class QScrollBar;

// A table shown as a column of fixed-height cells painted by a delegate, with
// a vertical scroll bar that follows the panel's firstY both ways.
class MListWidget : public QWidget
{
    Q_OBJECT

public:
    explicit MListWidget(QWidget* parent = nullptr);

    MTableModel* sourceModel() const { return m_model; }
    MListPanel* panel() const { return m_panel; }
    QScrollBar* scrollBar() const { return m_scrollBar; }

    MListPanelDelegate* delegate() const { return m_delegate; }
    // The widget takes the delegate; the former one goes.
    void setDelegate(MListPanelDelegate* delegate);

    qreal cellWidth() const;
    qreal cellHeight() const;
    qreal gap() const;
    void setCellSize(qreal width, qreal height);
    void setGap(qreal gap);

public Q_SLOTS:
    void setSourceModel(MTableModel* model);
    void onModelCurrentRowChanged(int row);
    void onModelCountChanged(int rows);

Q_SIGNALS:
    void doubleClick();
    void click();
    void sourceModelChanged(MTableModel* model);

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void resetScrollBar();
    void onPanelFirstYChanged(int firstY);

    MListPanel* m_panel;
    QScrollBar* m_scrollBar;
    MListPanelDelegate* m_delegate;
    QPointer<MTableModel> m_model;
};
