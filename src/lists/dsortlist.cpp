#include "lists/dsortlist.h"

#include "app/mlogger.h"
#include "lists/mparamlist.h"

#include <QHBoxLayout>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

QPushButton* addButton(QBoxLayout* layout, const QString& text)
{
    auto* button = new QPushButton(text);
    layout->addWidget(button);
    return button;
}

void moveCurrentItem(QListWidget* from, QListWidget* to)
{
    const int row = from->currentRow();
    if (row < 0)
        return;
    QListWidgetItem* item = from->takeItem(row);
    to->addItem(item);
    to->setCurrentItem(item);
}

} // namespace

DSortList::DSortList(MParamList* list, QWidget* parent)
    : QDialog(parent), m_list(list), m_hiddenList(new QListWidget(this)), m_orderList(new QListWidget(this))
{
    setWindowTitle(tr("Sort brush list"));

    auto* columns = new QHBoxLayout;
    columns->addWidget(m_hiddenList, 1);
    auto* sideButtons = new QVBoxLayout;
    sideButtons->addStretch();
    QPushButton* showButton = addButton(sideButtons, tr(">>"));
    QPushButton* hideButton = addButton(sideButtons, tr("<<"));
    sideButtons->addStretch();
    columns->addLayout(sideButtons);
    columns->addWidget(m_orderList, 1);
    auto* moveButtons = new QVBoxLayout;
    QPushButton* upButton = addButton(moveButtons, tr("Move up"));
    QPushButton* downButton = addButton(moveButtons, tr("Move down"));
    QPushButton* topButton = addButton(moveButtons, tr("Move at top"));
    QPushButton* bottomButton = addButton(moveButtons, tr("Move at bottom"));
    moveButtons->addStretch();
    columns->addLayout(moveButtons);

    auto* dialogButtons = new QHBoxLayout;
    dialogButtons->addStretch();
    QPushButton* okButton = addButton(dialogButtons, tr("Ok"));
    okButton->setObjectName(QStringLiteral("okButton"));
    okButton->setDefault(true);
    QPushButton* cancelButton = addButton(dialogButtons, tr("Cancel"));

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(columns, 1);
    layout->addLayout(dialogButtons);

    connect(showButton, &QPushButton::clicked, this, &DSortList::showSelected);
    connect(hideButton, &QPushButton::clicked, this, &DSortList::hideSelected);
    connect(upButton, &QPushButton::clicked, this, &DSortList::moveUp);
    connect(downButton, &QPushButton::clicked, this, &DSortList::moveDown);
    connect(topButton, &QPushButton::clicked, this, &DSortList::moveAtTop);
    connect(bottomButton, &QPushButton::clicked, this, &DSortList::moveAtBottom);
    connect(okButton, &QPushButton::clicked, this, &DSortList::on_okButton_clicked);
    connect(cancelButton, &QPushButton::clicked, this, &QDialog::reject);

    if (!list)
        return;
    const QList<QObject*> items = list->items();
    for (QObject* object : items) {
        const QString id =
            MTableModel::normalizedId(object->property(list->idPropertyName().constData()).toString());
        const MParamFile* record = list->fileRecord(id);
        if (!record) {
            MLogger::instance()->write(QStringLiteral("%1: %2 %3")
                                           .arg(QStringLiteral("DSortList::DSortList"),
                                                QStringLiteral("system error, invalid index ident:"), id));
            continue;
        }
        const QString text = QStringLiteral("%1-%2 (%3)")
                                 .arg(object->property(MParamList::groupProperty).toString(),
                                      object->property(MParamList::descriptionProperty).toString(),
                                      record->pathType == MEnum::SystemPath ? tr("system") : tr("user"));
        auto* row = new QListWidgetItem(text, m_orderList);
        row->setData(Qt::UserRole, id);
    }
    if (m_orderList->count() > 0)
        m_orderList->setCurrentRow(0);
}

QStringList DSortList::order() const
{
    QStringList ids;
    for (int row = 0; row < m_orderList->count(); ++row)
        ids.append(m_orderList->item(row)->data(Qt::UserRole).toString());
    return ids;
}

void DSortList::showSelected()
{
    moveCurrentItem(m_hiddenList, m_orderList);
}

void DSortList::hideSelected()
{
    moveCurrentItem(m_orderList, m_hiddenList);
}

void DSortList::moveUp()
{
    moveCurrentTo(m_orderList->currentRow() - 1);
}

void DSortList::moveDown()
{
    moveCurrentTo(m_orderList->currentRow() + 1);
}

void DSortList::moveAtTop()
{
    moveCurrentTo(0);
}

void DSortList::moveAtBottom()
{
    moveCurrentTo(m_orderList->count() - 1);
}

void DSortList::on_okButton_clicked()
{
    if (m_list)
        m_list->setOrder(order());
    accept();
}

bool DSortList::moveCurrentTo(int row)
{
    const int current = m_orderList->currentRow();
    const int rows = m_orderList->count();
    if (rows < 2 || current < 0 || row < 0 || row >= rows || row == current)
        return false;
    QListWidgetItem* item = m_orderList->takeItem(current);
    m_orderList->insertItem(row, item);
    m_orderList->setCurrentItem(item);
    return true;
}
