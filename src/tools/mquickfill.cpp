#include "tools/mquickfill.h"

#include "document/mcanvas.h"
#include "document/mtexturelayer.h"
#include "gpu/mbufferlayer.h"
#include "gpu/mbuffertile.h"

#include <QElapsedTimer>

#include <algorithm>
#include <cstdlib>

namespace {

uchar clampByte(float value)
{
    return uchar(qBound(0, int(value + 0.5f), 255));
}

} // namespace

MQuickFill::MQuickFill(QObject* parent) : QObject(parent) {}

MQuickFill::~MQuickFill()
{
    freeLists();
}

void MQuickFill::set_threshold(quint8 threshold)
{
    if (threshold == m_threshold)
        return;
    m_threshold = threshold;
    Q_EMIT thresholdChanged(threshold);
}

void MQuickFill::set_clearSelection(bool clearSelection)
{
    if (clearSelection == m_clearSelection)
        return;
    m_clearSelection = clearSelection;
    Q_EMIT clearSelectionChanged(clearSelection);
}

void MQuickFill::setPattern(const QImage& image)
{
    m_hasPattern = !image.isNull();
    m_patternImage = m_hasPattern ? image.convertToFormat(QImage::Format_ARGB32_Premultiplied) : QImage();
    m_patternWidth = m_patternImage.width();
    m_patternHeight = m_patternImage.height();
}

MTextureLayer* MQuickFill::prepare(int* layerIndex)
{
    if (!m_canvas)
        return nullptr;
    MTextureLayer* layer = m_canvas->at(*layerIndex);
    if (!layer) {
        layer = m_canvas->current();
        *layerIndex = m_canvas->currentRow();
    }
    if (!layer)
        return nullptr;
    if (!m_buffer)
        m_buffer = new MBufferLayer(512, 6, 4, this);
    m_buffer->setTileSize(unsigned(layer->tileSize()));
    m_buffer->setMargin(unsigned(layer->tileMargin()));
    m_buffer->setBytesPerPixel(unsigned(layer->bytesPerPixel()));
    m_buffer->clear();
    return layer;
}

bool MQuickFill::fill(const QPoint& point, const QColor& color, int layerIndex)
{
    MTextureLayer* layer = prepare(&layerIndex);
    if (!layer)
        return false;
    if (scan(point, color, m_canvas, layer, nullptr) != Done || m_filledRect.isEmpty())
        return false;
    return m_canvas->pasteBuffer(this, layerIndex, tr("Fill"));
}

bool MQuickFill::select(const QPoint& point, int layerIndex)
{
    MTextureLayer* layer = prepare(&layerIndex);
    if (!layer)
        return false;
    MBufferLayer mask(m_buffer->tileSize(), m_buffer->margin(), m_buffer->bytesPerPixel());
    MTextureLayer* selection = m_canvas->selectionLayer();
    // A selection that can't be read whole is not added to: it would lose parts.
    if (!m_clearSelection && !mask.fromTextureLayer(m_canvas, selection))
        return false;
    const int result = scan(point, Qt::black, m_canvas, layer, &mask);
    if (result != Done || m_filledRect.isEmpty())
        return false;
    if (!m_canvas->makeCurrent())
        return false;
    selection->clear();
    return mask.toTextureLayer(m_canvas, selection, true);
}

MQuickFill::Span* MQuickFill::allocateSpan()
{
    return static_cast<Span*>(std::calloc(1, sizeof(Span)));
}

MQuickFill::Span* MQuickFill::takeRecord()
{
    if (m_freeList) {
        Span* span = m_freeList;
        m_freeList = span->next;
        *span = Span{};
        return span;
    }
    return allocateSpan();
}

void MQuickFill::recycle(Span* span)
{
    span->previous = nullptr;
    span->next = m_freeList;
    m_freeList = span;
}

void MQuickFill::freeLists()
{
    for (Span** list : {&m_visited, &m_pending, &m_freeList}) {
        while (Span* span = *list) {
            *list = span->next;
            std::free(span);
        }
    }
}

void MQuickFill::unlinkPending(Span* span)
{
    if (span->previous)
        span->previous->next = span->next;
    else
        m_pending = span->next;
    if (span->next)
        span->next->previous = span->previous;
    span->next = nullptr;
    span->previous = nullptr;
}

void MQuickFill::pushLine(int x1, int x2, int y, int dy)
{
    Span* span = takeRecord();
    if (!span) {
        m_outOfMemory = true;
        return;
    }
    span->x1 = x1;
    span->x2 = x2;
    span->y = y;
    span->dy = dy;
    if (!m_useVisited || !m_pending || m_pending->x1 >= x1) {
        span->next = m_pending;
        if (m_pending)
            m_pending->previous = span;
        m_pending = span;
        return;
    }
    // Ascending x1: before the first record whose x1 is not below the new one.
    Span* before = m_pending;
    while (before->next && before->next->x1 < x1)
        before = before->next;
    span->next = before->next;
    span->previous = before;
    if (before->next)
        before->next->previous = span;
    before->next = span;
}

void MQuickFill::popLine(int* x1, int* x2, int* y, int* dy)
{
    // Staying on the row of the last record keeps the fill on one row at a time.
    Span* span = m_pending->next;
    while (span && span->y != m_lastY)
        span = span->next;
    if (!span)
        span = m_pending;
    unlinkPending(span);
    *x1 = span->x1;
    *x2 = span->x2;
    *y = span->y;
    *dy = span->dy;
    m_lastY = span->y;
    recycle(span);
}

bool MQuickFill::isVisited(int a, int b, int y) const
{
    for (const Span* span = m_visited; span; span = span->next) {
        if (span->y == y && span->x1 <= a && span->x2 >= b)
            return true;
    }
    return false;
}

// The parts of the span s..e of row y that stick out of its parent px1..px2
// (on the row y - dy) have to be searched back towards the parent's row.
// Pending records that would search row y from inside s..e, from the
// parent's row, are work this span has done: they go, or keep only their
// part beyond it, and the search back skips their extent.
void MQuickFill::leakBack(int px1, int px2, int s, int e, int y, int dy)
{
    const int rev = -dy;
    QVector<Span*> found;
    for (Span* span = m_pending; span; span = span->next) {
        if (span->dy == dy && span->y + dy == y && span->x1 > s && span->x1 <= e)
            found.append(span);
    }
    if (found.isEmpty()) {
        if (s < px1 - 1)
            pushLine(s, px1 - 2, y, rev);
        if (e > px2 + 1)
            pushLine(px2 + 2, e, y, rev);
    } else {
        if (s < px1 - 1)
            pushLine(s, px1 - 2, y, rev);
        int lastX = px2;
        const int end = e + 1;
        for (Span* span : qAsConst(found)) {
            if (lastX + 1 < span->x1 - 2)
                pushLine(lastX + 2, span->x1 - 2, y, rev);
            lastX = span->x2;
            if (lastX > end) {
                span->x1 = end + 1;
            } else {
                unlinkPending(span);
                recycle(span);
            }
        }
        if (lastX + 1 < e)
            pushLine(lastX + 1, e, y, rev);
    }

    Span* visited = takeRecord();
    if (!visited) {
        m_outOfMemory = true;
        return;
    }
    visited->x1 = s;
    visited->x2 = e;
    visited->y = y;
    visited->dy = dy;
    visited->next = m_visited;
    m_visited = visited;
}

int MQuickFill::scanLeft(int x, int y, int limit)
{
    return m_buffer->scanLeft(x, y, limit, m_seedColor, m_threshold, m_canvas, m_layer);
}

int MQuickFill::scanRight(int x, int y, int limit)
{
    return m_buffer->scanRight(x, y, limit, m_seedColor, m_threshold, m_canvas, m_layer);
}

int MQuickFill::scanUntilMatch(int x, int y, int limit)
{
    return m_buffer->scanUntilMatch(x, y, limit, m_seedColor, m_threshold, m_canvas, m_layer);
}

void MQuickFill::widenPainted(int x1, int x2, int y)
{
    m_paintedLeft = qMin(m_paintedLeft, x1);
    m_paintedRight = qMax(m_paintedRight, x2);
    m_paintedTop = qMin(m_paintedTop, y);
    m_paintedBottom = qMax(m_paintedBottom, y);
}

void MQuickFill::paintPixel(uchar* pixel, int x, int y) const
{
    if (m_hasPattern) {
        const int px = ((x - m_boundsLeft) % m_patternWidth + m_patternWidth) % m_patternWidth;
        const int py = ((y - m_boundsTop) % m_patternHeight + m_patternHeight) % m_patternHeight;
        const QRgb p = reinterpret_cast<const QRgb*>(m_patternImage.constScanLine(py))[px];
        const int alpha = qAlpha(p);
        if (m_usePatternColor) {
            pixel[0] = uchar(qRed(p));
            pixel[1] = uchar(qGreen(p));
            pixel[2] = uchar(qBlue(p));
        } else {
            for (int i = 0; i < 3; ++i)
                pixel[i] = uchar(m_fillColor[i] * alpha / 255);
        }
        pixel[3] = uchar(alpha);
        return;
    }
    const float k = pixel[3] / 255.0f;
    if (m_seedColor[3] == 0) {
        if (pixel[3] == 0) {
            std::copy(m_fillColor, m_fillColor + 4, pixel);
        } else {
            // The antialiased rim of a shape keeps its colour under the fill,
            // so the region closes without a halo.
            for (int i = 0; i < 3; ++i)
                pixel[i] = clampByte(m_fillColor[i] * (1.0f - k) + pixel[i]);
            pixel[3] = 255;
        }
    } else if (m_seedColor[3] == 255) {
        // An opaque region is recoloured and keeps its soft edge.
        const int fillAlpha = m_fillColor[3];
        for (int i = 0; i < 3; ++i) {
            const int straight =
                fillAlpha == 0 ? m_fillColor[i] : qMin(255, m_fillColor[i] * 255 / fillAlpha);
            pixel[i] = clampByte(straight * k);
        }
    } else {
        std::copy(m_fillColor, m_fillColor + 4, pixel);
    }
}

void MQuickFill::paintSpan(int x1, int x2, int y)
{
    int x = x1;
    while (x <= x2) {
        MBufferTile* tile = m_buffer->tileOfPixel(x, y, m_canvas, m_layer);
        MBufferTile* maskTile = m_mask ? m_mask->tileOfPixel(x, y, nullptr, nullptr) : nullptr;
        if (!tile || (m_mask && !maskTile)) {
            m_outOfMemory = true;
            return;
        }
        if (!m_paintedSet.contains(tile)) {
            m_paintedSet.insert(tile);
            m_paintedTiles.append(tile);
        }
        const int stop = qMin(x2, tile->rect().right());
        const int step = tile->bytesPerPixel();
        uchar* pixel = tile->pixelAt(x, y);
        uchar* marker = maskTile ? maskTile->pixelAt(x, y) : nullptr;
        for (; x <= stop; ++x, pixel += step) {
            paintPixel(pixel, x, y);
            if (marker) {
                std::copy(m_fillColor, m_fillColor + 4, marker);
                marker += maskTile->bytesPerPixel();
            }
        }
    }
}

int MQuickFill::scan(const QPoint& point, const QColor& color, MCanvas* canvas, MTextureLayer* layer,
                     MBufferLayer* mask)
{
    m_filledRect = QRectF();
    m_useVisited = true;
    m_outOfMemory = false;
    m_lastY = -1;
    m_layer = layer;
    m_mask = mask;
    m_paintedTiles.clear();
    m_paintedSet.clear();
    const int seedX = point.x();
    const int seedY = point.y();
    m_paintedLeft = m_paintedRight = m_visitedLeft = m_visitedRight = seedX;
    m_paintedTop = m_paintedBottom = m_visitedTop = m_visitedBottom = seedY;

    m_buffer->clear();
    m_buffer->tileOfPixel(seedX, seedY, canvas, layer);
    m_buffer->pixel(seedX, seedY, m_seedColor);

    if (mask) {
        // The marker can never be taken for the seed.
        for (int i = 0; i < 3; ++i)
            m_fillColor[i] = uchar(~m_seedColor[i]);
        m_fillColor[3] = 255;
    } else {
        m_fillColor[0] = uchar(color.red());
        m_fillColor[1] = uchar(color.green());
        m_fillColor[2] = uchar(color.blue());
        m_fillColor[3] = uchar(color.alpha());
    }
    for (int i = 0; i < 3; ++i)
        m_fillColor[i] = uchar(m_fillColor[i] * m_fillColor[3] / 255);
    if (std::equal(m_fillColor, m_fillColor + 4, m_seedColor))
        return NothingToDo;

    if (Span* spare = takeRecord())
        recycle(spare);
    const QRect bounds = canvas->paintedRect().normalized().toRect();
    const int left = bounds.left();
    const int top = bounds.top();
    const int right = bounds.right();
    const int bottom = bounds.bottom();
    m_boundsLeft = left;
    m_boundsTop = top;
    if (!bounds.contains(seedX, seedY)) {
        freeLists();
        return NothingToDo;
    }

    const int x1 = scanLeft(seedX, seedY, left) + 1;
    const int x2 = scanRight(seedX, seedY, right) - 1;
    pushLine(x1, x2, seedY, 1);
    pushLine(x1, x2, seedY + 1, -1);

    QElapsedTimer timer;
    timer.start();
    while (m_pending && timer.elapsed() <= timeLimit) {
        int a = 0;
        int b = 0;
        int y = 0;
        int dy = 0;
        popLine(&a, &b, &y, &dy);
        y += dy;
        if (y < top || y > bottom || m_outOfMemory)
            continue;
        if (m_useVisited && isVisited(a, b, y))
            continue;
        if (a < m_visitedLeft)
            m_visitedLeft = a;
        else if (b > m_visitedRight)
            m_visitedRight = b;
        m_visitedTop = qMin(m_visitedTop, y);
        m_visitedBottom = qMax(m_visitedBottom, y);

        int x = a;
        const int s = scanLeft(a, y, left) + 1;
        if (s <= a) {
            const int e = scanRight(a + 1, y, right) - 1;
            paintSpan(s, e, y);
            widenPainted(s, e, y);
            if (s < a - 1 || e > b + 1)
                leakBack(a, b, s, e, y, dy);
            pushLine(s, e, y, dy);
            x = e + 1;
        }
        while (x < b) {
            const int s2 = scanUntilMatch(x + 1, y, b);
            if (s2 > b)
                break;
            const int e2 = scanRight(s2 + 1, y, right) - 1;
            paintSpan(s2, e2, y);
            widenPainted(s2, e2, y);
            if (e2 > b + 1)
                leakBack(a, b, s2, e2, y, dy);
            pushLine(s2, e2, y, dy);
            x = e2 + 1;
        }
    }

    m_filledRect = QRectF(m_paintedLeft, m_paintedTop, m_paintedRight - m_paintedLeft + 1,
                          m_paintedBottom - m_paintedTop + 1);
    freeLists();
    if (m_buffer->hasTransferError())
        m_outOfMemory = true;
    return m_outOfMemory ? OutOfMemory : Done;
}
