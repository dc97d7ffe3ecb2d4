#include "document/mcanvas.h"

#include "app/mevent.h"
#include "app/mlogger.h"
#include "app/msettings.h"
#include "app/mutility.h"
#include "brush/mbrush.h"
#include "brush/mbrushlist.h"
#include "brush/mendstrokerunner.h"
#include "brush/mstartstrokerunner.h"
#include "brush/mstroketorunner.h"
#include "colour/mcolorlist.h"
#include "document/mcanvasfill.h"
#include "document/mcanvasreader.h"
#include "document/mcanvaswriter.h"
#include "document/mcommandappendlayer.h"
#include "document/mcommandlayerdown.h"
#include "document/mcommandlayerup.h"
#include "document/mcommandprependlayer.h"
#include "document/mcommandquickfilltile.h"
#include "document/mcommandremovelayer.h"
#include "document/mcommandsetpaintedrect.h"
#include "document/mcommandupdatelayerproperties.h"
#include "document/mcommandupdatetile.h"
#include "document/mtexturetile.h"
#include "effects/mshader.h"
#include "effects/mshaderlist.h"
#include "gpu/mbuffertile.h"
#include "gpu/mopengl.h"
#include "gpu/mpaintengine.h"
#include "gpu/mpaintparams.h"
#include "gpu/mshareddata.h"
#include "gpu/mtransform.h"
#include "panels/dlayeredit.h"
#include "tools/mfillcanvasrunner.h"
#include "tools/mquickfill.h"

#include <QApplication>
#include <QClipboard>
#include <QDebug>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QLineF>
#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QOpenGLFramebufferObject>
#include <QOpenGLFunctions>
#include <QPainter>
#include <QPolygonF>
#include <QUndoStack>

namespace {

const QString contextFailure = QStringLiteral("Unable to make current context");

bool fuzzyEqual(double a, double b)
{
    // qFuzzyCompare fails on exact zeros, which a page at the origin has.
    return a == b || qFuzzyCompare(a, b);
}

} // namespace

MCanvas::MCanvas(QObject* parent) : MListModel<MTextureLayer>(parent)
{
    ++s_canvasCount;
    m_sharedData = new MSharedData(this);
    m_paintEngine = new MPaintEngine(this);
    MSettings* settings = MSettings::instance();
    m_paperType = MEnum::PaperType(settings->paperType());
    m_paperColor = settings->paperColor();
    m_paperName = settings->paperName().trimmed();
    m_paintMargin = settings->paintMargin();
    m_strokeLayer = std::make_unique<MTextureLayer>();
    m_selectionLayer = std::make_unique<MTextureLayer>();
    m_undoStack = new QUndoStack(this);
    m_fileName = tr("new document %1.%2").arg(s_canvasCount).arg(QStringLiteral("qmd"));
    const int width = settings->defaultWidth();
    const int height = settings->defaultHeight();
    m_undoStack->setUndoLimit(settings->undoLimit());
    loadPaper(m_paperName);
    m_paintedRect = QRectF(QRect(-(width / 2), -(height / 2), width, height));
    // The margin read above serves only once the page follows strokes.
    m_autoExtent = false;
    m_paintMargin = 0.0;
    initializeGL();
    connectSignals();
    connect(settings, &MSettings::thumbnailSizeChanged, this, &MCanvas::thumbnailSizeChanged);
}

MCanvas::~MCanvas()
{
    if (s_macroBeginCount != s_macroEndCount)
        qDebug() << "stroke start <> end !"
                 << "MCanvas::~MCanvas" << s_macroBeginCount << s_macroEndCount;
    disconnectSignals();
    // Commands release their backup files here.
    m_undoStack->clear();
    if (m_isGlInitialized)
        shutDown();
    delete m_undoStack;
    m_undoStack = nullptr;
}

bool MCanvas::isModified() const
{
    return !m_undoStack->isClean();
}

bool MCanvas::makeCurrent()
{
    if (!m_isGlInitialized)
        return false;
    if (QOpenGLContext::currentContext() == m_context.get())
        return true;
    return m_context->makeCurrent(m_surface.get());
}

void MCanvas::initializeGL()
{
    if (m_isGlInitialized)
        return;
    const QString source = QStringLiteral("MCanvas::initializeGL");
    QOpenGLContext* share = QOpenGLContext::globalShareContext();
    std::unique_ptr<QOffscreenSurface> shareSurface(share ? MOpenGL::createSurface(share) : nullptr);
    if (share && shareSurface)
        share->makeCurrent(shareSurface.get());
    m_context.reset(share ? MOpenGL::createSharedContext(share) : nullptr);
    if (share)
        share->doneCurrent();
    if (!m_context) {
        MLogger::systemError(source, QStringLiteral("Unable to create shared context"));
        return;
    }
    m_surface.reset(MOpenGL::createSurface(m_context.get()));
    if (!m_surface) {
        MLogger::systemError(source, QStringLiteral("Unable to create surface"));
        m_context.reset();
        return;
    }
    m_isGlInitialized = true;
    if (!m_context->makeCurrent(m_surface.get())) {
        MLogger::systemError(source, contextFailure);
        return;
    }
    m_sharedData->initializeGL();
    if (!m_paintEngine->initializeGL()) {
        MLogger::systemError(source, QStringLiteral("Unable to create paint engine"));
        return;
    }
    // A new document has one layer, and that layer cannot be undone.
    new MCommandAppendLayer(this);
    m_undoStack->clear();
}

void MCanvas::shutDown()
{
    if (!makeCurrent())
        MLogger::systemError(QStringLiteral("MCanvas::shutDown"), contextFailure);
    disconnectSignals();
    m_paintEngine->shutDown();
    m_sharedData->shutDown();
    clearLayers();
    if (m_surface)
        m_surface->destroy();
    m_surface.reset();
    m_context.reset();
    m_isGlInitialized = false;
}

void MCanvas::clearLayers()
{
    if (m_isGlInitialized)
        makeCurrent();
    m_strokeLayer->clear();
    m_selectionLayer->clear();
    for (int row = 0; row < count(); ++row)
        at(row)->clear();
    MListModel<MTextureLayer>::clear();
    Q_EMIT layerListReset();
}

void MCanvas::connectSignals()
{
    connect(this, &MCanvas::currentRowChanged, this, qOverload<>(&MCanvas::refresh), Qt::UniqueConnection);
    connect(m_undoStack, &QUndoStack::canRedoChanged, this, &MCanvas::modifiedChanged, Qt::UniqueConnection);
    connect(m_undoStack, &QUndoStack::canUndoChanged, this, &MCanvas::modifiedChanged, Qt::UniqueConnection);
    connect(m_undoStack, &QUndoStack::cleanChanged, this, &MCanvas::modifiedChanged, Qt::UniqueConnection);
}

void MCanvas::disconnectSignals()
{
    disconnect(this, &MCanvas::currentRowChanged, this, qOverload<>(&MCanvas::refresh));
    disconnect(m_undoStack, nullptr, this, nullptr);
}

MTextureLayer* MCanvas::createLayer()
{
    return new MTextureLayer();
}

bool MCanvas::canPaint() const
{
    const MTextureLayer* layer = current();
    return m_isGlInitialized && MBrushList::instance()->currentBrush() && layer && layer->visible() &&
           !layer->locked();
}

void MCanvas::registerId(const QString& id)
{
    m_registeredIds[id] += 1;
}

void MCanvas::unregisterId(const QString& id)
{
    auto it = m_registeredIds.find(id);
    if (it == m_registeredIds.end()) {
        MLogger::systemError(QStringLiteral("MCanvas::unregisterId"),
                             QStringLiteral("Unregister of a non previously registered id: %1").arg(id));
        return;
    }
    if (--it.value() < 1) {
        QFile::remove(MUtility::tileFilePath(id));
        m_registeredIds.erase(it);
    }
}

void MCanvas::stroke(const MEvent& event, int index, const MBrush* brush)
{
    switch (event.type) {
    case 0: {
        const MBrush* strokeBrush = brush ? brush : MBrushList::instance()->currentBrush();
        if (strokeBrush) {
            MColorList* colors = MColorList::instance();
            startStroke(event, *strokeBrush, colors->foregroundColor(), colors->backgroundColor(), -1, index);
        }
        break;
    }
    case 2:
        if (canPaint())
            strokeTo(event, index);
        break;
    case 3:
        if (canPaint())
            endStroke(event, index);
        break;
    default:
        break;
    }
}

bool MCanvas::startStroke(const MEvent& event, const MBrush& brush, const QColor& color,
                          const QColor& secondColor, int layerIndex, int index)
{
    if (!canPaint())
        return false;
    MColorList::instance()->updateColorList(color);
    MStartStrokeRunner(m_sharedData, resolveRow(layerIndex), index, event, brush, color, secondColor).run();
    m_strokeInProgress = true;
    MStrokeToRunner(m_sharedData, index, event).run();
    return true;
}

void MCanvas::strokeTo(const MEvent& event, int index)
{
    MStrokeToRunner(m_sharedData, index, event).run();
}

void MCanvas::endStroke(const MEvent& event, int index)
{
    MEndStrokeRunner(m_sharedData, index, event).run();
    m_strokeInProgress = false;
}

void MCanvas::strokePath(const QPainterPath& path, bool clip)
{
    if (!current())
        return;
    const QList<QPolygonF> polygons = path.toSubpathPolygons();
    beginMacro(tr("Brush stroke"));
    setClipStroke(clip);
    for (const QPolygonF& polygon : polygons) {
        if (polygon.isEmpty())
            continue;
        MEvent event;
        event.type = 0;
        event.positionX = polygon.first().x();
        event.positionY = polygon.first().y();
        event.speed = 2.0;
        stroke(event);
        QPointF last = polygon.first();
        for (int i = 1; i < polygon.size(); ++i) {
            const QPointF point = polygon.at(i);
            const QLineF step(last, point);
            const double length = step.length();
            // The path's time runs 2 units a point.
            if (length >= 0.5) {
                event.type = 2;
                event.positionX = point.x();
                event.positionY = point.y();
                event.directionX = step.dx() / length;
                event.directionY = step.dy() / length;
                event.timeToPrevious = 2.0;
                event.totalTime += 2.0;
                event.distanceToPrevious = length;
                event.totalDistance += length;
                event.speed = length * 0.5;
                event.random = MEvent::randomInput();
                stroke(event);
                last = point;
            }
        }
        event.type = 3;
        event.positionX = polygon.last().x();
        event.positionY = polygon.last().y();
        stroke(event);
    }
    endMacro();
    setClipStroke(true);
}

void MCanvas::drawLine(const QPointF& from, const QPointF& to)
{
    // Outside the macro counters: the stack is driven directly.
    m_undoStack->beginMacro(tr("Draw line"));
    MEvent event;
    event.positionX = from.x();
    event.positionY = from.y();
    event.speed = 2.0;
    stroke(event);
    event.type = 2;
    event.positionX = to.x();
    event.positionY = to.y();
    stroke(event);
    event.type = 3;
    stroke(event);
    m_undoStack->endMacro();
}

void MCanvas::beginMacro(const QString& text)
{
    ++s_macroBeginCount;
    m_undoStack->beginMacro(text);
}

void MCanvas::endMacro()
{
    ++s_macroEndCount;
    m_undoStack->endMacro();
}

bool MCanvas::save(const QString& fileName)
{
    m_lastError = 0;
    if (!makeCurrent())
        MLogger::systemError(QStringLiteral("MCanvas::save"), contextFailure);
    m_lastError = MCanvasWriter::saveCanvasToFile(fileName, this);
    if (m_lastError != 0)
        return false;
    setFileName(fileName);
    setIsNew(false);
    m_undoStack->clear();
    return true;
}

bool MCanvas::load(const QString& fileName)
{
    m_lastError = 0;
    if (!makeCurrent())
        MLogger::systemError(QStringLiteral("MCanvas::load"), contextFailure);
    disconnectSignals();
    clearLayers();
    setClipPath(QPainterPath());
    m_lastError = MCanvasReader::loadCanvasFromFile(fileName, this);
    connectSignals();
    const bool ok = m_lastError == 0;
    setFileName(ok ? fileName : QString());
    setIsNew(!ok);
    m_undoStack->clear();
    setCurrentRow(count() - 1);
    Q_EMIT layerListReset();
    return ok;
}

void MCanvas::setClipStroke(bool clipStroke)
{
    if (clipStroke == m_clipStroke)
        return;
    m_clipStroke = clipStroke;
    Q_EMIT clipStrokeChanged(clipStroke);
}

void MCanvas::appendLayer()
{
    new MCommandAppendLayer(this);
}

void MCanvas::prependLayer()
{
    new MCommandPrependLayer(this);
}

void MCanvas::removeLayer(int layerIndex)
{
    const int row = resolveRow(layerIndex);
    if (at(row))
        new MCommandRemoveLayer(this, row);
}

void MCanvas::removeLayers()
{
    if (count() == 0)
        return;
    const bool blocked = blockSignals(true);
    beginMacro(tr("Remove layers"));
    while (count() > 0)
        new MCommandRemoveLayer(this, 0);
    endMacro();
    blockSignals(blocked);
    // The views heard nothing while the list emptied.
    Q_EMIT layerListReset();
    refresh();
}

void MCanvas::removeEmptyLayers()
{
    bool anyEmpty = false;
    for (int row = 0; row < count() && !anyEmpty; ++row)
        anyEmpty = at(row)->isEmpty();
    if (!anyEmpty)
        return;
    beginMacro(tr("Remove layers"));
    for (int row = count() - 1; row >= 0; --row) {
        if (at(row)->isEmpty())
            new MCommandRemoveLayer(this, row);
    }
    endMacro();
}

void MCanvas::showLayer(int layerIndex)
{
    if (MTextureLayer* layer = at(resolveRow(layerIndex))) {
        layer->setVisible(!layer->visible());
        refresh();
    }
}

void MCanvas::lockLayer(int layerIndex)
{
    if (MTextureLayer* layer = at(resolveRow(layerIndex))) {
        layer->setLocked(!layer->locked());
        refresh();
    }
}

void MCanvas::setAllLayers(const char* property, bool value)
{
    for (int row = 0; row < count(); ++row)
        at(row)->setProperty(property, value);
    refresh();
}

void MCanvas::showAllLayers()
{
    setAllLayers("visible", true);
}

void MCanvas::hideAllLayers()
{
    setAllLayers("visible", false);
}

void MCanvas::hideAllLayersExcept(int except)
{
    for (int row = 0; row < count(); ++row) {
        if (row != except)
            at(row)->setVisible(false);
    }
    refresh();
}

void MCanvas::lockAllLayers()
{
    setAllLayers("locked", true);
}

void MCanvas::unlockAllLayers()
{
    setAllLayers("locked", false);
}

void MCanvas::moveUpLayer(int layerIndex)
{
    const int row = resolveRow(layerIndex);
    if (count() > 1 && row > 0 && row < count())
        new MCommandLayerUp(this, row);
}

void MCanvas::moveDownLayer(int layerIndex)
{
    const int row = resolveRow(layerIndex);
    if (count() > 1 && row >= 0 && row + 1 < count())
        new MCommandLayerDown(this, row);
}

void MCanvas::nextLayer()
{
    if (count() == 0)
        return;
    setCurrentRow(currentRow() + 1 >= count() ? 0 : currentRow() + 1);
}

void MCanvas::previousLayer()
{
    if (count() == 0)
        return;
    setCurrentRow(currentRow() - 1 < 0 ? count() - 1 : currentRow() - 1);
}

void MCanvas::editLayer(int layerIndex)
{
    const int row = resolveRow(layerIndex);
    if (!at(row))
        return;
    DLayerEdit dialog(this, row, QApplication::activeWindow());
    dialog.exec();
}

void MCanvas::setLayerProperties(int layerIndex, const QHash<QByteArray, QVariant>& oldValues,
                                 const QHash<QByteArray, QVariant>& newValues)
{
    if (at(layerIndex))
        new MCommandUpdateLayerProperties(this, layerIndex, oldValues, newValues);
}

void MCanvas::setPaperSize(const QSize& size, bool clip)
{
    beginMacro(tr("Set canvas size: %1, %2").arg(size.width()).arg(size.height()));
    const double width = qMax(1.0, double(size.width()));
    const double height = qMax(1.0, double(size.height()));
    const QPointF centre = m_paintedRect.center();
    const QRectF rect = QRectF(centre.x() - width * 0.5, centre.y() - height * 0.5, width, height).toRect();
    if (clip) {
        const QPainterPath saved = m_selectionPath;
        QPainterPath page;
        page.addRect(rect);
        setClipPath(page);
        invertClipPath();
        if (canPaint())
            MFillCanvasRunner(m_sharedData, currentRow(), Qt::transparent).run();
        setClipPath(saved);
    }
    new MCommandSetPaintedRect(this, m_paintedRect, rect);
    endMacro();
    refresh();
}

bool MCanvas::loadPaper(const QString& name)
{
    const QString path =
        QStringLiteral("%1%2").arg(MUtility::directory(MEnum::UserPath, MEnum::PaperDir), name.trimmed());
    // A paper is a file of the paper directory: a name that reaches elsewhere is refused.
    const QString trimmed = name.trimmed();
    if (trimmed.isEmpty() || QFileInfo(trimmed).fileName() != trimmed || trimmed == QStringLiteral("..") ||
        trimmed.contains(QLatin1Char('\\')) || !QFileInfo(path).isFile())
        return false;
    QImage image(path);
    if (image.isNull())
        return false;
    if (image.format() != QImage::Format_ARGB32_Premultiplied)
        image = image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    m_paperName = name.trimmed();
    m_paperTile = image;
    m_paintEngine->resetPaper();
    return true;
}

void MCanvas::setPaperName(const QString& name)
{
    if (name == m_paperName)
        return;
    if (loadPaper(name))
        refresh();
}

void MCanvas::setPaperType(MEnum::PaperType type)
{
    if (type == m_paperType)
        return;
    m_paperType = type;
    refresh();
}

void MCanvas::setPaperTile(const QImage& image)
{
    m_paperTile = image.format() == QImage::Format_ARGB32_Premultiplied || image.isNull()
                      ? image
                      : image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    m_paintEngine->resetPaper();
    refresh();
}

void MCanvas::setPaperColor(const QColor& color)
{
    if (color == m_paperColor)
        return;
    m_paperColor = color;
    refresh();
}

void MCanvas::setPaintMargin(double margin)
{
    if (margin == m_paintMargin)
        return;
    m_paintMargin = margin;
    refresh();
}

void MCanvas::setAutoExtent(bool autoExtent)
{
    if (autoExtent == m_autoExtent)
        return;
    m_autoExtent = autoExtent;
    refresh();
}

void MCanvas::setHasSelection(bool hasSelection)
{
    if (hasSelection == m_hasSelection)
        return;
    m_hasSelection = hasSelection;
    Q_EMIT hasSelectionChanged(hasSelection);
}

void MCanvas::setClipPath(const QPainterPath& path)
{
    m_selectionPath = path;
    setHasSelection(!path.isEmpty());
    if (makeCurrent())
        MCanvasFill::clipPath(path, Qt::black, m_selectionLayer.get(), true);
    Q_EMIT selectionChanged();
}

void MCanvas::resetSelectionPath()
{
    m_selectionPath = QPainterPath();
    Q_EMIT selectionChanged();
}

void MCanvas::resetClipPath()
{
    setClipPath(QPainterPath());
}

void MCanvas::invertClipPath()
{
    QPainterPath page;
    page.addRect(m_paintedRect);
    setClipPath(page.subtracted(m_selectionPath));
}

void MCanvas::cropToSelection()
{
    if (!m_selectionPath.isEmpty())
        updatePaintedRect(m_selectionPath.boundingRect());
}

void MCanvas::setPaintedRect(const QRectF& rect)
{
    if (fuzzyEqual(rect.x(), m_paintedRect.x()) && fuzzyEqual(rect.y(), m_paintedRect.y()) &&
        fuzzyEqual(rect.width(), m_paintedRect.width()) && fuzzyEqual(rect.height(), m_paintedRect.height()))
        return;
    m_paintedRect = rect;
    refresh();
    Q_EMIT paintedRectChanged(rect);
}

void MCanvas::updatePaintedRect(const QRectF& rect)
{
    if (rect.isEmpty())
        return;
    new MCommandSetPaintedRect(this, m_paintedRect, QRectF(rect.toAlignedRect()));
}

void MCanvas::setFileName(const QString& fileName)
{
    const QString path = fileName.isEmpty() ? QString() : QFileInfo(fileName).absoluteFilePath();
    if (path == m_fileName)
        return;
    m_fileName = path;
    Q_EMIT fileNameChanged(path);
}

void MCanvas::setIsNew(bool isNew)
{
    if (isNew == m_isNew)
        return;
    m_isNew = isNew;
    Q_EMIT isNewChanged(isNew);
}

void MCanvas::setIsReadOnly(bool isReadOnly)
{
    if (isReadOnly == m_isReadOnly)
        return;
    m_isReadOnly = isReadOnly;
    Q_EMIT isReadOnlyChanged(isReadOnly);
}

void MCanvas::undo()
{
    if (!m_undoStack->canUndo())
        return;
    makeCurrent();
    m_undoStack->undo();
    Q_EMIT updateThumbnail(this, currentRow());
}

void MCanvas::redo()
{
    if (!m_undoStack->canRedo())
        return;
    makeCurrent();
    m_undoStack->redo();
    Q_EMIT updateThumbnail(this, currentRow());
}

void MCanvas::clear()
{
    MSettings* settings = MSettings::instance();
    setPaperType(MEnum::PaperType(settings->paperType()));
    setPaperColor(settings->paperColor());
    setPaperName(settings->paperName());
    setPaperSize(QSize(settings->defaultWidth(), settings->defaultHeight()), false);
    setAutoExtent(settings->autoExtent());
    setPaintMargin(settings->paintMargin());
    clearLayers();
    resetClipPath();
    new MCommandAppendLayer(this);
    m_undoStack->clear();
}

void MCanvas::refresh()
{
    Q_EMIT refreshNow();
}

void MCanvas::mergeStrokeTile(MTextureTile* destination, int layerIndex)
{
    m_paintEngine->drawTile(destination, layerIndex, GL_ONE, GL_ZERO, m_sharedData->programList(),
                            QStringLiteral("stroke"), 1.0, m_strokeLayer->opacity(),
                            m_sharedData->vertexArray());
}

void MCanvas::blitTile(MTextureTile* destination, MTextureTile* source, double opacity, bool replace)
{
    m_paintEngine->blitTile(destination, source, GL_ONE, replace ? GL_ZERO : GL_ONE_MINUS_SRC_ALPHA,
                            m_sharedData->programList(), QStringLiteral("blit"), opacity,
                            m_sharedData->vertexArray());
}

QImage MCanvas::render(const QString& program, int width, int height, const QPainterPath& clipPath,
                       bool drawPaper, bool drawAllLayers, const QList<int>& layers)
{
    if (width <= 0 || height <= 0)
        return QImage();
    if (!makeCurrent()) {
        MLogger::systemError(QStringLiteral("MCanvas::render"), contextFailure);
        return QImage();
    }
    QOpenGLFramebufferObjectFormat format;
    format.setAttachment(QOpenGLFramebufferObject::NoAttachment);
    format.setSamples(0);
    format.setMipmap(false);
    format.setInternalTextureFormat(GL_RGBA8);
    format.setTextureTarget(GL_TEXTURE_2D);
    QOpenGLFramebufferObject framebuffer(width, height, format);
    if (!framebuffer.isValid() || !framebuffer.bind()) {
        MLogger::systemError(QStringLiteral("MCanvas::render"),
                             QStringLiteral("Unable to create frame buffer"));
        return QImage();
    }
    QOpenGLFunctions* gl = m_context->functions();
    gl->glClearColor(0, 0, 0, 0);
    gl->glClear(GL_COLOR_BUFFER_BIT);

    const QRectF source = clipPath.isEmpty() ? m_paintedRect : clipPath.boundingRect();
    const QRectF target(0, 0, width, height);
    // The source fits the target whole, centred.
    MTransform transform;
    const double scale = qMin(target.width() / source.width(), target.height() / source.height());
    transform.zoom(scale, QPointF());
    transform.setTranslation(target.center() - source.center() * scale);

    MPaintParams params;
    params.context = m_context.get();
    params.canvas = this;
    params.programList = m_sharedData->programList();
    params.vertexArray = m_sharedData->vertexArray();
    params.viewRect = target;
    params.useDevicePixelRatio = false;
    params.transform = &transform;
    params.clipRect = source;
    if (drawPaper)
        m_paintEngine->drawPaper(&params);
    if (drawAllLayers) {
        m_paintEngine->drawLayers(&params);
    } else {
        const QList<int> rows = layers.isEmpty() ? QList<int>{currentRow()} : layers;
        for (int row : rows) {
            MTextureLayer* layer = at(row);
            if (!layer)
                continue;
            params.layer = layer;
            params.underLayer = at(row - 1);
            params.opacity = layer->opacity();
            params.shaderName = program;
            m_paintEngine->drawLayer(&params);
        }
    }
    framebuffer.release();
    return framebuffer.toImage();
}

QImage MCanvas::render(int layerIndex)
{
    const QSize size = m_paintedRect.size().toSize();
    return render(QStringLiteral("basic"), size.width(), size.height(), QPainterPath(), false, false,
                  {layerIndex});
}

QImage MCanvas::render()
{
    const QSize size = m_paintedRect.size().toSize();
    return render(QStringLiteral("basic"), size.width(), size.height(), QPainterPath(), true, true);
}

void MCanvas::copyToClipboard(bool useSelection)
{
    if (!current())
        return;
    const QPainterPath path = useSelection ? m_selectionPath : QPainterPath();
    const QSize size = (useSelection ? m_selectionPath.boundingRect() : m_paintedRect).size().toSize();
    const QImage image =
        render(QStringLiteral("blit"), size.width(), size.height(), path, false, false, {currentRow()});
    if (!image.isNull())
        QGuiApplication::clipboard()->setImage(image);
}

void MCanvas::updateLayerThumbnail(int layerIndex)
{
    const int row = resolveRow(layerIndex);
    MTextureLayer* layer = at(row);
    if (!layer || m_paintedRect.isEmpty())
        return;
    // The page's shape, fitted in a square of the thumbnail size.
    const int edge = qMax(1, MSettings::instance()->thumbnailSize());
    const double scale = edge / qMax(m_paintedRect.width(), m_paintedRect.height());
    const int width = qMax(1, qRound(m_paintedRect.width() * scale));
    const int height = qMax(1, qRound(m_paintedRect.height() * scale));
    const QImage image = render(QStringLiteral("basic"), width, height, QPainterPath(), false, false, {row});
    if (!image.isNull())
        layer->setThumbnail(image);
}

void MCanvas::duplicateLayer(int layerIndex)
{
    const int row = resolveRow(layerIndex);
    MTextureLayer* source = at(row);
    if (!source)
        return;
    makeCurrent();
    beginMacro(tr("Duplicate layer"));
    new MCommandAppendLayer(this);
    const int copyRow = count() - 1;
    MTextureLayer* copy = at(copyRow);
    for (int i = 0; i < source->tileCount(); ++i) {
        auto* tile = dynamic_cast<MTextureTile*>(source->tile(i));
        auto* target =
            tile ? dynamic_cast<MTextureTile*>(copy->addTile(QRectF(tile->rect()).center())) : nullptr;
        if (target && target->isCreated())
            new MCommandUpdateTile(this, copyRow, target, tile, 1.0, false, true);
    }
    endMacro();
    Q_EMIT updateThumbnail(this, copyRow);
    refresh();
}

void MCanvas::mergeLayers(int under, int over)
{
    MTextureLayer* lower = at(under);
    MTextureLayer* upper = at(over);
    if (!lower || !upper || under == over)
        return;
    makeCurrent();
    beginMacro(tr("Merge layer"));
    for (int i = 0; i < upper->tileCount(); ++i) {
        auto* tile = dynamic_cast<MTextureTile*>(upper->tile(i));
        auto* target =
            tile ? dynamic_cast<MTextureTile*>(lower->addTile(QRectF(tile->rect()).center())) : nullptr;
        if (target && target->isCreated())
            new MCommandUpdateTile(this, under, target, tile, upper->opacity(), false, false);
    }
    new MCommandRemoveLayer(this, over);
    endMacro();
    Q_EMIT updateThumbnail(this, indexOf(lower));
    refresh();
}

void MCanvas::mergeLayerWithUpper(int layerIndex)
{
    const int row = resolveRow(layerIndex);
    mergeLayers(row, row + 1);
}

void MCanvas::mergeLayerWithLower(int layerIndex)
{
    const int row = resolveRow(layerIndex);
    mergeLayers(row - 1, row);
}

void MCanvas::applyEffect()
{
    MTextureLayer* layer = current();
    if (!layer || !layer->isShaderActive())
        return;
    MShader* shader = MShaderList::instance()->shaderById(layer->shaderId());
    if (!shader)
        return;
    makeCurrent();
    const int row = currentRow();
    beginMacro(
        tr("Apply effect %1").arg(shader->description().isEmpty() ? shader->id() : shader->description()));
    m_strokeLayer->clear();
    for (int i = 0; i < layer->tileCount(); ++i) {
        auto* tile = dynamic_cast<MTextureTile*>(layer->tile(i));
        if (!tile || !tile->isCreated())
            continue;
        auto* result = dynamic_cast<MTextureTile*>(m_strokeLayer->addTile(QRectF(tile->rect()).center()));
        if (!result || !result->isCreated())
            continue;
        m_paintEngine->drawTileOnTexture(tile, row, result->texture(), GL_ONE, GL_ZERO,
                                         m_sharedData->programList(), layer->shaderId(), 1.0, 1.0,
                                         m_sharedData->vertexArray());
        result->recordChange(QRectF(result->outerRect()));
        new MCommandUpdateTile(this, row, tile, result, 1.0, false, true);
    }
    Q_EMIT updateThumbnail(this, row);
    endMacro();
    m_strokeLayer->clear();
    layer->set_isShaderActive(false);
    refresh();
}

bool MCanvas::pasteImage(const QPointF& point, const QImage& image, bool replaceClip, const QString& title,
                         int layerIndex, const QRect& rect, bool overwrite)
{
    const int row = resolveRow(layerIndex);
    MTextureLayer* layer = at(row);
    if (!layer || !layer->visible() || layer->locked() || image.isNull())
        return false;
    makeCurrent();
    const QPoint topLeft((point - QPointF(image.width() / 2, image.height() / 2)).toPoint());
    const QRect target(topLeft, image.size());
    beginMacro(title.isEmpty() ? tr("Paste an image") : title);
    setClipStroke(replaceClip);
    const QRect area = rect.isEmpty() ? target : rect.translated(topLeft);
    QSet<MTile*> tiles;
    layer->tilesInRect(QRectF(area), tiles);
    m_strokeLayer->clear();
    for (MTile* tile : qAsConst(tiles)) {
        auto* layerTile = dynamic_cast<MTextureTile*>(tile);
        auto* strokeTile = dynamic_cast<MTextureTile*>(m_strokeLayer->addTile(QRectF(tile->rect()).center()));
        if (!layerTile || !strokeTile || !layerTile->isCreated() || !strokeTile->isCreated())
            continue;
        const QRect outer = strokeTile->outerRect();
        const QRect touched = outer.intersected(target);
        if (touched.isEmpty())
            continue;
        QImage piece(outer.size(), QImage::Format_ARGB32_Premultiplied);
        piece.fill(Qt::transparent);
        QPainter painter(&piece);
        painter.drawImage(target.topLeft() - outer.topLeft(), image);
        painter.end();
        strokeTile->setData(piece);
        strokeTile->recordChange(QRectF(touched));
        new MCommandUpdateTile(this, row, layerTile, strokeTile, 1.0, false, overwrite);
    }
    Q_EMIT updateThumbnail(this, row);
    endMacro();
    setClipStroke(false);
    m_strokeLayer->clear();
    refresh();
    return true;
}

void MCanvas::appendImage(const QPointF& point, const QImage& image)
{
    beginMacro(tr("Append an image"));
    new MCommandAppendLayer(this);
    pasteImage(point, image, false, tr("Paste an image"));
    endMacro();
}

bool MCanvas::pasteBuffer(MQuickFill* quickFill, int layerIndex, const QString& title)
{
    const int row = resolveRow(layerIndex);
    MTextureLayer* layer = at(row);
    if (!quickFill || !layer)
        return false;
    if (!makeCurrent()) {
        MLogger::systemError(QStringLiteral("MCanvas::pasteBuffer"), contextFailure);
        return false;
    }
    bool ok = true;
    beginMacro(title);
    for (MBufferTile* item : quickFill->paintedTiles()) {
        auto* tile = dynamic_cast<MTextureTile*>(layer->addTile(QRectF(item->rect()).center()));
        if (!tile || !tile->isCreated()) {
            ok = false;
            break;
        }
        new MCommandQuickFillTile(this, row, tile, item);
    }
    endMacro();
    Q_EMIT updateThumbnail(this, row);
    refresh();
    return ok;
}

bool MCanvas::quickSelect(const QPointF& point, bool clearSelection, int threshold, int layerIndex)
{
    MQuickFill quickFill;
    quickFill.setCanvas(this);
    quickFill.set_clearSelection(clearSelection);
    quickFill.set_threshold(quint8(qBound(0, threshold, 255)));
    // Only a selection that reached the mask layer counts: a run that ran out
    // of memory left the layer as it was.
    if (!quickFill.select(point.toPoint(), layerIndex))
        return false;
    setHasSelection(true);
    Q_EMIT selectionChanged();
    return true;
}

bool MCanvas::loadImage(const QString& fileName)
{
    m_lastError = 0;
    QImage image(fileName);
    if (image.isNull()) {
        m_lastError = 1;
        return false;
    }
    if (!makeCurrent())
        MLogger::systemError(QStringLiteral("MCanvas::loadImage"), contextFailure);
    disconnectSignals();
    clearLayers();
    setClipPath(QPainterPath());
    new MCommandAppendLayer(this);
    setPaperSize(image.size());
    pasteImage(QPointF(0, 0), image, false, QString(), currentRow());
    connectSignals();
    setFileName(fileName);
    setIsNew(true);
    m_undoStack->clear();
    setCurrentRow(count() - 1);
    Q_EMIT layerListReset();
    return true;
}

void MCanvas::fillTile(MTextureTile* tile, const QColor& color)
{
    auto* selection = dynamic_cast<MTextureTile*>(m_selectionLayer->tileAt(QRectF(tile->rect()).center()));
    m_paintEngine->fillTile(tile, selection, color, m_sharedData->programList(), QStringLiteral("fill"),
                            m_hasSelection, m_sharedData->vertexArray());
}

void MCanvas::erase()
{
    fill(Qt::transparent);
}

void MCanvas::fill(const QColor& color)
{
    if (canPaint())
        MFillCanvasRunner(m_sharedData, currentRow(), color).run();
}
