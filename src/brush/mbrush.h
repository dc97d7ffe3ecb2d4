#pragma once

#include "app/menum.h"
#include "effects/mcurveowner.h"
#include "effects/mshaderobject.h"

#include <QColor>
#include <QImage>
#include <QSize>
#include <QString>
#include <QVector>

#include <array>

class MCurve;
class MEvent;
class MValues;

// One brush: 39 numeric settings, each of which any of the 14 inputs may drive
// through a curve, stamp by stamp; an optional stamp texture and brush engine.
// The settings live in a values table by property name; a setter emits only on
// a real change and never clamps: ranges bind only the interface.
class MBrush : public MShaderObject, public MCurveOwner
{
    Q_OBJECT
    Q_PROPERTY(QString id READ id WRITE set_id NOTIFY idChanged)
    Q_PROPERTY(QString group READ group WRITE set_group NOTIFY groupChanged)
    Q_PROPERTY(QString description READ description WRITE set_description NOTIFY descriptionChanged)
    Q_PROPERTY(int version READ version WRITE set_version NOTIFY versionChanged)
    Q_PROPERTY(QColor borderColor READ borderColor WRITE set_borderColor NOTIFY borderColorChanged)
    Q_PROPERTY(QImage preview READ preview NOTIFY previewChanged)
    Q_PROPERTY(double radius READ radius WRITE setRadius NOTIFY radiusChanged)
    Q_PROPERTY(double spacing READ spacing WRITE setSpacing NOTIFY spacingChanged)
    Q_PROPERTY(int spacingType READ spacingType WRITE setSpacingType NOTIFY spacingTypeChanged)
    Q_PROPERTY(double flow READ flow WRITE setFlow NOTIFY flowChanged)
    Q_PROPERTY(double opacity READ opacity WRITE setOpacity NOTIFY opacityChanged)
    Q_PROPERTY(double hardness READ hardness WRITE setHardness NOTIFY hardnessChanged)
    Q_PROPERTY(
        int compositionMode READ compositionMode WRITE setCompositionMode NOTIFY compositionModeChanged)
    Q_PROPERTY(bool antialiasing READ antialiasing WRITE setAntialiasing NOTIFY antialiasingChanged)
    Q_PROPERTY(double ratio READ ratio WRITE setRatio NOTIFY ratioChanged)
    Q_PROPERTY(double angle READ angle WRITE setAngle NOTIFY angleChanged)
    Q_PROPERTY(int angleType READ angleType WRITE setAngleType NOTIFY angleTypeChanged)
    Q_PROPERTY(double minDistance READ minDistance WRITE setMinDistance NOTIFY minDistanceChanged)
    Q_PROPERTY(bool smoothing READ smoothing WRITE setSmoothing NOTIFY smoothingChanged)
    Q_PROPERTY(int shape READ shape WRITE setShape NOTIFY shapeChanged)
    Q_PROPERTY(double offsetX READ offsetX WRITE setOffsetX NOTIFY offsetXChanged)
    Q_PROPERTY(double offsetY READ offsetY WRITE setOffsetY NOTIFY offsetYChanged)
    Q_PROPERTY(double noise READ noise WRITE setNoise NOTIFY noiseChanged)
    Q_PROPERTY(double density READ density WRITE setDensity NOTIFY densityChanged)
    Q_PROPERTY(double accumulatorDistance READ accumulatorDistance WRITE setAccumulatorDistance NOTIFY
                   accumulatorDistanceChanged)
    Q_PROPERTY(bool eraser READ eraser WRITE setEraser NOTIFY eraserChanged)
    Q_PROPERTY(bool inheritAlphaUnder READ inheritAlphaUnder WRITE setInheritAlphaUnder NOTIFY
                   inheritAlphaUnderChanged)
    Q_PROPERTY(bool inheritAlphaCurrent READ inheritAlphaCurrent WRITE setInheritAlphaCurrent NOTIFY
                   inheritAlphaCurrentChanged)
    Q_PROPERTY(int sourceRgbBlendMode READ sourceRgbBlendMode WRITE setSourceRgbBlendMode NOTIFY
                   sourceRgbBlendModeChanged)
    Q_PROPERTY(int sourceAlphaBlendMode READ sourceAlphaBlendMode WRITE setSourceAlphaBlendMode NOTIFY
                   sourceAlphaBlendModeChanged)
    Q_PROPERTY(int destinationRgbBlendMode READ destinationRgbBlendMode WRITE setDestinationRgbBlendMode
                   NOTIFY destinationRgbBlendModeChanged)
    Q_PROPERTY(int destinationAlphaBlendMode READ destinationAlphaBlendMode WRITE setDestinationAlphaBlendMode
                   NOTIFY destinationAlphaBlendModeChanged)
    Q_PROPERTY(
        int rgbBlendEquation READ rgbBlendEquation WRITE setRgbBlendEquation NOTIFY rgbBlendEquationChanged)
    Q_PROPERTY(int alphaBlendEquation READ alphaBlendEquation WRITE setAlphaBlendEquation NOTIFY
                   alphaBlendEquationChanged)
    Q_PROPERTY(double colorAbsorbtionRate READ colorAbsorbtionRate WRITE setColorAbsorbtionRate NOTIFY
                   colorAbsorbtionRateChanged)
    Q_PROPERTY(double colorFlowingRate READ colorFlowingRate WRITE setColorFlowingRate NOTIFY
                   colorFlowingRateChanged)
    Q_PROPERTY(bool preserveTextureColor READ preserveTextureColor WRITE setPreserveTextureColor NOTIFY
                   preserveTextureColorChanged)
    Q_PROPERTY(double factor READ factor WRITE setFactor NOTIFY factorChanged)
    Q_PROPERTY(bool useBorderColor READ useBorderColor WRITE setUseBorderColor NOTIFY useBorderColorChanged)
    Q_PROPERTY(double brushColorHue READ brushColorHue WRITE setBrushColorHue NOTIFY brushColorHueChanged)
    Q_PROPERTY(double brushColorSaturation READ brushColorSaturation WRITE setBrushColorSaturation NOTIFY
                   brushColorSaturationChanged)
    Q_PROPERTY(
        double brushColorValue READ brushColorValue WRITE setBrushColorValue NOTIFY brushColorValueChanged)
    Q_PROPERTY(double borderColorHue READ borderColorHue WRITE setBorderColorHue NOTIFY borderColorHueChanged)
    Q_PROPERTY(double borderColorSaturation READ borderColorSaturation WRITE setBorderColorSaturation NOTIFY
                   borderColorSaturationChanged)
    Q_PROPERTY(double borderColorValue READ borderColorValue WRITE setBorderColorValue NOTIFY
                   borderColorValueChanged)

public:
    // The values of all settings, in MEnum::BrushSetting order.
    using SettingValues = std::array<double, MEnum::bsCount>;

    explicit MBrush(QObject* parent = nullptr);
    ~MBrush() override;

    QString id() const { return m_id; }
    QString group() const { return m_group; }
    QString description() const { return m_description; }
    int version() const { return m_version; }
    QColor borderColor() const { return m_borderColor; }

    double radius() const { return baseValue(MEnum::bsRadius); }
    double spacing() const { return baseValue(MEnum::bsSpacing); }
    int spacingType() const { return intValue(MEnum::bsSpacingType); }
    double flow() const { return baseValue(MEnum::bsFlow); }
    double opacity() const { return baseValue(MEnum::bsOpacity); }
    double hardness() const { return baseValue(MEnum::bsHardness); }
    int compositionMode() const { return intValue(MEnum::bsCompositionMode); }
    bool antialiasing() const { return boolValue(MEnum::bsAntialiasing); }
    double ratio() const { return baseValue(MEnum::bsRatio); }
    double angle() const { return baseValue(MEnum::bsAngle); }
    int angleType() const { return intValue(MEnum::bsAngleType); }
    double minDistance() const { return baseValue(MEnum::bsMinDistance); }
    bool smoothing() const { return boolValue(MEnum::bsSmoothing); }
    int shape() const { return intValue(MEnum::bsShape); }
    double offsetX() const { return baseValue(MEnum::bsOffsetX); }
    double offsetY() const { return baseValue(MEnum::bsOffsetY); }
    double noise() const { return baseValue(MEnum::bsNoise); }
    double density() const { return baseValue(MEnum::bsDensity); }
    double accumulatorDistance() const { return baseValue(MEnum::bsAccumulatorDistance); }
    bool eraser() const { return boolValue(MEnum::bsEraser); }
    bool inheritAlphaUnder() const { return boolValue(MEnum::bsInheritAlphaUnder); }
    bool inheritAlphaCurrent() const { return boolValue(MEnum::bsInheritAlphaCurrent); }
    int sourceRgbBlendMode() const { return intValue(MEnum::bsSourceRgbBlendMode); }
    int sourceAlphaBlendMode() const { return intValue(MEnum::bsSourceAlphaBlendMode); }
    int destinationRgbBlendMode() const { return intValue(MEnum::bsDestinationRgbBlendMode); }
    int destinationAlphaBlendMode() const { return intValue(MEnum::bsDestinationAlphaBlendMode); }
    int rgbBlendEquation() const { return intValue(MEnum::bsRgbBlendEquation); }
    int alphaBlendEquation() const { return intValue(MEnum::bsAlphaBlendEquation); }
    double colorAbsorbtionRate() const { return baseValue(MEnum::bsColorAbsorbtionRate); }
    double colorFlowingRate() const { return baseValue(MEnum::bsColorFlowingRate); }
    bool preserveTextureColor() const { return boolValue(MEnum::bsPreserveTextureColor); }
    double factor() const { return baseValue(MEnum::bsFactor); }
    bool useBorderColor() const { return boolValue(MEnum::bsUseBorderColor); }
    double brushColorHue() const { return baseValue(MEnum::bsBrushColorHue); }
    double brushColorSaturation() const { return baseValue(MEnum::bsBrushColorSaturation); }
    double brushColorValue() const { return baseValue(MEnum::bsBrushColorValue); }
    double borderColorHue() const { return baseValue(MEnum::bsBorderColorHue); }
    double borderColorSaturation() const { return baseValue(MEnum::bsBorderColorSaturation); }
    double borderColorValue() const { return baseValue(MEnum::bsBorderColorValue); }

    // The list thumbnail: a stroke of the brush, rendered on first use and
    // kept until refreshPreview.
    QImage preview() const;
    // Takes a thumbnail made elsewhere, as read from a brush file.
    void setPreview(const QImage& image);
    // A stroke of the brush across an image of size, drawn on the GPU in
    // strokeColor, with borderColor for brushes that use a border colour.
    QImage renderPreview(const QSize& size, const QColor& strokeColor, const QColor& borderColor) const;

    // The table of base values, by property name.
    MValues* values() const { return m_values; }
    // A setting's stored value; 0.0, 0 or false when missing.
    double baseValue(int setting) const;
    int intValue(int setting) const;
    bool boolValue(int setting) const;
    // Stores a changed value and re-raises the setting's changed signal.
    void setBaseValue(int setting, double value);
    // Raises the changed signal of a setting with the value in the type of its property.
    void emitNotification(int setting, double value);

    // The stamp texture, premultiplied RGBA; null for none. A texture sets the
    // ratio to its height over its width.
    QImage texture() const { return m_texture; }
    void setTexture(const QImage& image);

    QVector<int> quickSettings() const { return m_quickSettings; }
    void setQuickSettings(const QVector<int>& settings) { m_quickSettings = settings; }
    void resetQuickSettings();

    // Dynamics. A curve is keyed by setting and input; the curves of one
    // setting apply in ascending input order.
    MCurve* curve(int setting, int input);
    MCurve* curveOrNull(int setting, int input) const;
    bool hasCurve(int setting, int input) const;
    bool hasCurve(int setting) const override;
    void removeCurve(int setting, int input);
    QVector<MCurve*> curves(int setting) const;
    // Every curve, by setting and then by input.
    QVector<MCurve*> allCurves() const;

    // Spacing in pixels of the automatic spacing type, for a stamp of the given
    // radius times ratio.
    double autoSpacing(double size) const;
    MCurve* autoSpacingCurve() const { return m_autoSpacingCurve; }

    // Everything but the id, the curves cloned.
    void assign(const MBrush& other);
    // Every setting to its default; no curves.
    void reset();

    // The brush's file is its lower-cased id with the extension "qmb", in the
    // user or the system brush directory.
    QString userFileName() const;
    QString systemFileName() const;
    // Reads a brush file into this brush, then notifies every setting; false
    // when the file doesn't exist or can't be read.
    bool load(const QString& fileName);
    // Drops unsaved changes: reads the user file if there is one, else the
    // system file, and renders the thumbnail anew.
    bool reload();
    // Reads the system file and writes it at once as the user's.
    bool resetToSystem();
    // Writes the user file.
    bool save();
    // Whether a system file of this brush exists.
    bool exists() const;

    // The stroke's snapshot of the base values.
    SettingValues baseValues() const;
    // One setting for one stamp: the base value carried through the setting's
    // curves. Curves on the random input draw their own number each.
    double evaluate(int setting, double baseValue, const MEvent& event) const;
    // Every setting for one stamp, in setting order. Nothing is clamped.
    void evaluate(const SettingValues& base, const MEvent& event, SettingValues& result) const;

public Q_SLOTS:
    void set_id(const QString& id);
    void set_group(const QString& group);
    void set_description(const QString& description);
    void set_version(int version);
    void set_borderColor(const QColor& color);
    // Renders the thumbnail anew, as after an edit of the brush.
    void refreshPreview();

    void setRadius(double value);
    void setSpacing(double value);
    void setSpacingType(int value);
    void setFlow(double value);
    void setOpacity(double value);
    void setHardness(double value);
    void setCompositionMode(int value);
    void setAntialiasing(bool value);
    void setRatio(double value);
    void setAngle(double value);
    void setAngleType(int value);
    void setMinDistance(double value);
    void setSmoothing(bool value);
    void setShape(int value);
    void setOffsetX(double value);
    void setOffsetY(double value);
    void setNoise(double value);
    void setDensity(double value);
    void setAccumulatorDistance(double value);
    void setEraser(bool value);
    void setInheritAlphaUnder(bool value);
    void setInheritAlphaCurrent(bool value);
    void setSourceRgbBlendMode(int value);
    void setSourceAlphaBlendMode(int value);
    void setDestinationRgbBlendMode(int value);
    void setDestinationAlphaBlendMode(int value);
    void setRgbBlendEquation(int value);
    void setAlphaBlendEquation(int value);
    void setColorAbsorbtionRate(double value);
    void setColorFlowingRate(double value);
    void setPreserveTextureColor(bool value);
    void setFactor(double value);
    void setUseBorderColor(bool value);
    void setBrushColorHue(double value);
    void setBrushColorSaturation(double value);
    void setBrushColorValue(double value);
    void setBorderColorHue(double value);
    void setBorderColorSaturation(double value);
    void setBorderColorValue(double value);

Q_SIGNALS:
    void idChanged(const QString& id);
    void groupChanged(const QString& group);
    void descriptionChanged(const QString& description);
    void versionChanged(int version);
    void borderColorChanged(const QColor& color);
    void previewChanged(const QImage& preview);

    void radiusChanged(double value);
    void spacingChanged(double value);
    void spacingTypeChanged(int value);
    void flowChanged(double value);
    void opacityChanged(double value);
    void hardnessChanged(double value);
    void compositionModeChanged(int value);
    void antialiasingChanged(bool value);
    void ratioChanged(double value);
    void angleChanged(double value);
    void angleTypeChanged(int value);
    void minDistanceChanged(double value);
    void smoothingChanged(bool value);
    void shapeChanged(int value);
    void offsetXChanged(double value);
    void offsetYChanged(double value);
    void noiseChanged(double value);
    void densityChanged(double value);
    void accumulatorDistanceChanged(double value);
    void eraserChanged(bool value);
    void inheritAlphaUnderChanged(bool value);
    void inheritAlphaCurrentChanged(bool value);
    void sourceRgbBlendModeChanged(int value);
    void sourceAlphaBlendModeChanged(int value);
    void destinationRgbBlendModeChanged(int value);
    void destinationAlphaBlendModeChanged(int value);
    void rgbBlendEquationChanged(int value);
    void alphaBlendEquationChanged(int value);
    void colorAbsorbtionRateChanged(double value);
    void colorFlowingRateChanged(double value);
    void preserveTextureColorChanged(bool value);
    void factorChanged(double value);
    void useBorderColorChanged(bool value);
    void brushColorHueChanged(double value);
    void brushColorSaturationChanged(double value);
    void brushColorValueChanged(double value);
    void borderColorHueChanged(double value);
    void borderColorSaturationChanged(double value);
    void borderColorValueChanged(double value);

private:
    // Stores a value that differs from the stored one; tells whether it did.
    bool storeValue(int setting, double value);
    void deleteCurves();
    double curveInput(const MCurve& curve, const MEvent& event) const;

    QString m_id;
    QString m_group;
    QString m_description;
    int m_version = 1;
    QColor m_borderColor;
    QImage m_texture;
    // Made on demand by a const getter.
    mutable QImage m_preview;
    QVector<int> m_quickSettings;
    MCurve* m_autoSpacingCurve = nullptr;
    MValues* m_values = nullptr;
    std::array<std::array<MCurve*, MEnum::biCount>, MEnum::bsCount> m_curves{};
    // Per setting, one bit per input that has a curve: stamps skip settings without.
    std::array<quint32, MEnum::bsCount> m_curveInputs{};
};
