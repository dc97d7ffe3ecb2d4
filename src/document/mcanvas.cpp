#include "document/mcanvas.h"

#include "app/mlogger.h"
#include "app/msettings.h"
#include "app/mutility.h"
#include "document/mcanvasfill.h"
#include "document/mcanvasreader.h"
#include "document/mcanvaswriter.h"
#include "document/mcommandappendlayer.h"
#include "document/mcommandlayerdown.h"
#include "document/mcommandlayerup.h"
#include "document/mcommandprependlayer.h"
#include "document/mcommandremovelayer.h"
#include "document/mcommandsetpaintedrect.h"
#include "document/mcommandupdatelayerproperties.h"
#include "gpu/mopengl.h"

#include <QDebug>
#include <QFile>
#include <QFileInfo>
#include <QOffscreenSurface>
#include <QOpenGLContext>
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
    // A new document has one layer, and that layer cannot be undone.
    new MCommandAppendLayer(this);
    m_undoStack->clear();
}

void MCanvas::shutDown()
{
    if (!makeCurrent())
        MLogger::systemError(QStringLiteral("MCanvas::shutDown"), contextFailure);
    disconnectSignals();
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
    return m_isGlInitialized && layer && layer->visible() && !layer->locked();
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
        // Erasing outside the new page comes with the fill runner.
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
    if (name.trimmed().isEmpty() || !QFileInfo(path).isFile())
        return false;
    QImage image(path);
    if (image.isNull())
        return false;
    if (image.format() != QImage::Format_ARGB32_Premultiplied)
        image = image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    m_paperName = name.trimmed();
    m_paperTile = image;
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
