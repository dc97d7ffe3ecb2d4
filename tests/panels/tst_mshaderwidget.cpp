#include "support/testenvironment.h"

#include "app/msettings.h"
#include "effects/mshader.h"
#include "effects/mshaderlist.h"
#include "lists/mlistpanel.h"
#include "lists/mlistwidget.h"
#include "panels/mshaderfiltermodel.h"
#include "panels/mshaderlistdelegate.h"
#include "panels/mshaderwidget.h"

#include <QAction>
#include <QComboBox>
#include <QLineEdit>
#include <QMenu>
#include <QSignalSpy>

#include <memory>

namespace {

MShader* addShader(const QString& description, const QString& group, int type, const QColor& thumbnail)
{
    auto shader = std::make_unique<MShader>();
    shader->setType(type);
    shader->setDescription(description);
    shader->setGroup(group);
    shader->setSource(QStringLiteral("@main\nf_color = vec4(1.0);\n"));
    QImage preview(32, 32, QImage::Format_ARGB32_Premultiplied);
    preview.fill(thumbnail);
    shader->setPreview(preview);
    return MShaderList::instance()->addShader(std::move(shader));
}

QStringList shownDescriptions(const MShaderFilterModel* model)
{
    QStringList descriptions;
    for (int row = 0; row < model->count(); ++row)
        descriptions << model->shaderAt(row)->description();
    return descriptions;
}

} // namespace

class TestMShaderWidget : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void filterByKindAndSearch();
    void doubleClickActivatesByKind();
    void delegateMarksEngines();
    void contextMenuHoldsTheOwnersActions();

private:
    MShader* m_blur = nullptr;
    MShader* m_sharpen = nullptr;
    MShader* m_pencil = nullptr;
    MShader* m_ink = nullptr;
};

void TestMShaderWidget::init()
{
    // Only the effects of the test: whatever the list read from disk goes.
    MShaderList* list = MShaderList::instance();
    while (list->count() > 0)
        QVERIFY(list->removeShader(list->shaderAt(0)->id()));
    m_blur = addShader(QStringLiteral("Blur"), QStringLiteral("filters"), MShader::EffectShader, Qt::green);
    m_pencil = addShader(QStringLiteral("Pencil"), QStringLiteral("dry"), MShader::BrushShader, Qt::blue);
    m_sharpen =
        addShader(QStringLiteral("Sharpen"), QStringLiteral("filters"), MShader::EffectShader, Qt::cyan);
    m_ink = addShader(QStringLiteral("Ink"), QStringLiteral("wet"), MShader::BrushShader, Qt::magenta);
    QVERIFY(m_blur && m_pencil && m_sharpen && m_ink);
    QCOMPARE(list->count(), 4);
}

void TestMShaderWidget::filterByKindAndSearch()
{
    MShaderWidget widget;
    MShaderFilterModel* model = widget.model();
    QCOMPARE(widget.listWidget()->sourceModel(), static_cast<MTableModel*>(model));
    QComboBox* combo = widget.filterCombo();
    QCOMPARE(combo->count(), 3);
    QCOMPARE(combo->itemText(0), QStringLiteral("All"));
    QCOMPARE(combo->itemText(1), QStringLiteral("Effects"));
    QCOMPARE(combo->itemText(2), QStringLiteral("Brush engines"));
    QCOMPARE(shownDescriptions(model), (QStringList{"Blur", "Pencil", "Sharpen", "Ink"}));

    combo->setCurrentIndex(1);
    QCOMPARE(shownDescriptions(model), (QStringList{"Blur", "Sharpen"}));
    combo->setCurrentIndex(2);
    QCOMPARE(shownDescriptions(model), (QStringList{"Pencil", "Ink"}));

    // The search keeps what holds the text in its description or group, in any case.
    combo->setCurrentIndex(0);
    widget.searchEdit()->setText(QStringLiteral("FILT"));
    QCOMPARE(shownDescriptions(model), (QStringList{"Blur", "Sharpen"}));
    widget.searchEdit()->setText(QStringLiteral("  in "));
    QCOMPARE(shownDescriptions(model), (QStringList{"Ink"}));
    combo->setCurrentIndex(1);
    QCOMPARE(model->count(), 0);
    widget.searchEdit()->clear();
    QCOMPARE(shownDescriptions(model), (QStringList{"Blur", "Sharpen"}));

    // The list changes under the filter: a new engine shows only among engines.
    addShader(QStringLiteral("Charcoal"), QStringLiteral("dry"), MShader::BrushShader, Qt::black);
    QCOMPARE(shownDescriptions(model), (QStringList{"Blur", "Sharpen"}));
    combo->setCurrentIndex(2);
    QCOMPARE(shownDescriptions(model), (QStringList{"Pencil", "Ink", "Charcoal"}));
    QVERIFY(MShaderList::instance()->removeShader(m_ink->id()));
    QCOMPARE(shownDescriptions(model), (QStringList{"Pencil", "Charcoal"}));
}

void TestMShaderWidget::doubleClickActivatesByKind()
{
    MShaderWidget widget;
    widget.resize(220, 300);
    widget.show();
    QVERIFY(QTest::qWaitForWindowExposed(&widget));
    QSignalSpy effects(&widget, &MShaderWidget::effectActivated);
    QSignalSpy engines(&widget, &MShaderWidget::engineActivated);
    MListPanel* panel = widget.listWidget()->panel();
    auto doubleClickRow = [&](int row) {
        const QPoint at = panel->rowRect(row).center().toPoint();
        QTest::mouseDClick(panel, Qt::LeftButton, Qt::NoModifier, at);
    };

    // Row 1 of all is the engine "Pencil".
    doubleClickRow(1);
    QCOMPARE(engines.count(), 1);
    QCOMPARE(engines.at(0).at(0).toString(), m_pencil->id());
    QCOMPARE(effects.count(), 0);
    QCOMPARE(MShaderList::instance()->currentShader(), m_pencil);

    // Among effects, row 1 is "Sharpen".
    widget.filterCombo()->setCurrentIndex(1);
    doubleClickRow(1);
    QCOMPARE(effects.count(), 1);
    QCOMPARE(effects.at(0).at(0).toString(), m_sharpen->id());
    QCOMPARE(engines.count(), 1);
    QCOMPARE(MShaderList::instance()->currentShader(), m_sharpen);

    // The current effect of the list is shown as current when it passes the filter.
    MShaderList::instance()->setCurrentRow(MShaderList::instance()->indexOf(m_blur));
    QCOMPARE(widget.model()->currentRow(), 0);
    QCOMPARE(widget.currentShader(), m_blur);
    MShaderList::instance()->setCurrentRow(MShaderList::instance()->indexOf(m_ink));
    QCOMPARE(widget.currentShader(), nullptr);
    // A double click on no row activates nothing.
    QTest::mouseDClick(panel, Qt::LeftButton, Qt::NoModifier, QPoint(10, panel->height() - 2));
    QCOMPARE(effects.count() + engines.count(), 2);
}

void TestMShaderWidget::delegateMarksEngines()
{
    MShaderWidget widget;
    widget.resize(220, 300);
    widget.show();
    QVERIFY(QTest::qWaitForWindowExposed(&widget));
    MShaderList::instance()->setCurrentRow(MShaderList::instance()->indexOf(m_sharpen));
    MListPanel* panel = widget.listWidget()->panel();
    const QImage grab = panel->grab().toImage().convertToFormat(QImage::Format_RGB32);
    const QColor thumbnails[] = {Qt::green, Qt::blue, Qt::cyan, Qt::magenta};
    for (int row = 0; row < 4; ++row) {
        const QRectF cell = panel->rowRect(row);
        const QColor fill = row == 2 ? MSettings::instance()->tableSelectionColor() : QColor(Qt::white);
        const QPoint middle = MShaderListDelegate::thumbnailRect(cell).center().toPoint();
        QCOMPARE(QColor(grab.pixel(middle)), thumbnails[row]);
        const QRect mark = MShaderListDelegate::markRect(cell).toRect();
        int marked = 0;
        for (int y = mark.top(); y <= mark.bottom(); ++y)
            for (int x = mark.left(); x <= mark.right(); ++x)
                marked += QColor(grab.pixel(x, y)) != fill ? 1 : 0;
        const bool engine = row == 1 || row == 3;
        QVERIFY2(engine ? marked > 10 : marked == 0,
                 qPrintable(QStringLiteral("row %1: %2").arg(row).arg(marked)));
    }
}

void TestMShaderWidget::contextMenuHoldsTheOwnersActions()
{
    MShaderWidget widget;
    QAction edit(QStringLiteral("Edit effect"));
    QAction remove(QStringLiteral("Delete effect"));
    widget.setContextActions({&edit, &remove});
    std::unique_ptr<QMenu> menu(widget.createContextMenu());
    QCOMPARE(menu->actions(), (QList<QAction*>{&edit, &remove}));
}

QUILLMERE_TEST_MAIN(TestMShaderWidget)
#include "tst_mshaderwidget.moc"
