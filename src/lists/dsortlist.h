#pragma once

#include <QDialog>
#include <QStringList>

class MParamList;
class QListWidget;

// Reorders a file list: the right column is the order in which items show,
// the left one holds the items taken out of it. "Ok" makes the right column
// the list's order; items left out stay shown until the next start.
class DSortList : public QDialog
{
    Q_OBJECT

public:
    explicit DSortList(MParamList* list, QWidget* parent = nullptr);

    QListWidget* hiddenList() const { return m_hiddenList; }
    QListWidget* orderList() const { return m_orderList; }
    // The ids of the right column, top to bottom.
    QStringList order() const;

public Q_SLOTS:
    void showSelected();
    void hideSelected();
    void moveUp();
    void moveDown();
    void moveAtTop();
    void moveAtBottom();
    void on_okButton_clicked();

private:
    // Moves the current row of the order to another row; false at the ends.
    bool moveCurrentTo(int row);

    MParamList* m_list;
    QListWidget* m_hiddenList;
    QListWidget* m_orderList;
};
