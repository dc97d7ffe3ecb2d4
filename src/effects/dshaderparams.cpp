#include "effects/dshaderparams.h"

#include "effects/mfield.h"
#include "effects/mfieldpanel.h"
#include "effects/mshader.h"
#include "effects/mshaderobject.h"
#include "effects/mvalues.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>

DShaderParams::DShaderParams(MShader* shader, MShaderObject* object, QWidget* parent)
    : QDialog(parent), m_object(object), m_panel(new MFieldPanel(this))
{
    setWindowTitle(tr("Effect settings"));

    auto* previewButton = new QPushButton(tr("Preview"), this);
    previewButton->setObjectName(QStringLiteral("previewButton"));
    auto* removeButton = new QPushButton(tr("Remove"), this);
    removeButton->setObjectName(QStringLiteral("removeButton"));
    auto* applyButton = new QPushButton(tr("Apply"), this);
    applyButton->setObjectName(QStringLiteral("applyButton"));
    applyButton->setToolTip(tr("Apply the effect to layer. You can remove the effect later."));
    applyButton->setDefault(true);

    auto* buttons = new QHBoxLayout;
    buttons->addWidget(previewButton);
    buttons->addStretch(1);
    buttons->addWidget(removeButton);
    buttons->addWidget(applyButton);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_panel, 1);
    layout->addLayout(buttons);

    if (shader && object) {
        // Gives the object the effect's defaults, or merges with what it had.
        object->set_shaderId(shader->id());
        if (shader->parseParams()) {
            QVector<MField*> fields;
            for (int i = 0; i < shader->paramCount(); ++i)
                fields.append(shader->param(i));
            m_panel->setFields(fields);
            m_panel->setObject(object->shaderValues());
        }
    }
    connect(m_panel, &MFieldPanel::valueChanged, this, &DShaderParams::shaderValuesChanged);
    QMetaObject::connectSlotsByName(this);
}

void DShaderParams::on_previewButton_clicked()
{
    Q_EMIT shaderValuesChanged();
}

void DShaderParams::on_removeButton_clicked()
{
    if (m_object)
        m_object->set_shaderId(QString());
    // The values the panel shows are gone with the effect.
    m_panel->setEnabled(false);
    Q_EMIT applyShader();
    accept();
}

void DShaderParams::on_applyButton_clicked()
{
    Q_EMIT applyShader();
    accept();
}
