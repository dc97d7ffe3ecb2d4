#include "panels/mbrushsettingswidget.h"

#include "brush/mbrush.h"
#include "brush/mbrushlist.h"
#include "brush/mbrushsettinginfolist.h"
#include "effects/mfieldpanel.h"

#include <QVBoxLayout>

MBrushSettingsWidget::MBrushSettingsWidget(QWidget* parent) : QWidget(parent), m_panel(new MFieldPanel(this))
{
    m_panel->set_labelsOnTop(true);
    m_panel->set_addScrollBox(true);
    m_panel->set_addSpacer(true);
    m_panel->set_slidersTracking(false);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_panel);
    connect(MBrushList::instance(), &MBrushList::currentRowChanged, this,
            &MBrushSettingsWidget::showCurrentBrush);
    connect(m_panel, &MFieldPanel::valueChanged, this, &MBrushSettingsWidget::onValueChanged);
    showCurrentBrush();
}

void MBrushSettingsWidget::showCurrentBrush()
{
    MBrush* brush = MBrushList::instance()->currentBrush();
    m_brush = brush;
    QVector<MField*> fields;
    if (brush) {
        const QVector<MField*>& all = MBrushSettingInfoList::instance()->fields();
        for (int setting : brush->quickSettings()) {
            for (MField* field : all) {
                if (field->id == setting)
                    fields.append(field);
            }
        }
    }
    m_panel->setObject(nullptr);
    m_panel->setFields(fields);
    m_panel->setObject(brush);
}

void MBrushSettingsWidget::onValueChanged()
{
    // The thumbnail in the brush list follows the edit.
    if (m_brush)
        m_brush->refreshPreview();
}
