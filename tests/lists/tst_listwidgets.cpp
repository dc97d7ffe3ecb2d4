#include "support/testenvironment.h"

#include "lists/mlistpanel.h"
#include "lists/mlistpaneldelegate.h"
#include "lists/mlistwidget.h"
#include "lists/mproxymodel.h"
#include "lists/mtablemodel.h"

#include <QLineEdit>
#include <QPainter>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTableView>

namespace {

class Item : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString id MEMBER m_id CONSTANT)
    Q_PROPERTY(QString description MEMBER m_description NOTIFY descriptionChanged)
    Q_PROPERTY(int weight MEMBER m_weight CONSTANT)

public:
    Item(const QString& id, const QString& description, int weight = 0)
        : m_id(id), m_description(description), m_weight(weight)
    {
    }

Q_SIGNALS:
    void descriptionChanged(const QString& description);

private:
    QString m_id;
    QString m_description;
    int m_weight;
};

// Paints each row in a colour of its own, the current one in white, so that
// the geometry can be read back from pixels.
class ColourDelegate : public MListPanelDelegate
{
public:
    using MListPanelDelegate::MListPanelDelegate;
    void paint(QPainter* painter, QObject* item, const QRectF& rect, bool selected) override
    {
        const int id = item->property("id").toString().mid(1).toInt();
        painter->fillRect(rect, selected ? QColor(Qt::white) : QColor(10 * id, 0, 100));
    }
};

void fill(MTableModel& model, int rows)
{
    for (int row = 0; row < rows; ++row)
        model.addItem(new Item(QStringLiteral("r%1").arg(row), QStringLiteral("row %1").arg(row)));
}

// A list of 200 by 100 pixels on model, shown.
bool showList(MListWidget& widget, MTableModel& model)
{
    widget.resize(200, 100);
    widget.setSourceModel(&model);
    widget.show();
    return QTest::qWaitForWindowExposed(&widget);
}

void fillPens(MTableModel& model)
{
    model.addItem(new Item(QStringLiteral("a"), QStringLiteral("Red pencil"), 3));
    model.addItem(new Item(QStringLiteral("b"), QStringLiteral("Blue ink"), 1));
    model.addItem(new Item(QStringLiteral("c"), QStringLiteral("red chalk"), 2));
}

} // namespace

class TestListWidgets : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void panelGeometryAndClamping();
    void pressesPickRows();
    void keysAndScrollBar();
    void currentRowIsShown();
    void paintedRows();
    void proxyFilter();
    void proxyColumnsSortAndClicks();
};

void TestListWidgets::initTestCase()
{
    qRegisterMetaType<MTableModel*>();
    qRegisterMetaType<QList<QPersistentModelIndex>>();
    qRegisterMetaType<QAbstractItemModel::LayoutChangeHint>();
}

void TestListWidgets::panelGeometryAndClamping()
{
    MTableModel model;
    fill(model, 10);
    MListWidget widget;
    widget.resize(200, 100);
    widget.show();
    QVERIFY(QTest::qWaitForWindowExposed(&widget));
    QSignalSpy models(&widget, &MListWidget::sourceModelChanged);
    widget.setSourceModel(&model);
    QCOMPARE(models.count(), 1);
    QCOMPARE(models.at(0).at(0).value<MTableModel*>(), &model);
    MListPanel* panel = widget.panel();
    QCOMPARE(panel->height(), 100);
    QCOMPARE(panel->width() + 3 + widget.scrollBar()->width(), 200);
    QCOMPARE(panel->pitch(), 28.0);

    // Ten rows of 28 and the 20-pixel bottom margin in a panel of 100.
    QCOMPARE(panel->maximumFirstY(), 200);
    QCOMPARE(widget.scrollBar()->maximum(), 200);
    panel->setFirstY(500);
    QCOMPARE(panel->firstY(), 200);
    QCOMPARE(widget.scrollBar()->value(), 200);
    panel->setFirstY(-7);
    QCOMPARE(panel->firstY(), 0);
    QCOMPARE(panel->rowRect(3), QRectF(0, 84, panel->width(), 25));

    // Fewer rows: the limit shrinks, and the position with it.
    panel->setFirstY(150);
    while (model.count() > 4)
        model.removeRow(model.count() - 1);
    QCOMPARE(panel->maximumFirstY(), 32);
    QCOMPARE(panel->firstY(), 32);
    QCOMPARE(widget.scrollBar()->maximum(), 32);
    QCOMPARE(widget.scrollBar()->value(), 32);
    while (model.count() > 2)
        model.removeRow(0);
    QCOMPARE(panel->maximumFirstY(), 0);
    QCOMPARE(panel->firstY(), 0);

    // Brush lists' cells.
    widget.setCellSize(150, 60);
    QCOMPARE(panel->pitch(), 63.0);
    QCOMPARE(widget.scrollBar()->pageStep(), 600);
    QCOMPARE(panel->maximumFirstY(), 46);
    QVERIFY(panel->minimumWidth() >= 150);
}

void TestListWidgets::pressesPickRows()
{
    MTableModel model;
    fill(model, 10);
    model.setCurrentRow(-1);
    MListWidget widget;
    QVERIFY(showList(widget, model));
    MListPanel* panel = widget.panel();
    // The focus elsewhere first, so that the press is what brings it. Without
    // a window manager the window may not be active: its focus child tells.
    widget.scrollBar()->setFocusPolicy(Qt::StrongFocus);
    widget.scrollBar()->setFocus();
    QCOMPARE(widget.focusWidget(), widget.scrollBar());
    QSignalSpy clicks(&widget, &MListWidget::click);
    QSignalSpy doubleClicks(&widget, &MListWidget::doubleClick);

    // The gap under a cell belongs to it.
    for (int y : {0, 24, 27})
        QCOMPARE(panel->rowAt(y), 0);
    QCOMPARE(panel->rowAt(28), 1);
    QCOMPARE(panel->rowAt(-1), -1);

    QTest::mouseClick(panel, Qt::LeftButton, Qt::NoModifier, QPoint(10, 30));
    QCOMPARE(model.currentRow(), 1);
    QCOMPARE(clicks.count(), 1);
    QCOMPARE(widget.focusWidget(), panel);

    panel->setFirstY(50);
    QCOMPARE(panel->rowAt(10), 2);
    QTest::mouseClick(panel, Qt::LeftButton, Qt::NoModifier, QPoint(10, 10));
    QCOMPARE(model.currentRow(), 2);
    QTest::mouseDClick(panel, Qt::LeftButton, Qt::NoModifier, QPoint(10, 90));
    QCOMPARE(model.currentRow(), 5);
    QCOMPARE(doubleClicks.count(), 1);

    // Below the last row nothing is hit.
    while (model.count() > 2)
        model.removeRow(model.count() - 1);
    model.setCurrentRow(0);
    QCOMPARE(panel->firstY(), 0);
    QCOMPARE(panel->rowAt(60), -1);
    const int before = clicks.count();
    QTest::mouseClick(panel, Qt::LeftButton, Qt::NoModifier, QPoint(10, 60));
    QCOMPARE(clicks.count(), before);
    QCOMPARE(model.currentRow(), 0);
}

void TestListWidgets::keysAndScrollBar()
{
    MTableModel model;
    fill(model, 10);
    MListWidget widget;
    QVERIFY(showList(widget, model));
    MListPanel* panel = widget.panel();
    panel->setFirstY(0);
    panel->setFocus();

    // A row of 28 or a page of 50 at a time, down to 0 and no further.
    const QPair<Qt::Key, int> keys[] = {
        {Qt::Key_Down, 28}, {Qt::Key_PageDown, 78}, {Qt::Key_Up, 50}, {Qt::Key_PageUp, 0}, {Qt::Key_Up, 0}};
    for (const auto& key : keys) {
        QTest::keyClick(panel, key.first);
        QCOMPARE(panel->firstY(), key.second);
    }
    for (int i = 0; i < 6; ++i)
        QTest::keyClick(panel, Qt::Key_PageDown);
    QCOMPARE(panel->firstY(), 200);
    QCOMPARE(widget.scrollBar()->value(), 200);

    // The scroll bar moves the panel too.
    QSignalSpy moves(panel, &MListPanel::firstYChanged);
    widget.scrollBar()->setValue(56);
    QCOMPARE(panel->firstY(), 56);
    QCOMPARE(moves.count(), 1);
    QCOMPARE(moves.at(0).at(0).toInt(), 56);
    panel->setFirstY(56);
    QCOMPARE(moves.count(), 1);
}

void TestListWidgets::currentRowIsShown()
{
    MTableModel model;
    fill(model, 10);
    MListWidget widget;
    QVERIFY(showList(widget, model));
    MListPanel* panel = widget.panel();
    model.setCurrentRow(0);
    panel->setFirstY(0);

    // Wholly visible rows don't scroll.
    model.setCurrentRow(2);
    QCOMPARE(panel->firstY(), 0);
    // A row out at the bottom comes to the top, as far as the limit lets it.
    model.setCurrentRow(3);
    QCOMPARE(panel->firstY(), 84);
    model.setCurrentRow(8);
    QCOMPARE(panel->firstY(), 200);
    QCOMPARE(widget.scrollBar()->value(), 200);
    // A row cut at the top comes to the top.
    model.setCurrentRow(7);
    QCOMPARE(panel->firstY(), 196);
    model.setCurrentRow(1);
    QCOMPARE(panel->firstY(), 28);
    // A new item is current, and shown.
    model.addItem(new Item(QStringLiteral("r10"), QStringLiteral("added")));
    QCOMPARE(panel->firstY(), 228);
}

void TestListWidgets::paintedRows()
{
    MTableModel model;
    fill(model, 10);
    MListWidget widget;
    widget.setDelegate(new ColourDelegate);
    QCOMPARE(widget.delegate()->parent(), &widget);
    QVERIFY(showList(widget, model));
    MListPanel* panel = widget.panel();
    model.setCurrentRow(3);
    panel->setFirstY(60);

    const QImage image = panel->grab().toImage();
    QCOMPARE(image.height(), 100);
    const QColor window = panel->palette().color(QPalette::Window);
    // Row 2 lies at 56 - 60 = -4 to 21, row 3 (current) at 24 to 49, row 5 at 80 to 105.
    QCOMPARE(image.pixelColor(5, 0), QColor(20, 0, 100));
    QCOMPARE(image.pixelColor(5, 20), QColor(20, 0, 100));
    QCOMPARE(image.pixelColor(5, 22), window);
    QCOMPARE(image.pixelColor(5, 24), QColor(Qt::white));
    QCOMPARE(image.pixelColor(5, 48), QColor(Qt::white));
    QCOMPARE(image.pixelColor(5, 50), window);
    QCOMPARE(image.pixelColor(5, 52), QColor(40, 0, 100));
    QCOMPARE(image.pixelColor(5, 99), QColor(50, 0, 100));
    QCOMPARE(image.pixelColor(panel->width() - 1, 30), QColor(Qt::white));

    // The default delegate's text: the description, else the id.
    Item described(QStringLiteral("id-1"), QStringLiteral("  Soft pencil "));
    Item bare(QStringLiteral("id-2"), QStringLiteral("   "));
    QCOMPARE(MListPanelDelegate::itemText(&described), QStringLiteral("Soft pencil"));
    QCOMPARE(MListPanelDelegate::itemText(&bare), QStringLiteral("id-2"));
    QCOMPARE(MListPanelDelegate::itemText(nullptr), QString());
    // It paints selected cells in the highlight colour.
    QImage cell(60, 20, QImage::Format_ARGB32);
    cell.fill(Qt::transparent);
    {
        QPainter painter(&cell);
        MListPanelDelegate delegate;
        delegate.paint(&painter, &described, QRectF(0, 0, 60, 20), true);
        delegate.paint(&painter, nullptr, QRectF(0, 0, 60, 20), false);
    }
    QCOMPARE(cell.pixelColor(1, 1), QApplication::palette().color(QPalette::Highlight));
}

void TestListWidgets::proxyFilter()
{
    MTableModel model;
    fillPens(model);
    model.addItem(new Item(QStringLiteral("d"), QStringLiteral("Charcoal [soft]"), 12));
    MProxyModel proxy;
    proxy.setModel(&model);
    QLineEdit box;
    proxy.setSearchBox(&box);
    QCOMPARE(proxy.rowCount(), 4);

    box.setText(QStringLiteral("  RED "));
    QCOMPARE(proxy.filterRegExp().pattern(), QStringLiteral("*RED*"));
    QCOMPARE(proxy.filterRegExp().patternSyntax(), QRegExp::Wildcard);
    QCOMPARE(proxy.filterRegExp().caseSensitivity(), Qt::CaseInsensitive);
    QCOMPARE(proxy.filterKeyColumn(), -1);
    QCOMPARE(proxy.sortRole(), 0);
    QCOMPARE(proxy.rowCount(), 2);
    QCOMPARE(proxy.mapToSource(proxy.index(1, 0)).row(), 2);

    // Every column counts: the weight column shows "12".
    box.setText(QStringLiteral("12"));
    QCOMPARE(proxy.rowCount(), 1);
    QCOMPARE(proxy.mapToSource(proxy.index(0, 0)).row(), 3);
    // Wildcards of the user's text work as wildcards; brackets as a set.
    box.setText(QStringLiteral("b?ue"));
    QCOMPARE(proxy.rowCount(), 1);
    box.setText(QStringLiteral("nothing like it"));
    QCOMPARE(proxy.rowCount(), 0);

    // A changed item is filtered again.
    box.setText(QStringLiteral("ink"));
    QCOMPARE(proxy.rowCount(), 1);
    model.item(0)->setProperty("description", QStringLiteral("Pink pencil"));
    QCOMPARE(proxy.rowCount(), 2);

    box.setText(QStringLiteral("   "));
    QCOMPARE(proxy.filterRegExp().pattern(), QStringLiteral("*"));
    QCOMPARE(proxy.sortRole(), 14);
    QCOMPARE(proxy.rowCount(), 4);

    // Return applies the box's text too.
    QSignalSpy resets(&proxy, &QAbstractItemModel::modelReset);
    QSignalSpy layouts(&proxy, &QAbstractItemModel::layoutChanged);
    QTest::keyClick(&box, Qt::Key_Return);
    QVERIFY(resets.count() + layouts.count() > 0);
    QCOMPARE(proxy.rowCount(), 4);
}

void TestListWidgets::proxyColumnsSortAndClicks()
{
    MTableModel model;
    fillPens(model);
    MProxyModel proxy;
    proxy.setModel(&model);
    QTableView view;
    proxy.setView(&view);
    QLineEdit box;
    proxy.setSearchBox(&box);
    view.resize(400, 200);
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    QCOMPARE(view.model(), &proxy);

    proxy.setColumns({"weight", "description"});
    QCOMPARE(proxy.columnCount(), 2);
    QCOMPARE(proxy.headerData(0, Qt::Horizontal).toString(), QStringLiteral("description"));
    QCOMPARE(proxy.headerData(1, Qt::Horizontal).toString(), QStringLiteral("weight"));

    proxy.setSortColumn("weight");
    QCOMPARE(proxy.index(0, 0).data().toString(), QStringLiteral("Blue ink"));
    QCOMPARE(proxy.index(2, 0).data().toString(), QStringLiteral("Red pencil"));
    proxy.resetSort();
    QCOMPARE(proxy.index(0, 0).data().toString(), QStringLiteral("Red pencil"));
    QCOMPARE(proxy.index(2, 0).data().toString(), QStringLiteral("red chalk"));
    // An emptied search box also gives the table's order back.
    proxy.setSortColumn("description");
    QCOMPARE(proxy.index(0, 0).data().toString(), QStringLiteral("Blue ink"));
    box.setText(QStringLiteral("x"));
    box.clear();
    QCOMPARE(proxy.index(0, 0).data().toString(), QStringLiteral("Red pencil"));

    // The model's current row becomes the view's, and back.
    model.setCurrentRow(0);
    model.setCurrentRow(2);
    QCOMPARE(view.currentIndex().row(), 2);
    view.setCurrentIndex(proxy.index(1, 1));
    QCOMPARE(model.currentRow(), 1);

    // Clicks are told in rows and columns of the table, through the filter.
    box.setText(QStringLiteral("red"));
    QCOMPARE(proxy.rowCount(), 2);
    view.setCurrentIndex(proxy.index(1, 1));
    QCOMPARE(model.currentRow(), 2);
    QSignalSpy doubleClicks(&proxy, qOverload<int, int>(&MProxyModel::doubleClick));
    proxy.doubleClick();
    QCOMPARE(doubleClicks.count(), 1);
    QCOMPARE(doubleClicks.at(0).at(0).toInt(), 2);
    QCOMPARE(doubleClicks.at(0).at(1).toInt(), model.columnOf("weight"));
    const QRect cell = view.visualRect(proxy.index(0, 0));
    // A press makes the cell current; the view's double click signal does the rest.
    QTest::mouseClick(view.viewport(), Qt::LeftButton, Qt::NoModifier, cell.center());
    QCOMPARE(model.currentRow(), 0);
    Q_EMIT view.doubleClicked(proxy.index(0, 0));
    QCOMPARE(doubleClicks.count(), 2);
    QCOMPARE(doubleClicks.at(1).at(0).toInt(), 0);
    QCOMPARE(doubleClicks.at(1).at(1).toInt(), model.columnOf("description"));

    QSignalSpy menus(&proxy, qOverload<const QPointF&, int, int>(&MProxyModel::contextMenuRequested));
    proxy.contextMenuRequested(QPointF(cell.center()));
    QCOMPARE(menus.count(), 1);
    QCOMPARE(menus.at(0).at(0).toPointF(), QPointF(cell.center()));
    QCOMPARE(menus.at(0).at(1).toInt(), 0);
    QCOMPARE(menus.at(0).at(2).toInt(), model.columnOf("description"));
    proxy.contextMenuRequested(QPointF(5, 190));
    QCOMPARE(menus.at(1).at(1).toInt(), -1);
    QCOMPARE(menus.at(1).at(2).toInt(), -1);

    // A row the filter hides is not forced into the view.
    proxy.setCurrentRow(1);
    QCOMPARE(model.currentRow(), 1);
    QCOMPARE(proxy.mapToSource(view.currentIndex()).row(), 0);
}

QUILLMERE_TEST_MAIN(TestListWidgets)
#include "tst_listwidgets.moc"
