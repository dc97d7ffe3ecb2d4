#include "document/mcommand.h"

#include "app/mlogger.h"
#include "document/mcanvas.h"
#include "document/mtexturelayer.h"

#include <QUndoStack>

MCommand::MCommand(MCanvas* canvas, QUndoCommand* parent)
    : QUndoCommand(parent), m_canvas(canvas), m_isChild(parent != nullptr)
{
}

MCommand::~MCommand() = default;

void MCommand::push()
{
    if (!m_isChild)
        m_canvas->undoStack()->push(this);
}

bool MCommand::makeCurrent(const QString& source) const
{
    if (m_canvas->makeCurrent())
        return true;
    MLogger::systemError(source, QStringLiteral("Unable to make current context"));
    return false;
}

MTextureLayer* MCommand::insertNewLayer(int row, const QString& source)
{
    makeCurrent(source);
    MTextureLayer* layer = m_canvas->createLayer();
    m_canvas->insert(row, layer);
    layer->setName(MCanvas::tr("Layer %1").arg(m_canvas->count()));
    m_canvas->setCurrentRow(m_canvas->indexOf(layer));
    return layer;
}

bool MCommand::deleteLayer(int row, const QString& source)
{
    MTextureLayer* layer = m_canvas->at(row);
    if (!layer)
        return false;
    makeCurrent(source);
    // Textures must go while a context is current, or they leak.
    layer->clear();
    return m_canvas->removeAt(row);
}

bool MCommand::swapLayers(int from, int to)
{
    if (!m_canvas->move(from, to))
        return false;
    m_canvas->setCurrentRow(to);
    m_canvas->refresh();
    return true;
}
