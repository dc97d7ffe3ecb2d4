#include "support/glcontext.h"
#include "support/testenvironment.h"

#include "document/mcanvas.h"
#include "effects/mfieldpanel.h"
#include "effects/mshader.h"
#include "effects/mshaderlist.h"
#include "panels/dlayeredit.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QUndoStack>

class TestDLayerEdit : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void okIsOneUndoStep();
    void cancelChangesNothing();
    void effectParameters();

private:
    QuillmereTest::GLContext m_gl;
};

void TestDLayerEdit::initTestCase()
{
    QVERIFY2(m_gl.create(), qPrintable(m_gl.why()));
}

void TestDLayerEdit::okIsOneUndoStep()
{
    MCanvas canvas;
    canvas.appendLayer();
    canvas.undoStack()->clear();
    MTextureLayer* layer = canvas.at(0);
    layer->setOpacity(0.75);
    DLayerEdit dialog(&canvas, 0);
    QCOMPARE(dialog.windowTitle(), QStringLiteral("Layer properties"));
    auto* name = dialog.findChild<QLineEdit*>(QStringLiteral("name"));
    auto* opacity = dialog.findChild<QDoubleSpinBox*>(QStringLiteral("opacity"));
    auto* visible = dialog.findChild<QCheckBox*>(QStringLiteral("visible"));
    auto* locked = dialog.findChild<QCheckBox*>(QStringLiteral("locked"));
    auto* mask = dialog.findChild<QComboBox*>(QStringLiteral("mask"));
    QVERIFY(name && opacity && visible && locked && mask);
    QCOMPARE(name->text(), QStringLiteral("Layer 1"));
    QCOMPARE(opacity->value(), 0.75);
    QVERIFY(visible->isChecked());
    QVERIFY(!locked->isChecked());
    QCOMPARE(mask->count(), 3);
    QCOMPARE(mask->currentData().toInt(), int(MLayer::NoMask));

    name->setText(QStringLiteral("Shadows"));
    opacity->setValue(0.5);
    visible->setChecked(false);
    locked->setChecked(true);
    mask->setCurrentIndex(mask->findData(int(MLayer::AlphaMask)));
    dialog.findChild<QPushButton*>(QStringLiteral("btnOk"))->click();
    QCOMPARE(dialog.result(), int(QDialog::Accepted));
    QCOMPARE(layer->name(), QStringLiteral("Shadows"));
    QCOMPARE(layer->opacity(), 0.5);
    QVERIFY(!layer->visible());
    QVERIFY(layer->locked());
    QCOMPARE(layer->mask(), int(MLayer::AlphaMask));
    QCOMPARE(canvas.undoStack()->count(), 1);
    QCOMPARE(canvas.undoStack()->text(0), QStringLiteral("Layer property change"));

    canvas.undo();
    QCOMPARE(layer->name(), QStringLiteral("Layer 1"));
    QCOMPARE(layer->opacity(), 0.75);
    QVERIFY(layer->visible());
    QVERIFY(!layer->locked());
    QCOMPARE(layer->mask(), int(MLayer::NoMask));

    // Ok with nothing changed makes no step.
    canvas.undoStack()->clear();
    DLayerEdit unchanged(&canvas, 0);
    unchanged.findChild<QPushButton*>(QStringLiteral("btnOk"))->click();
    QCOMPARE(canvas.undoStack()->count(), 0);
}

void TestDLayerEdit::cancelChangesNothing()
{
    MCanvas canvas;
    DLayerEdit dialog(&canvas, 0);
    dialog.findChild<QLineEdit*>(QStringLiteral("name"))->setText(QStringLiteral("Never"));
    dialog.findChild<QPushButton*>(QStringLiteral("btnCancel"))->click();
    QCOMPARE(dialog.result(), int(QDialog::Rejected));
    QCOMPARE(canvas.at(0)->name(), QStringLiteral("Layer 1"));
    QCOMPARE(canvas.undoStack()->count(), 0);

    // A row with no layer shows an empty dialog and changes nothing.
    DLayerEdit nowhere(&canvas, 9);
    nowhere.findChild<QPushButton*>(QStringLiteral("btnOk"))->click();
    QCOMPARE(canvas.undoStack()->count(), 0);
}

void TestDLayerEdit::effectParameters()
{
    MCanvas canvas;
    auto addEffect = [](const QString& source) {
        auto effect = std::make_unique<MShader>();
        effect->setSource(source);
        return MShaderList::instance()->addShader(std::move(effect))->id();
    };
    MTextureLayer* layer = canvas.at(0);

    layer->set_shaderId(
        addEffect(QStringLiteral("@params\nfloat strength = 0.5;\nbool invert;\n@main\nf_color = v_color;")));
    {
        DLayerEdit dialog(&canvas, 0);
        QCOMPARE(dialog.effectPanel()->fieldCount(), 2);
        QCOMPARE(dialog.effectPanel()->object(), layer->shaderValues());
        QVERIFY(dialog.effectMessage()->isHidden());
    }

    layer->set_shaderId(
        addEffect(QStringLiteral("@params\ntexture a 'a.png'; texture b 'b.png'; texture c 'c.png';"
                                 "texture d 'd.png'; texture e 'e.png';\n@main\nf_color = v_color;")));
    {
        DLayerEdit dialog(&canvas, 0);
        QCOMPARE(dialog.effectPanel()->fieldCount(), 0);
        QVERIFY(dialog.effectMessage()->text().contains(
            QStringLiteral("-- line 1 col 76: You can use 4 user textures max.")));
    }

    const QString broken = addEffect(QStringLiteral("@params\nfloat = ;\n@main\nf_color = v_color;"));
    layer->set_shaderId(broken);
    QCOMPARE(layer->shaderId(), broken);
    {
        DLayerEdit dialog(&canvas, 0);
        QVERIFY2(dialog.effectMessage()->text().contains(
                     QRegularExpression(QStringLiteral("-- line 1 col \\d+: "))),
                 qPrintable(dialog.effectMessage()->text()));
    }
}

QUILLMERE_TEST_MAIN(TestDLayerEdit)
#include "tst_dlayeredit.moc"
