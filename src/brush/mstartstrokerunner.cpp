#include "brush/mstartstrokerunner.h"

#include "brush/mbrush.h"
#include "document/mcanvas.h"
#include "document/mtexturelayer.h"
#include "gpu/mshareddata.h"

MStartStrokeRunner::MStartStrokeRunner(MSharedData* sharedData, int layerIndex, int index, const MEvent& event,
                                       const MBrush& brush, const QColor& color, const QColor& secondColor,
                                       QObject* parent)
    : MRunner(sharedData, parent), m_index(index), m_event(event)
{
    if (!m_sharedData)
        return;
    m_sharedData->setCurrentLayerIndex(layerIndex);
    m_sharedData->setBrush(brush);
    MBrush* own = m_sharedData->brush();
    // An achromatic colour has no hue (-1): it reads as red at no saturation.
    own->setBaseValue(MEnum::bsBrushColorHue, qMax(0.0, color.hsvHueF()));
    own->setBaseValue(MEnum::bsBrushColorSaturation, color.hsvSaturationF());
    own->setBaseValue(MEnum::bsBrushColorValue, color.valueF());
    own->setBaseValue(MEnum::bsBorderColorHue, qMax(0.0, secondColor.hsvHueF()));
    own->setBaseValue(MEnum::bsBorderColorSaturation, secondColor.hsvSaturationF());
    own->setBaseValue(MEnum::bsBorderColorValue, secondColor.valueF());
    m_sharedData->setBrushColor(color);
    m_sharedData->setBorderColor(secondColor);
}

void MStartStrokeRunner::run()
{
    MEvent* last = m_sharedData ? m_sharedData->lastEvent(m_index) : nullptr;
    if (!last || !isValid())
        return;
    MCanvas* canvas = m_sharedData->canvas();
    MBrush* brush = m_sharedData->brush();
    m_sharedData->setPaintedRectAtStart(canvas->paintedRect());
    m_sharedData->setColorTextureSize(brush->radius());
    // Type 0 tells the first MStrokeToRunner that it is first.
    *last = m_event;
    last->type = 0;
    const MBrush::SettingValues base = brush->baseValues();
    *m_sharedData->values(m_index) = base;
    m_sharedData->setBaseValues(base);
    MTextureLayer* strokeLayer = canvas->strokeLayer();
    strokeLayer->setEraserMode(m_event.pointerType == 3 || brush->eraser());
    strokeLayer->setOpacity(brush->opacity());
    m_sharedData->setStrokeRectangle(QRectF());
    Q_EMIT finished(this);
}
