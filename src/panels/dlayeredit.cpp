#include "panels/dlayeredit.h"

#include "app/menum.h"
#include "document/mcanvas.h"
#include "effects/mfield.h"
#include "effects/mfieldpanel.h"
#include "effects/mshader.h"
#include "effects/mshaderlist.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMetaEnum>
#include <QPushButton>
#include <QVBoxLayout>

DLayerEdit::DLayerEdit(MCanvas* canvas, int layerIndex, QWidget* parent)
    : QDialog(parent), m_canvas(canvas), m_layerIndex(layerIndex), m_name(new QLineEdit(this)),
      m_opacity(new QDoubleSpinBox(this)), m_visible(new QCheckBox(this)), m_locked(new QCheckBox(this)),
      m_mask(new QComboBox(this)), m_effectPanel(new MFieldPanel(this)), m_effectMessage(new QLabel(this))
{
    setWindowTitle(tr("Layer properties"));
    m_name->setObjectName(QStringLiteral("name"));
    m_opacity->setObjectName(QStringLiteral("opacity"));
    m_opacity->setRange(0.0, 1.0);
    m_opacity->setSingleStep(0.05);
    m_opacity->setDecimals(3);
    m_visible->setObjectName(QStringLiteral("visible"));
    m_locked->setObjectName(QStringLiteral("locked"));
    m_mask->setObjectName(QStringLiteral("mask"));
    const QMetaEnum masks = QMetaEnum::fromType<MLayer::Mask>();
    for (int i = 0; i < masks.keyCount(); ++i)
        m_mask->addItem(MEnum::translatedKey(masks.key(i)), masks.value(i));
    m_effectMessage->setWordWrap(true);
    m_effectMessage->hide();

    auto* form = new QFormLayout;
    form->addRow(tr("Name"), m_name);
    form->addRow(tr("Opacity"), m_opacity);
    form->addRow(tr("Visible"), m_visible);
    form->addRow(tr("Locked"), m_locked);
    form->addRow(tr("Mask"), m_mask);

    auto* ok = new QPushButton(tr("Ok"), this);
    ok->setObjectName(QStringLiteral("btnOk"));
    ok->setDefault(true);
    auto* cancel = new QPushButton(tr("Cancel"), this);
    cancel->setObjectName(QStringLiteral("btnCancel"));
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(cancel);
    buttons->addWidget(ok);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addWidget(m_effectPanel, 1);
    layout->addWidget(m_effectMessage);
    layout->addLayout(buttons);

    m_effectPanel->hide();
    MTextureLayer* layer = canvas ? canvas->at(layerIndex) : nullptr;
    MShader* shader = layer ? MShaderList::instance()->shaderById(layer->shaderId()) : nullptr;
    if (shader) {
        // The declaration compiler reports errors, the texture limit included,
        // in the "-- line L col C: message" form.
        if (!shader->parseParams()) {
            m_effectMessage->setText(shader->compileMessages());
            m_effectMessage->show();
        } else {
            QVector<MField*> fields;
            for (int i = 0; i < shader->paramCount(); ++i)
                fields.append(shader->param(i));
            m_effectPanel->setFields(fields);
            m_effectPanel->setObject(layer->shaderValues());
            m_effectPanel->show();
        }
    }
    layerToWidgets();
    QMetaObject::connectSlotsByName(this);
}

void DLayerEdit::layerToWidgets()
{
    MTextureLayer* layer = m_canvas ? m_canvas->at(m_layerIndex) : nullptr;
    if (!layer)
        return;
    m_name->setText(layer->name());
    m_opacity->setValue(layer->opacity());
    m_visible->setChecked(layer->visible());
    m_locked->setChecked(layer->locked());
    m_mask->setCurrentIndex(qMax(0, m_mask->findData(layer->mask())));
}

void DLayerEdit::widgetsToLayer()
{
    MTextureLayer* layer = m_canvas ? m_canvas->at(m_layerIndex) : nullptr;
    if (!layer)
        return;
    const QHash<QByteArray, QVariant> oldValues{{"name", layer->name()},
                                                {"opacity", layer->opacity()},
                                                {"locked", layer->locked()},
                                                {"visible", layer->visible()},
                                                {"mask", layer->mask()}};
    const QHash<QByteArray, QVariant> newValues{{"name", m_name->text()},
                                                {"opacity", m_opacity->value()},
                                                {"locked", m_locked->isChecked()},
                                                {"visible", m_visible->isChecked()},
                                                {"mask", m_mask->currentData().toInt()}};
    if (oldValues != newValues)
        m_canvas->setLayerProperties(m_layerIndex, oldValues, newValues);
}

void DLayerEdit::on_btnOk_clicked()
{
    widgetsToLayer();
    accept();
}

void DLayerEdit::on_btnCancel_clicked()
{
    reject();
}
