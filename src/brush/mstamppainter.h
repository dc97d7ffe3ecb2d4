#pragma once

#include "brush/mbrush.h"
#include "gpu/mvertex.h"

#include <QColor>
#include <QOpenGLFunctions>
#include <QPointF>
#include <QRectF>
#include <QSet>
#include <QVector>

class MSharedData;
class MTextureTile;
class MTile;
class QOpenGLShaderProgram;

// The GPU half of laying stamps: the quad of one stamp, and the pass that
// renders a batch of stamps into tiles of the canvas's stroke layer with the
// stroke brush's engine ("stamping" when it has none), handing the program
// every uniform and sampler that brush engines read. The values of one row of
// the shared data's settings drive a whole batch; only position, size, ratio,
// angle and colour vary from stamp to stamp, because they are in the vertices.
class MStampPainter : protected QOpenGLFunctions
{
public:
    explicit MStampPainter(MSharedData* sharedData);

    // Appends the six vertices of a stamp of that radius centred on position,
    // its height scaled by ratio and turned by angle degrees. Returns the
    // stamp's bounds: a square of 1.42 times the radius around position, which
    // holds the stamp at any angle while the ratio is at most 1.
    static QRectF addStamp(QVector<MVertex>& stamps, const QPointF& position, double radius, double ratio,
                           double angle, const QColor& color);
    // Those bounds alone.
    static QRectF stampBounds(const QPointF& position, double radius);

    // Renders all stamps into each tile of the stroke layer, reading the
    // current layer at the same place (that layer gets a tile there when it
    // has none). Canvas coordinates are moved by offset. False, with a line in
    // the log, when nothing could be drawn.
    bool drawStamps(const QSet<MTile*>& tiles, const QVector<MVertex>& stamps,
                    const MBrush::SettingValues& values, const QPointF& offset = QPointF());

    // The uniforms of the stamp programs for a pass into target, from values.
    void setUniforms(QOpenGLShaderProgram* program, const MBrush::SettingValues& values,
                     MTextureTile* target) const;

    // The program variant that leaves out what the uniforms of setUniforms
    // switch off for these values (MShaderProgramList::VariantFlag).
    int variantFlags(const MBrush::SettingValues& values) const;

    // The colours of a row of settings: hue, saturation and value each held
    // to 0..1, opaque.
    static QColor brushColor(const MBrush::SettingValues& values);
    static QColor borderColor(const MBrush::SettingValues& values);
    // An int or enum setting as the programs read it: truncated towards zero.
    static int truncated(double value);

private:
    bool hasBrushTexture() const;
    bool inheritsAlphaUnder(const MBrush::SettingValues& values) const;
    bool drawTile(MTextureTile* target, const QVector<MVertex>& stamps, const MBrush::SettingValues& values,
                  const QPointF& offset);

    MSharedData* m_sharedData;
};
