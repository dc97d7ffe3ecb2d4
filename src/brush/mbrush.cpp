#include "brush/mbrush.h"

#include "app/mevent.h"
#include "app/mlogger.h"
#include "app/mutility.h"
#include "brush/mbrushpreview.h"
#include "brush/mbrushsettinginfolist.h"
#include "brush/mbrushstream.h"
#include "brush/mcurve.h"
#include "effects/mvalues.h"

#include <QFileInfo>
#include <QMetaProperty>
#include <QUuid>
#include <QtAlgorithms>

#include <cmath>

MBrush::MBrush(QObject* parent) : MShaderObject(parent)
{
    // Spacing in pixels against the stamp's radius times ratio, for the
    // automatic spacing type. Never stored in a file.
    m_autoSpacingCurve = new MCurve(MCurve::Multiply, this);
    m_autoSpacingCurve->setRange(0.0, 500.0, 0.0, 50.0);
    const QPointF spacingPoints[] = {{0, 0}, {1, 1}, {2, 1.5}, {10, 2}, {30, 3}, {500, 50}};
    for (const QPointF& p : spacingPoints)
        m_autoSpacingCurve->addDataPoint(p.x(), p.y());

    m_version = 1;
    m_group = QStringLiteral("system");
    m_description = tr("New brush");
    m_id = QUuid::createUuid().toString().toUpper();
    m_borderColor = Qt::white;
    m_values = new MValues(this);
    reset();
    resetQuickSettings();
}

MBrush::~MBrush() = default;

void MBrush::set_id(const QString& id)
{
    if (id == m_id)
        return;
    m_id = id;
    Q_EMIT idChanged(id);
}

void MBrush::set_group(const QString& group)
{
    if (group == m_group)
        return;
    m_group = group;
    Q_EMIT groupChanged(group);
}

void MBrush::set_description(const QString& description)
{
    if (description == m_description)
        return;
    m_description = description;
    Q_EMIT descriptionChanged(description);
}

void MBrush::set_version(int version)
{
    if (version == m_version)
        return;
    m_version = version;
    Q_EMIT versionChanged(version);
}

void MBrush::set_borderColor(const QColor& color)
{
    if (color == m_borderColor)
        return;
    m_borderColor = color;
    Q_EMIT borderColorChanged(color);
}

namespace {

const QSize previewSize(150, 60);

} // namespace

QImage MBrush::renderPreview(const QSize& size, const QColor& strokeColor, const QColor& borderColor) const
{
    return MBrushPreview::render(*this, size, strokeColor, borderColor);
}

QImage MBrush::preview() const
{
    if (m_preview.isNull())
        m_preview = renderPreview(previewSize, Qt::darkGray, Qt::white);
    return m_preview;
}

void MBrush::setPreview(const QImage& image)
{
    if (image == m_preview)
        return;
    m_preview = image;
    Q_EMIT previewChanged(m_preview);
}

void MBrush::refreshPreview()
{
    m_preview = renderPreview(previewSize, Qt::darkGray, Qt::white);
    Q_EMIT previewChanged(m_preview);
}

double MBrush::baseValue(int setting) const
{
    return m_values->value(MBrushSettingInfoList::instance()->propertyName(setting)).toDouble();
}

int MBrush::intValue(int setting) const
{
    return m_values->value(MBrushSettingInfoList::instance()->propertyName(setting)).toInt();
}

bool MBrush::boolValue(int setting) const
{
    return m_values->value(MBrushSettingInfoList::instance()->propertyName(setting)).toBool();
}

bool MBrush::storeValue(int setting, double value)
{
    const QByteArray name = MBrushSettingInfoList::instance()->propertyName(setting);
    if (name.isEmpty())
        return false;
    const QVariant stored = m_values->value(name);
    if (stored.isValid() && stored.toDouble() == value)
        return false;
    m_values->setValue(name, value);
    return true;
}

void MBrush::setBaseValue(int setting, double value)
{
    if (storeValue(setting, value))
        emitNotification(setting, value);
}

void MBrush::emitNotification(int setting, double value)
{
    const QByteArray name = MBrushSettingInfoList::instance()->propertyName(setting);
    const int index = name.isEmpty() ? -1 : metaObject()->indexOfProperty(name.constData());
    if (index < 0)
        return;
    const QMetaProperty property = metaObject()->property(index);
    if (!property.hasNotifySignal())
        return;
    const QByteArray signal = property.notifySignal().name();
    switch (property.userType()) {
    case QMetaType::Double:
        QMetaObject::invokeMethod(this, signal.constData(), Q_ARG(qreal, value));
        break;
    case QMetaType::Bool:
        QMetaObject::invokeMethod(this, signal.constData(), Q_ARG(bool, value != 0.0));
        break;
    case QMetaType::Int:
        QMetaObject::invokeMethod(this, signal.constData(), Q_ARG(int, int(value)));
        break;
    default:
        MLogger::systemError(QStringLiteral("MBrush::emitNotification"),
                             QStringLiteral("Invalid variant type"));
        break;
    }
}

namespace {

QString brushFileName(MEnum::PathType pathType, const QString& id)
{
    QString directory = MUtility::directory(pathType, MEnum::BrushDir);
    if (!directory.endsWith(QLatin1Char('/')))
        directory += QLatin1Char('/');
    return directory + id.trimmed().toLower() + QStringLiteral(".qmb");
}

} // namespace

QString MBrush::userFileName() const
{
    return brushFileName(MEnum::UserPath, m_id);
}

QString MBrush::systemFileName() const
{
    return brushFileName(MEnum::SystemPath, m_id);
}

bool MBrush::load(const QString& fileName)
{
    if (!QFileInfo(fileName).isFile())
        return false;
    MBrushStream stream(this);
    if (!stream.load(fileName))
        return false;
    for (const MField* field : MBrushSettingInfoList::instance()->fields())
        emitNotification(field->id, baseValue(field->id));
    return true;
}

bool MBrush::reload()
{
    const QString user = userFileName();
    const bool loaded = load(QFileInfo(user).isFile() ? user : systemFileName());
    refreshPreview();
    return loaded;
}

bool MBrush::resetToSystem()
{
    const bool restored = load(systemFileName()) && save();
    refreshPreview();
    return restored;
}

bool MBrush::save()
{
    MBrushStream stream(this);
    return stream.save(userFileName());
}

bool MBrush::exists() const
{
    return QFileInfo(systemFileName()).isFile();
}

void MBrush::setTexture(const QImage& image)
{
    m_texture = image.convertToFormat(QImage::Format_RGBA8888_Premultiplied);
    if (!m_texture.isNull())
        setRatio(double(m_texture.height()) / double(m_texture.width()));
}

void MBrush::resetQuickSettings()
{
    m_quickSettings = {MEnum::bsRadius, MEnum::bsHardness, MEnum::bsFlow, MEnum::bsOpacity};
}

MCurve* MBrush::curveOrNull(int setting, int input) const
{
    if (setting < 0 || setting >= MEnum::bsCount || input < 0 || input >= MEnum::biCount)
        return nullptr;
    return m_curves[size_t(setting)][size_t(input)];
}

MCurve* MBrush::curve(int setting, int input)
{
    if (setting < 0 || setting >= MEnum::bsCount || input < 0 || input >= MEnum::biCount)
        return nullptr;
    MCurve*& slot = m_curves[size_t(setting)][size_t(input)];
    if (!slot) {
        slot = new MCurve(setting, input, MCurve::Multiply, this);
        m_curveInputs[size_t(setting)] |= 1u << input;
    }
    return slot;
}

bool MBrush::hasCurve(int setting, int input) const
{
    return curveOrNull(setting, input) != nullptr;
}

bool MBrush::hasCurve(int setting) const
{
    return setting >= 0 && setting < MEnum::bsCount && m_curveInputs[size_t(setting)] != 0;
}

void MBrush::removeCurve(int setting, int input)
{
    MCurve* found = curveOrNull(setting, input);
    if (!found)
        return;
    m_curves[size_t(setting)][size_t(input)] = nullptr;
    m_curveInputs[size_t(setting)] &= ~(1u << input);
    delete found;
}

QVector<MCurve*> MBrush::curves(int setting) const
{
    QVector<MCurve*> found;
    if (setting < 0 || setting >= MEnum::bsCount)
        return found;
    for (MCurve* curve : m_curves[size_t(setting)]) {
        if (curve)
            found.append(curve);
    }
    return found;
}

QVector<MCurve*> MBrush::allCurves() const
{
    QVector<MCurve*> found;
    for (int setting = 0; setting < MEnum::bsCount; ++setting)
        found += curves(setting);
    return found;
}

void MBrush::deleteCurves()
{
    for (auto& row : m_curves) {
        for (MCurve*& curve : row) {
            delete curve;
            curve = nullptr;
        }
    }
    m_curveInputs.fill(0);
}

double MBrush::autoSpacing(double size) const
{
    return m_autoSpacingCurve->value(size);
}

void MBrush::assign(const MBrush& other)
{
    if (&other == this)
        return;
    set_description(other.m_description);
    set_group(other.m_group);
    set_version(other.m_version);
    m_quickSettings = other.m_quickSettings;
    m_texture = other.m_texture;
    set_borderColor(other.m_borderColor);
    copyFrom(other);
    m_values->copyFrom(*other.m_values);
    deleteCurves();
    for (int setting = 0; setting < MEnum::bsCount; ++setting) {
        for (int input = 0; input < MEnum::biCount; ++input) {
            const MCurve* source = other.m_curves[size_t(setting)][size_t(input)];
            if (!source)
                continue;
            auto* clone = new MCurve(source->interpolationType(), this);
            clone->assign(*source);
            m_curves[size_t(setting)][size_t(input)] = clone;
        }
    }
    m_curveInputs = other.m_curveInputs;
}

void MBrush::reset()
{
    for (const MField* field : MBrushSettingInfoList::instance()->fields())
        m_values->setValue(field->name, field->defaultValue.toDouble());
    deleteCurves();
}

MBrush::SettingValues MBrush::baseValues() const
{
    SettingValues base{};
    for (int setting = 0; setting < MEnum::bsCount; ++setting)
        base[size_t(setting)] = baseValue(setting);
    return base;
}

double MBrush::curveInput(const MCurve& curve, const MEvent& event) const
{
    // Each random curve draws its own number; the event's is not used.
    double x = curve.input() == MEnum::biRandom ? MEvent::randomInput() : event.input(curve.input());
    if (curve.modulo() != 0.0)
        x = std::fmod(x, curve.modulo());
    return x;
}

double MBrush::evaluate(int setting, double baseValue, const MEvent& event) const
{
    if (setting < 0 || setting >= MEnum::bsCount)
        return baseValue;
    double value = baseValue;
    quint32 inputs = m_curveInputs[size_t(setting)];
    while (inputs) {
        const int input = int(qCountTrailingZeroBits(inputs));
        inputs &= inputs - 1;
        const MCurve& curve = *m_curves[size_t(setting)][size_t(input)];
        value = curve.apply(curveInput(curve, event), value);
    }
    return value;
}

void MBrush::evaluate(const SettingValues& base, const MEvent& event, SettingValues& result) const
{
    for (int setting = 0; setting < MEnum::bsCount; ++setting)
        result[size_t(setting)] = evaluate(setting, base[size_t(setting)], event);
}

void MBrush::setRadius(double value)
{
    if (storeValue(MEnum::bsRadius, double(value)))
        Q_EMIT radiusChanged(value);
}

void MBrush::setSpacing(double value)
{
    if (storeValue(MEnum::bsSpacing, double(value)))
        Q_EMIT spacingChanged(value);
}

void MBrush::setSpacingType(int value)
{
    if (storeValue(MEnum::bsSpacingType, double(value)))
        Q_EMIT spacingTypeChanged(value);
}

void MBrush::setFlow(double value)
{
    if (storeValue(MEnum::bsFlow, double(value)))
        Q_EMIT flowChanged(value);
}

void MBrush::setOpacity(double value)
{
    if (storeValue(MEnum::bsOpacity, double(value)))
        Q_EMIT opacityChanged(value);
}

void MBrush::setHardness(double value)
{
    if (storeValue(MEnum::bsHardness, double(value)))
        Q_EMIT hardnessChanged(value);
}

void MBrush::setCompositionMode(int value)
{
    if (storeValue(MEnum::bsCompositionMode, double(value)))
        Q_EMIT compositionModeChanged(value);
}

void MBrush::setAntialiasing(bool value)
{
    if (storeValue(MEnum::bsAntialiasing, double(value)))
        Q_EMIT antialiasingChanged(value);
}

void MBrush::setRatio(double value)
{
    if (storeValue(MEnum::bsRatio, double(value)))
        Q_EMIT ratioChanged(value);
}

void MBrush::setAngle(double value)
{
    if (storeValue(MEnum::bsAngle, double(value)))
        Q_EMIT angleChanged(value);
}

void MBrush::setAngleType(int value)
{
    if (storeValue(MEnum::bsAngleType, double(value)))
        Q_EMIT angleTypeChanged(value);
}

void MBrush::setMinDistance(double value)
{
    if (storeValue(MEnum::bsMinDistance, double(value)))
        Q_EMIT minDistanceChanged(value);
}

void MBrush::setSmoothing(bool value)
{
    if (storeValue(MEnum::bsSmoothing, double(value)))
        Q_EMIT smoothingChanged(value);
}

void MBrush::setShape(int value)
{
    if (storeValue(MEnum::bsShape, double(value)))
        Q_EMIT shapeChanged(value);
}

void MBrush::setOffsetX(double value)
{
    if (storeValue(MEnum::bsOffsetX, double(value)))
        Q_EMIT offsetXChanged(value);
}

void MBrush::setOffsetY(double value)
{
    if (storeValue(MEnum::bsOffsetY, double(value)))
        Q_EMIT offsetYChanged(value);
}

void MBrush::setNoise(double value)
{
    if (storeValue(MEnum::bsNoise, double(value)))
        Q_EMIT noiseChanged(value);
}

void MBrush::setDensity(double value)
{
    if (storeValue(MEnum::bsDensity, double(value)))
        Q_EMIT densityChanged(value);
}

void MBrush::setAccumulatorDistance(double value)
{
    if (storeValue(MEnum::bsAccumulatorDistance, double(value)))
        Q_EMIT accumulatorDistanceChanged(value);
}

void MBrush::setEraser(bool value)
{
    if (storeValue(MEnum::bsEraser, double(value)))
        Q_EMIT eraserChanged(value);
}

void MBrush::setInheritAlphaUnder(bool value)
{
    if (storeValue(MEnum::bsInheritAlphaUnder, double(value)))
        Q_EMIT inheritAlphaUnderChanged(value);
}

void MBrush::setInheritAlphaCurrent(bool value)
{
    if (storeValue(MEnum::bsInheritAlphaCurrent, double(value)))
        Q_EMIT inheritAlphaCurrentChanged(value);
}

void MBrush::setSourceRgbBlendMode(int value)
{
    if (storeValue(MEnum::bsSourceRgbBlendMode, double(value)))
        Q_EMIT sourceRgbBlendModeChanged(value);
}

void MBrush::setSourceAlphaBlendMode(int value)
{
    if (storeValue(MEnum::bsSourceAlphaBlendMode, double(value)))
        Q_EMIT sourceAlphaBlendModeChanged(value);
}

void MBrush::setDestinationRgbBlendMode(int value)
{
    if (storeValue(MEnum::bsDestinationRgbBlendMode, double(value)))
        Q_EMIT destinationRgbBlendModeChanged(value);
}

void MBrush::setDestinationAlphaBlendMode(int value)
{
    if (storeValue(MEnum::bsDestinationAlphaBlendMode, double(value)))
        Q_EMIT destinationAlphaBlendModeChanged(value);
}

void MBrush::setRgbBlendEquation(int value)
{
    if (storeValue(MEnum::bsRgbBlendEquation, double(value)))
        Q_EMIT rgbBlendEquationChanged(value);
}

void MBrush::setAlphaBlendEquation(int value)
{
    if (storeValue(MEnum::bsAlphaBlendEquation, double(value)))
        Q_EMIT alphaBlendEquationChanged(value);
}

void MBrush::setColorAbsorbtionRate(double value)
{
    if (storeValue(MEnum::bsColorAbsorbtionRate, double(value)))
        Q_EMIT colorAbsorbtionRateChanged(value);
}

void MBrush::setColorFlowingRate(double value)
{
    if (storeValue(MEnum::bsColorFlowingRate, double(value)))
        Q_EMIT colorFlowingRateChanged(value);
}

void MBrush::setPreserveTextureColor(bool value)
{
    if (storeValue(MEnum::bsPreserveTextureColor, double(value)))
        Q_EMIT preserveTextureColorChanged(value);
}

void MBrush::setFactor(double value)
{
    if (storeValue(MEnum::bsFactor, double(value)))
        Q_EMIT factorChanged(value);
}

void MBrush::setUseBorderColor(bool value)
{
    if (storeValue(MEnum::bsUseBorderColor, double(value)))
        Q_EMIT useBorderColorChanged(value);
}

void MBrush::setBrushColorHue(double value)
{
    if (storeValue(MEnum::bsBrushColorHue, double(value)))
        Q_EMIT brushColorHueChanged(value);
}

void MBrush::setBrushColorSaturation(double value)
{
    if (storeValue(MEnum::bsBrushColorSaturation, double(value)))
        Q_EMIT brushColorSaturationChanged(value);
}

void MBrush::setBrushColorValue(double value)
{
    if (storeValue(MEnum::bsBrushColorValue, double(value)))
        Q_EMIT brushColorValueChanged(value);
}

void MBrush::setBorderColorHue(double value)
{
    if (storeValue(MEnum::bsBorderColorHue, double(value)))
        Q_EMIT borderColorHueChanged(value);
}

void MBrush::setBorderColorSaturation(double value)
{
    if (storeValue(MEnum::bsBorderColorSaturation, double(value)))
        Q_EMIT borderColorSaturationChanged(value);
}

void MBrush::setBorderColorValue(double value)
{
    if (storeValue(MEnum::bsBorderColorValue, double(value)))
        Q_EMIT borderColorValueChanged(value);
}
