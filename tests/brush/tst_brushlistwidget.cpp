#include "support/glcontext.h"
#include "support/testenvironment.h"

#include "app/msettings.h"
#include "brush/dbrushsettings.h"
#include "brush/mbrush.h"
#include "brush/mbrushlist.h"
#include "brush/mbrushlistdelegate.h"
#include "brush/mbrushlistwidget.h"
#include "effects/mshader.h"
#include "effects/mshaderlist.h"
#include "lists/mlistpanel.h"
#include "lists/mtablemodel.h"

#include <QAction>
#include <QFile>
#include <QIcon>
#include <QMenu>
#include <QPainter>
#include <QTimer>

#include <memory>

namespace {

// A small red thumbnail, so that the icons beside it stay clear of it.
QImage redPreview()
{
    QImage image(4, 4, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::red);
    return image;
}

MBrush* addBrush(MTableModel& model, const QString& description, const QString& group)
{
    auto* brush = new MBrush;
    brush->set_description(description);
    brush->set_group(group);
    brush->setPreview(redPreview());
    model.addItem(brush);
    return brush;
}

// The pixels of one icon slot as the delegate should leave them: the icon over the cell's fill.
QImage expectedSlot(const QString& icon, const QColor& background)
{
    QImage slot(MBrushListDelegate::iconSize, MBrushListDelegate::iconSize,
                QImage::Format_ARGB32_Premultiplied);
    slot.fill(background);
    if (!icon.isEmpty()) {
        QPainter painter(&slot);
        painter.drawPixmap(0, 0,
                           QIcon(icon).pixmap(MBrushListDelegate::iconSize, MBrushListDelegate::iconSize));
    }
    return slot.convertToFormat(QImage::Format_RGB32);
}

QImage slotAt(const QImage& grab, const QRectF& cell, int k)
{
    return grab
        .copy(int(cell.x()) + MBrushListDelegate::iconLeft + MBrushListDelegate::iconStep * k,
              int(cell.y()) + MBrushListDelegate::iconTop, MBrushListDelegate::iconSize,
              MBrushListDelegate::iconSize)
        .convertToFormat(QImage::Format_RGB32);
}

// Whether two images of one size differ by at most tolerance in any channel.
bool alike(const QImage& a, const QImage& b, int tolerance)
{
    if (a.size() != b.size())
        return false;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            const QRgb p = a.pixel(x, y);
            const QRgb q = b.pixel(x, y);
            if (qAbs(qRed(p) - qRed(q)) > tolerance || qAbs(qGreen(p) - qGreen(q)) > tolerance ||
                qAbs(qBlue(p) - qBlue(q)) > tolerance)
                return false;
        }
    }
    return true;
}

} // namespace

class TestBrushListWidget : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void delegatePaintsPreviewSelectionIconsAndText();
    void listWidgetShowsTheBrushList();
    void contextMenuActions();
    void resetSettingsReloadsTheBrushFile();
    void editSettingsRunsTheDialogOnTheCurrentBrush();

private:
    QuillmereTest::GLContext m_gl;
};

void TestBrushListWidget::initTestCase()
{
    QVERIFY2(m_gl.create(), qPrintable(m_gl.why()));
}

void TestBrushListWidget::delegatePaintsPreviewSelectionIconsAndText()
{
    auto engine = std::make_unique<MShader>();
    engine->setType(MShader::BrushShader);
    engine->setSource(QStringLiteral("@main\nf_color = vec4(1.0);\n"));
    MShader* added = MShaderList::instance()->addShader(std::move(engine));
    QVERIFY(added);

    MTableModel model;
    model.setItemClass(&MBrush::staticMetaObject);
    addBrush(model, QStringLiteral("plain"), QStringLiteral("basics"));
    MBrush* eraser = addBrush(model, QStringLiteral("rubber"), QStringLiteral("basics"));
    eraser->setEraser(true);
    MBrush* full = addBrush(model, QStringLiteral("full"), QStringLiteral("inks"));
    full->setEraser(true);
    full->set_shaderId(added->id());
    QImage texture(8, 8, QImage::Format_ARGB32);
    texture.fill(Qt::blue);
    full->setTexture(texture);
    full->setPreview(redPreview());
    MBrush* textureOnly = addBrush(model, QStringLiteral("paper"), QStringLiteral("inks"));
    textureOnly->setTexture(texture);
    model.setCurrentRow(1);

    MListWidget widget;
    widget.setDelegate(new MBrushListDelegate);
    widget.setCellSize(150, 60);
    widget.setSourceModel(&model);
    widget.resize(200, 280);
    widget.show();
    QVERIFY(QTest::qWaitForWindowExposed(&widget));
    const QImage grab = widget.panel()->grab().toImage().convertToFormat(QImage::Format_RGB32);
    MListPanel* panel = widget.panel();

    const QColor selection = MSettings::instance()->tableSelectionColor();
    QVERIFY(selection != QColor(Qt::white));
    const QString eraserIcon = QStringLiteral(":/icons/tools/eraser-tool.ico");
    const QString engineIcon = QStringLiteral(":/icons/show-fx.ico");
    const QString textureIcon = QStringLiteral(":/icons/texture.ico");
    for (const QString& icon : {eraserIcon, engineIcon, textureIcon, QStringLiteral(":/icons/image.ico")})
        QVERIFY2(!QIcon(icon).pixmap(16, 16).isNull(), qPrintable(icon));

    const QStringList icons[] = {{}, {eraserIcon}, {eraserIcon, engineIcon, textureIcon}, {textureIcon}};
    for (int row = 0; row < 4; ++row) {
        const QRectF cell = panel->rowRect(row);
        const QColor fill = row == 1 ? selection : QColor(Qt::white);
        // The thumbnail at the top left, over the frame.
        QCOMPARE(QColor(grab.pixel(int(cell.x()), int(cell.y()))), QColor(Qt::red));
        QCOMPARE(QColor(grab.pixel(int(cell.x()) + 3, int(cell.y()) + 3)), QColor(Qt::red));
        QCOMPARE(QColor(grab.pixel(int(cell.x()) + 4, int(cell.y()) + 4)), fill);
        // The cell's fill away from the icons and the text.
        QCOMPARE(QColor(grab.pixel(int(cell.x()) + 100, int(cell.y()) + 15)), fill);
        // Icons only for what the brush has, from the left.
        for (int k = 0; k < 3; ++k) {
            const QString icon = icons[row].value(k);
            QVERIFY2(alike(slotAt(grab, cell, k), expectedSlot(icon, fill), 2),
                     qPrintable(QStringLiteral("row %1 slot %2").arg(row).arg(k)));
        }
        // Dark text at the lower right, none in the margins at the right and the bottom.
        int textPixels = 0;
        int marginPixels = 0;
        for (int y = int(cell.y()) + 30; y < int(cell.bottom()) - 1; ++y) {
            for (int x = int(cell.x()) + 40; x < int(cell.right()) - 1; ++x) {
                const bool dark = qGray(grab.pixel(x, y)) < 100;
                const bool inMargin = x >= int(cell.right()) - MBrushListDelegate::textMargin ||
                                      y >= int(cell.bottom()) - MBrushListDelegate::textMargin;
                (inMargin ? marginPixels : textPixels) += dark ? 1 : 0;
            }
        }
        QVERIFY2(textPixels > 20, qPrintable(QString::number(textPixels)));
        QCOMPARE(marginPixels, 0);
    }
    // The longer text reaches further left.
    auto leftmostDark = [&](int row) {
        const QRectF cell = panel->rowRect(row);
        for (int x = int(cell.x()) + 30; x < int(cell.right()); ++x)
            for (int y = int(cell.y()) + 30; y < int(cell.bottom()) - 5; ++y)
                if (qGray(grab.pixel(x, y)) < 100)
                    return x;
        return -1;
    };
    QVERIFY(leftmostDark(1) < leftmostDark(2));
    MShaderList::instance()->removeShader(added->id());
}

void TestBrushListWidget::listWidgetShowsTheBrushList()
{
    MBrushListWidget widget;
    QCOMPARE(widget.sourceModel(), static_cast<MTableModel*>(MBrushList::instance()));
    QCOMPARE(widget.cellWidth(), 150.0);
    QCOMPARE(widget.cellHeight(), 60.0);
    QVERIFY(qobject_cast<MBrushListDelegate*>(widget.delegate()));
    QVERIFY(MBrushList::instance()->count() > 0);
}

void TestBrushListWidget::contextMenuActions()
{
    MBrushListWidget widget;
    auto texts = [&] {
        std::unique_ptr<QMenu> menu(widget.createContextMenu());
        QStringList list;
        for (const QAction* action : menu->actions())
            list << (action->isSeparator() ? QStringLiteral("-") : action->text());
        return list;
    };
    QCOMPARE(texts(), (QStringList{"Edit settings", "Reset settings"}));
    QAction first(QStringLiteral("Duplicate"));
    QAction second(QStringLiteral("Delete"));
    widget.setExtraActions(&first, nullptr);
    QCOMPARE(texts(), (QStringList{"Edit settings", "Reset settings", "-", "Duplicate"}));
    widget.setExtraActions(&first, &second);
    QCOMPARE(texts(), (QStringList{"Edit settings", "Reset settings", "-", "Duplicate", "Delete"}));
    {
        // An owner's action that goes leaves no hole.
        QAction gone(QStringLiteral("Gone"));
        widget.setExtraActions(&gone, &second);
    }
    QCOMPARE(texts(), (QStringList{"Edit settings", "Reset settings", "-", "Delete"}));
}

void TestBrushListWidget::resetSettingsReloadsTheBrushFile()
{
    MBrushListWidget widget;
    MBrush* brush = MBrushList::instance()->currentBrush();
    QVERIFY(brush);
    brush->setRadius(33.0);
    brush->setHardness(0.25);
    QVERIFY(brush->save());
    QVERIFY(QFile::exists(brush->userFileName()));

    brush->setRadius(7.0);
    brush->setHardness(0.75);
    brush->refreshPreview();
    const QImage edited = brush->preview();
    widget.resetSettingsAction()->trigger();
    QCOMPARE(brush->radius(), 33.0);
    QCOMPARE(brush->hardness(), 0.25);
    // The thumbnail follows the file's values.
    QVERIFY(brush->preview() != edited);
}

void TestBrushListWidget::editSettingsRunsTheDialogOnTheCurrentBrush()
{
    MBrushListWidget widget;
    MBrush* brush = MBrushList::instance()->currentBrush();
    QVERIFY(brush);
    MBrush* shownFor = nullptr;
    QTimer timer;
    int attempts = 0;
    connect(&timer, &QTimer::timeout, this, [&] {
        auto* dialog = qobject_cast<DBrushSettings*>(QApplication::activeModalWidget());
        if (dialog) {
            shownFor = dialog->sourceBrush();
            dialog->reject();
        }
        if (dialog || ++attempts > 250)
            timer.stop();
    });
    timer.start(20);
    widget.editSettingsAction()->trigger();
    QCOMPARE(shownFor, brush);
}

QUILLMERE_TEST_MAIN(TestBrushListWidget)
#include "tst_brushlistwidget.moc"
