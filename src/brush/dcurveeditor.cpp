#include "brush/dcurveeditor.h"

#include "app/menum.h"
#include "brush/mbrush.h"
#include "brush/mbrushinputinfolist.h"
#include "brush/mcurve.h"
#include "brush/mcurvewidget.h"

#include <QComboBox>
#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QMessageBox>
#include <QMetaEnum>
#include <QPushButton>
#include <QSignalBlocker>
#include <QVBoxLayout>

namespace {

QDoubleSpinBox* rangeBox(const QString& name, QWidget* parent)
{
    auto* box = new QDoubleSpinBox(parent);
    box->setObjectName(name);
    box->setRange(-10000.0, 10000.0);
    box->setDecimals(3);
    return box;
}

QPushButton* button(const QString& text, const QString& name, QWidget* parent)
{
    auto* pushButton = new QPushButton(text, parent);
    pushButton->setObjectName(name);
    pushButton->setAutoDefault(false);
    return pushButton;
}

} // namespace

DCurveEditor::DCurveEditor(MBrush* brush, int setting, QWidget* parent)
    : QDialog(parent), m_source(brush), m_brush(new MBrush(this)), m_setting(setting),
      m_inputList(new QListWidget(this)), m_curveWidget(new MCurveWidget(this)),
      m_xMin(rangeBox(QStringLiteral("xMinSpinBox"), this)),
      m_xMax(rangeBox(QStringLiteral("xMaxSpinBox"), this)),
      m_yMin(rangeBox(QStringLiteral("yMinSpinBox"), this)),
      m_yMax(rangeBox(QStringLiteral("yMaxSpinBox"), this)),
      m_modulo(rangeBox(QStringLiteral("moduloSpinBox"), this)), m_initType(new QComboBox(this)),
      m_formula(new QComboBox(this)),
      m_addCurve(button(tr("Add curve"), QStringLiteral("addCurveBtn"), this)),
      m_removeCurve(button(tr("Remove curve"), QStringLiteral("removeCurveBtn"), this))
{
    if (brush)
        m_brush->assign(*brush);
    setWindowTitle(QString::fromLatin1(QMetaEnum::fromType<MEnum::BrushSetting>().valueToKey(setting)));

    m_inputList->setObjectName(QStringLiteral("inputList"));
    for (const MBrushInputInfo& info : MBrushInputInfoList::instance()->infos()) {
        auto* item = new QListWidgetItem(info.name, m_inputList);
        item->setData(Qt::UserRole, info.input);
        item->setToolTip(info.description);
    }
    // The x range belongs to the input.
    m_xMin->setEnabled(false);
    m_xMax->setEnabled(false);

    m_initType->setObjectName(QStringLiteral("initTypeComboBox"));
    const QMetaEnum presets = QMetaEnum::fromType<MCurve::InitType>();
    for (int i = 0; i < presets.keyCount(); ++i)
        m_initType->addItem(QString::fromLatin1(presets.key(i)), presets.value(i));
    m_initType->setCurrentIndex(m_initType->findData(int(MCurve::LineAscending4)));
    m_formula->setObjectName(QStringLiteral("formulaComboBox"));
    const QMetaEnum formulas = QMetaEnum::fromType<MCurve::InterpolationType>();
    for (int i = 0; i < formulas.keyCount(); ++i)
        m_formula->addItem(QString::fromLatin1(formulas.key(i)), formulas.value(i));

    auto* addPoint = button(tr("Add point"), QStringLiteral("btnAddPoint"), this);
    auto* removePoint = button(tr("Remove point"), QStringLiteral("btnRemovePoint"), this);
    auto* reset = button(tr("Reset"), QStringLiteral("btnReset"), this);
    auto* invertX = button(tr("Invert x"), QStringLiteral("invertXBtn"), this);
    auto* invertY = button(tr("Invert y"), QStringLiteral("invertYBtn"), this);
    auto* ok = button(tr("Ok"), QStringLiteral("btnOk"), this);
    ok->setDefault(true);
    auto* cancel = button(tr("Cancel"), QStringLiteral("btnCancel"), this);
    connect(cancel, &QPushButton::clicked, this, &DCurveEditor::reject);

    auto* form = new QFormLayout;
    form->addRow(tr("x min"), m_xMin);
    form->addRow(tr("x max"), m_xMax);
    form->addRow(tr("y min"), m_yMin);
    form->addRow(tr("y max"), m_yMax);
    form->addRow(tr("Modulo"), m_modulo);
    form->addRow(tr("Preset"), m_initType);
    form->addRow(tr("Formula"), m_formula);

    auto* pointButtons = new QHBoxLayout;
    for (QPushButton* b : {addPoint, removePoint, reset, invertX, invertY})
        pointButtons->addWidget(b);
    auto* curveButtons = new QHBoxLayout;
    curveButtons->addWidget(m_addCurve);
    curveButtons->addWidget(m_removeCurve);

    auto* right = new QVBoxLayout;
    right->addLayout(curveButtons);
    right->addWidget(m_curveWidget, 1);
    right->addLayout(pointButtons);
    right->addLayout(form);

    auto* body = new QHBoxLayout;
    body->addWidget(m_inputList);
    body->addLayout(right, 1);

    auto* dialogButtons = new QHBoxLayout;
    dialogButtons->addStretch(1);
    dialogButtons->addWidget(cancel);
    dialogButtons->addWidget(ok);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(body, 1);
    layout->addLayout(dialogButtons);

    m_curveControls = {m_curveWidget, m_yMin,      m_yMax, m_modulo, m_initType, m_formula,
                       addPoint,      removePoint, reset,  invertX,  invertY};
    connect(m_curveWidget, &MCurveWidget::curveChanged, this, [this]() { setModified(); });

    markInputs();
    QMetaObject::connectSlotsByName(this);
    // The first input that drives the setting, else pressure.
    int first = MEnum::biPressure;
    for (int input = MEnum::biCount - 1; input >= 0; --input) {
        if (m_brush->hasCurve(setting, input))
            first = input;
    }
    m_inputList->setCurrentRow(first);
    setCurrentBrushInput(first);
    m_modified = false;
}

MCurve* DCurveEditor::currentCurve() const
{
    return m_brush->curveOrNull(m_setting, m_input);
}

void DCurveEditor::setModified()
{
    m_modified = true;
}

void DCurveEditor::markInputs()
{
    for (int row = 0; row < m_inputList->count(); ++row) {
        QListWidgetItem* item = m_inputList->item(row);
        const bool has = m_brush->hasCurve(m_setting, item->data(Qt::UserRole).toInt());
        item->setBackground(has ? QBrush(curveMark()) : QBrush());
    }
}

void DCurveEditor::setCurrentBrushInput(int input)
{
    m_input = input;
    {
        const QSignalBlocker blocker(m_inputList);
        for (int row = 0; row < m_inputList->count(); ++row) {
            if (m_inputList->item(row)->data(Qt::UserRole).toInt() == input)
                m_inputList->setCurrentRow(row);
        }
    }
    curveToWidgets();
}

void DCurveEditor::curveToWidgets()
{
    MCurve* curve = currentCurve();
    const QSignalBlocker yMinBlocker(m_yMin);
    const QSignalBlocker yMaxBlocker(m_yMax);
    const QSignalBlocker moduloBlocker(m_modulo);
    m_curveWidget->setCurve(curve);
    if (curve) {
        m_xMin->setValue(curve->xMin());
        m_xMax->setValue(curve->xMax());
        m_yMin->setValue(curve->yMin());
        m_yMax->setValue(curve->yMax());
        m_modulo->setValue(curve->modulo());
        m_formula->setCurrentIndex(m_formula->findData(curve->interpolationType()));
    } else {
        const MBrushInputInfo& info = MBrushInputInfoList::instance()->info(m_input);
        m_xMin->setValue(info.minimum);
        m_xMax->setValue(info.maximum);
        m_yMin->setValue(0.0);
        m_yMax->setValue(1.0);
        m_modulo->setValue(0.0);
        m_formula->setCurrentIndex(m_formula->findData(int(MCurve::Multiply)));
    }
    for (QWidget* control : qAsConst(m_curveControls))
        control->setEnabled(curve != nullptr);
    m_addCurve->setEnabled(!curve && m_input >= 0 && m_input < MEnum::biCount);
    m_removeCurve->setEnabled(curve != nullptr);
    m_curveWidget->update();
}

void DCurveEditor::on_inputList_currentRowChanged(int row)
{
    QListWidgetItem* item = m_inputList->item(row);
    if (item)
        setCurrentBrushInput(item->data(Qt::UserRole).toInt());
}

void DCurveEditor::on_addCurveBtn_clicked()
{
    if (currentCurve() || !m_brush->curve(m_setting, m_input))
        return;
    setModified();
    markInputs();
    curveToWidgets();
}

void DCurveEditor::on_removeCurveBtn_clicked()
{
    if (!currentCurve())
        return;
    m_curveWidget->setCurve(nullptr);
    m_brush->removeCurve(m_setting, m_input);
    setModified();
    markInputs();
    curveToWidgets();
}

void DCurveEditor::on_btnAddPoint_clicked()
{
    m_curveWidget->addPoint();
}

void DCurveEditor::on_btnRemovePoint_clicked()
{
    m_curveWidget->removePoint();
}

void DCurveEditor::on_btnReset_clicked()
{
    m_curveWidget->setInitType(m_initType->currentData().toInt());
}

void DCurveEditor::on_initTypeComboBox_activated(int index)
{
    m_curveWidget->setInitType(m_initType->itemData(index).toInt());
}

void DCurveEditor::on_invertXBtn_clicked()
{
    if (MCurve* curve = currentCurve()) {
        curve->invertX();
        setModified();
        m_curveWidget->update();
    }
}

void DCurveEditor::on_invertYBtn_clicked()
{
    if (MCurve* curve = currentCurve()) {
        curve->invertY();
        setModified();
        m_curveWidget->update();
    }
}

void DCurveEditor::on_formulaComboBox_activated(int index)
{
    if (MCurve* curve = currentCurve()) {
        curve->setInterpolationType(m_formula->itemData(index).toInt());
        setModified();
        m_curveWidget->update();
    }
}

void DCurveEditor::on_yMinSpinBox_valueChanged(double value)
{
    if (MCurve* curve = currentCurve()) {
        curve->setYMin(value);
        setModified();
        // The curve keeps its range open: show what it made of the value.
        curveToWidgets();
    }
}

void DCurveEditor::on_yMaxSpinBox_valueChanged(double value)
{
    if (MCurve* curve = currentCurve()) {
        curve->setYMax(value);
        setModified();
        curveToWidgets();
    }
}

void DCurveEditor::on_moduloSpinBox_valueChanged(double value)
{
    if (MCurve* curve = currentCurve()) {
        curve->setModulo(value);
        setModified();
    }
}

void DCurveEditor::writeBack()
{
    if (m_source)
        m_source->assign(*m_brush);
    m_modified = false;
}

void DCurveEditor::on_btnOk_clicked()
{
    if (m_modified)
        writeBack();
    accept();
}

void DCurveEditor::reject()
{
    if (m_modified) {
        switch (askToSave()) {
        case SaveAnswer:
            writeBack();
            break;
        case DiscardAnswer:
            m_modified = false;
            break;
        case CancelAnswer:
            return;
        }
    }
    QDialog::reject();
}

DCurveEditor::CloseAnswer DCurveEditor::askToSave()
{
    QMessageBox box(QMessageBox::Question, tr("Close"), tr("Do you want to save modifications?"),
                    QMessageBox::NoButton, this);
    QPushButton* save = box.addButton(tr("Save"), QMessageBox::AcceptRole);
    QPushButton* discard = box.addButton(tr("Dont' save"), QMessageBox::DestructiveRole);
    box.addButton(tr("Cancel"), QMessageBox::RejectRole);
    box.setDefaultButton(save);
    box.exec();
    if (box.clickedButton() == save)
        return SaveAnswer;
    if (box.clickedButton() == discard)
        return DiscardAnswer;
    return CancelAnswer;
}
