#pragma once

#include <QByteArray>
#include <QHash>
#include <QImage>
#include <QString>
#include <QVariant>

class MField;
class MShader;

// Applies an effect of MShaderList to an image exactly as a layer's effect is
// drawn in a view: the image becomes the one layer of a throw-away canvas on
// transparent paper, the layer takes the effect with the given values, and the
// canvas is drawn offscreen at one pixel per pixel. Unlike the view, which
// falls back to "basic", an effect that doesn't compile is an error here: a
// batch user has to know that the result isn't what was asked for.
class MEffectRenderer
{
public:
    // The effect of that id applied to image, as Format_ARGB32_Premultiplied
    // of the image's size; null with errorString() set when the effect is
    // unknown, is a brush engine, doesn't parse, compile or link, when a value
    // names no parameter or doesn't convert to its parameter's type, or when
    // the image can't be drawn. Parameters without a value take their
    // defaults. The context current on entry is current again on return.
    QImage apply(const QString& effectId, const QImage& image,
                 const QHash<QByteArray, QVariant>& values = QHash<QByteArray, QVariant>());
    QString errorString() const { return m_error; }

    // A parameter value from user text: "#rrggbb" for a colour; "true",
    // "false", "1" or "0" for a boolean; a number within the parameter's range
    // for the others, a whole one for integers, one of the listed values for
    // an enumeration. Out of range is refused rather than clamped. Invalid,
    // with *error set, when the text doesn't fit.
    static QVariant valueFromText(const MField& field, const QString& text, QString* error);
    // A value of the parameter's own type: text goes through valueFromText;
    // numbers, booleans and colours convert where no information is lost.
    // Invalid, with *error set, otherwise.
    static QVariant convertedValue(const MField& field, const QVariant& value, QString* error);
    // Compiles and links the effect's assembled source (with the brush header
    // for a brush engine) with the driver, on a context of its own. False with
    // the reason in *error.
    static bool compile(MShader* shader, QString* error);

private:
    QImage fail(const QString& error);

    QString m_error;
};
