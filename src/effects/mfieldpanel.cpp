#include "effects/mfieldpanel.h"

#include "app/menum.h"
#include "effects/mcoloredit.h"
#include "effects/mcurveowner.h"
#include "effects/menumedit.h"
#include "effects/mfield.h"
#include "effects/mfilenameedit.h"
#include "effects/mintspinbox.h"
#include "effects/msliderspinbox.h"
#include "effects/mvalues.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFile>
#include <QGridLayout>
#include <QIcon>
#include <QLabel>
#include <QLineEdit>
#include <QScrollArea>
#include <QSpacerItem>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

// The enumeration name of the composition modes, which come from their own
// list rather than from MEnum.
const QByteArray compositionModeEnum = QByteArrayLiteral("CompositionMode");
// The enumeration name of a pick list declared in an effect.
const QByteArray pickListEnum = QByteArrayLiteral("enum");

int truncatedInt(double value)
{
    if (!std::isfinite(value))
        return value < 0 ? std::numeric_limits<int>::min() : std::numeric_limits<int>::max();
    return int(std::clamp(std::trunc(value), double(std::numeric_limits<int>::min()),
                          double(std::numeric_limits<int>::max())));
}

} // namespace

MFieldPanel::MFieldPanel(QWidget* parent) : QWidget(parent), m_layout(new QVBoxLayout(this))
{
    // editCurve carries the button, also through queued connections.
    qRegisterMetaType<QToolButton*>();
    m_layout->setContentsMargins(0, 0, 0, 0);
    m_layout->setSpacing(0);
    rebuild();
}

MFieldPanel::~MFieldPanel() = default;

const MField* MFieldPanel::field(int index) const
{
    return index >= 0 && index < fieldCount() ? m_fields[size_t(index)].get() : nullptr;
}

void MFieldPanel::setFields(const QVector<MField*>& fields)
{
    std::vector<std::unique_ptr<MField>> copies;
    copies.reserve(size_t(fields.size()));
    for (const MField* field : fields)
        if (field)
            copies.push_back(std::make_unique<MField>(*field));
    // The editors point into the old fields: they go first.
    m_connector.clear();
    m_entries.clear();
    m_fields = std::move(copies);
    rebuild();
}

void MFieldPanel::setObject(QObject* object)
{
    m_object = object;
    // Curve buttons depend on what the object is.
    if (curvesShown() != m_builtWithCurves)
        rebuild();
    else
        valuesToWidgets();
}

void MFieldPanel::setValue(const QByteArray& name, const QVariant& value)
{
    if (!m_object)
        return;
    if (auto* values = qobject_cast<MValues*>(m_object.data()))
        values->setValue(name, value);
    else
        m_object->setProperty(name.constData(), value);
}

QVariant MFieldPanel::value(const QByteArray& name) const
{
    if (!m_object)
        return QVariant();
    if (auto* values = qobject_cast<MValues*>(m_object.data()))
        return values->value(name);
    return m_object->property(name.constData());
}

QWidget* MFieldPanel::editor(const QByteArray& name) const
{
    return m_entries.value(name).editor;
}

QLabel* MFieldPanel::label(const QByteArray& name) const
{
    return m_entries.value(name).label;
}

QToolButton* MFieldPanel::curveButton(const QByteArray& name) const
{
    return m_entries.value(name).curveButton;
}

void MFieldPanel::set_labelsOnTop(bool labelsOnTop)
{
    if (labelsOnTop == m_labelsOnTop)
        return;
    m_labelsOnTop = labelsOnTop;
    rebuild();
    Q_EMIT labelsOnTopChanged(m_labelsOnTop);
}

void MFieldPanel::set_addSpacer(bool addSpacer)
{
    if (addSpacer == m_addSpacer)
        return;
    m_addSpacer = addSpacer;
    rebuild();
    Q_EMIT addSpacerChanged(m_addSpacer);
}

void MFieldPanel::set_addLines(bool addLines)
{
    if (addLines == m_addLines)
        return;
    m_addLines = addLines;
    rebuild();
    Q_EMIT addLinesChanged(m_addLines);
}

void MFieldPanel::set_addScrollBox(bool addScrollBox)
{
    if (addScrollBox == m_addScrollBox)
        return;
    m_addScrollBox = addScrollBox;
    rebuild();
    Q_EMIT addScrollBoxChanged(m_addScrollBox);
}

void MFieldPanel::set_showCurveButtons(bool showCurveButtons)
{
    if (showCurveButtons == m_showCurveButtons)
        return;
    m_showCurveButtons = showCurveButtons;
    rebuild();
    Q_EMIT showCurveButtonsChanged(m_showCurveButtons);
}

void MFieldPanel::set_showSpinBoxes(bool showSpinBoxes)
{
    if (showSpinBoxes == m_showSpinBoxes)
        return;
    m_showSpinBoxes = showSpinBoxes;
    rebuild();
    Q_EMIT showSpinBoxesChanged(m_showSpinBoxes);
}

void MFieldPanel::set_boldLabels(bool boldLabels)
{
    if (boldLabels == m_boldLabels)
        return;
    m_boldLabels = boldLabels;
    rebuild();
    Q_EMIT boldLabelsChanged(m_boldLabels);
}

void MFieldPanel::set_slidersTracking(bool slidersTracking)
{
    if (slidersTracking == m_slidersTracking)
        return;
    m_slidersTracking = slidersTracking;
    rebuild();
    Q_EMIT slidersTrackingChanged(m_slidersTracking);
}

void MFieldPanel::valuesToWidgets()
{
    const MConnectorPause pause(m_connector);
    for (const auto& field : m_fields) {
        const auto found = m_entries.constFind(field->name);
        if (found == m_entries.constEnd())
            continue;
        setEditorValue(found.value(), value(field->name));
        updateCurveButton(found.value());
    }
}

void MFieldPanel::widgetsToValues()
{
    for (const auto& field : m_fields) {
        const auto found = m_entries.constFind(field->name);
        if (found == m_entries.constEnd())
            continue;
        const QVariant edited = editorValue(found.value());
        if (edited.isValid())
            setValue(field->name, edited);
    }
}

void MFieldPanel::onButtonClicked()
{
    auto* button = qobject_cast<QToolButton*>(sender());
    if (!button)
        return;
    Q_EMIT editCurve(button, button->property(settingProperty).toInt());
}

void MFieldPanel::onEditorChanged()
{
    const QObject* source = sender();
    if (!source)
        return;
    const QByteArray name = source->property(fieldProperty).toByteArray();
    const auto found = m_entries.constFind(name);
    if (found == m_entries.constEnd())
        return;
    const QVariant edited = editorValue(found.value());
    if (!edited.isValid())
        return;
    setValue(name, edited);
    Q_EMIT valueChanged(name, edited);
}

bool MFieldPanel::curvesShown() const
{
    return m_showCurveButtons && dynamic_cast<const MCurveOwner*>(m_object.data()) != nullptr;
}

void MFieldPanel::rebuild()
{
    m_connector.clear();
    m_entries.clear();
    if (m_content) {
        // Deleted later: the rebuild may have been asked from one of its editors' signals.
        m_layout->removeWidget(m_content);
        m_content->setParent(nullptr);
        m_content->deleteLater();
        m_content = nullptr;
    }

    auto* content = new QWidget;
    auto* grid = new QGridLayout(content);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setVerticalSpacing(2);

    m_builtWithCurves = curvesShown();
    const int editorSpan = m_builtWithCurves ? 3 : 2;
    const int lineSpan = m_builtWithCurves ? 4 : 2;
    int row = 0;
    for (const auto& fieldPointer : m_fields) {
        const MField& field = *fieldPointer;
        if (!field.visible)
            continue;
        QWidget* editor = createEditor(field, content);
        if (!editor)
            continue;

        Entry entry;
        entry.editor = editor;
        entry.field = &field;
        editor->setToolTip(field.description);

        const QString suffix = field.unit.isEmpty() ? QString() : QStringLiteral(" %1").arg(field.unit);
        // The unit goes with the number where a spin box shows one, else with the label.
        const bool editorShowsUnit =
            qobject_cast<MIntSpinBox*>(editor) || (qobject_cast<MSliderSpinbox*>(editor) && m_showSpinBoxes);
        auto* label = new QLabel(editorShowsUnit ? field.label : field.label + suffix, content);
        label->setToolTip(field.description);
        if (m_boldLabels)
            label->setStyleSheet(QStringLiteral("QLabel{font-weight: bold;}"));
        entry.label = label;
        if (m_labelsOnTop) {
            grid->addWidget(label, row, 0, 1, 2);
            ++row;
            grid->addWidget(editor, row, 0, 1, editorSpan);
        } else {
            label->setBuddy(editor);
            grid->addWidget(label, row, 0);
            grid->addWidget(editor, row, 1);
        }

        if (m_builtWithCurves && field.type == QVariant::Double && field.hasCurve) {
            auto* button = new QToolButton(content);
            button->setToolTip(tr("Edit dynamic settings"));
            button->setProperty(settingProperty, field.id);
            button->setAutoRaise(true);
            connect(button, &QToolButton::clicked, this, &MFieldPanel::onButtonClicked);
            grid->addWidget(button, row, 3);
            entry.curveButton = button;
        }
        ++row;

        if (m_addLines) {
            auto* line = new QLabel(content);
            line->setFrameStyle(QFrame::HLine);
            line->setStyleSheet(QStringLiteral("QFrame {color: darkGray;}"));
            grid->addWidget(line, row, 0, 1, lineSpan);
            ++row;
        }
        m_entries.insert(field.name, entry);
    }
    // Spin boxes of one width keep the sliders' ends in line.
    int spinBoxWidth = 0;
    const auto sliders = content->findChildren<MSliderSpinbox*>();
    for (const MSliderSpinbox* slider : sliders)
        spinBoxWidth = std::max(spinBoxWidth, slider->spinBox()->sizeHint().width());
    for (MSliderSpinbox* slider : sliders)
        slider->set_spinBoxWidth(spinBoxWidth);
    grid->setColumnStretch(1, 1);
    if (m_addSpacer)
        grid->addItem(new QSpacerItem(20, 40, QSizePolicy::Minimum, QSizePolicy::Expanding), row, 0);

    if (m_addScrollBox) {
        auto* scrollArea = new QScrollArea;
        scrollArea->setWidgetResizable(true);
        scrollArea->setFrameShape(QFrame::NoFrame);
        scrollArea->setWidget(content);
        m_content = scrollArea;
    } else {
        m_content = content;
    }
    m_layout->addWidget(m_content);
    valuesToWidgets();
    adjustSize();
}

QWidget* MFieldPanel::createEditor(const MField& field, QWidget* parent)
{
    QWidget* editor = nullptr;
    switch (field.type) {
    case QVariant::Double: {
        auto* slider = new MSliderSpinbox(parent);
        slider->set_minimum(field.minimum());
        slider->set_maximum(field.maximum());
        slider->set_singleStep(field.step);
        slider->set_sliderTracking(m_slidersTracking);
        slider->set_isLogarithmic(field.isLogarithmic);
        slider->set_isPercentage(field.isPercentage);
        slider->set_suffix(field.unit.isEmpty() ? QString() : QStringLiteral(" %1").arg(field.unit));
        slider->set_showSpinBox(m_showSpinBoxes);
        m_connector.connect(slider, &MSliderSpinbox::valueChanged, this, &MFieldPanel::onEditorChanged);
        editor = slider;
        break;
    }
    case QVariant::Bool: {
        auto* checkBox = new QCheckBox(parent);
        m_connector.connect(checkBox, &QCheckBox::toggled, this, &MFieldPanel::onEditorChanged);
        editor = checkBox;
        break;
    }
    case QVariant::Int: {
        const QMetaEnum metaEnum =
            field.enumName.isEmpty() ? QMetaEnum() : MEnum::metaEnum(QString::fromLatin1(field.enumName));
        if (field.hasPickList()) {
            auto* combo = new QComboBox(parent);
            combo->setEditable(true);
            combo->setFocusPolicy(Qt::StrongFocus);
            for (const MPickItem& item : field.pickList)
                combo->addItem(item.text, item.value);
            m_connector.connect(combo, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
                                &MFieldPanel::onEditorChanged);
            editor = combo;
        } else if (field.enumName == compositionModeEnum) {
            // The composition modes come from their own list; fields name them
            // for brushes, which offer only some.
            auto* enumEdit = new MEnumEdit(parent);
            enumEdit->setCompositionModes(true);
            enumEdit->setMaximumWidth(200);
            m_connector.connect(enumEdit, &MEnumEdit::valueChanged, this, &MFieldPanel::onEditorChanged);
            editor = enumEdit;
        } else if (field.enumName != pickListEnum && metaEnum.isValid()) {
            auto* enumEdit = new MEnumEdit(parent);
            enumEdit->setEnum(metaEnum);
            enumEdit->setMaximumWidth(200);
            m_connector.connect(enumEdit, &MEnumEdit::valueChanged, this, &MFieldPanel::onEditorChanged);
            editor = enumEdit;
        } else {
            auto* spinBox = new MIntSpinBox(parent);
            spinBox->setRange(truncatedInt(field.minimum()), truncatedInt(field.maximum()));
            spinBox->setSingleStep(std::max(1, truncatedInt(field.step)));
            spinBox->setSuffix(field.unit.isEmpty() ? QString() : QStringLiteral(" %1").arg(field.unit));
            m_connector.connect(spinBox, QOverload<int>::of(&QSpinBox::valueChanged), this,
                                &MFieldPanel::onEditorChanged);
            editor = spinBox;
        }
        break;
    }
    case QVariant::Color: {
        auto* colorEdit = new MColorEdit(parent);
        m_connector.connect(colorEdit, &MColorEdit::colorChanged, this, &MFieldPanel::onEditorChanged);
        editor = colorEdit;
        break;
    }
    case QVariant::Image: {
        auto* fileNameEdit = new MFileNameEdit(parent);
        m_connector.connect(fileNameEdit, &MFileNameEdit::fileNameChanged, this,
                            &MFieldPanel::onEditorChanged);
        editor = fileNameEdit;
        break;
    }
    default:
        return nullptr;
    }
    editor->setProperty(fieldProperty, field.name);
    return editor;
}

QVariant MFieldPanel::editorValue(const Entry& entry)
{
    QWidget* editor = entry.editor;
    if (auto* slider = qobject_cast<MSliderSpinbox*>(editor))
        return slider->value();
    if (auto* checkBox = qobject_cast<QCheckBox*>(editor))
        return checkBox->isChecked();
    if (auto* enumEdit = qobject_cast<MEnumEdit*>(editor))
        return enumEdit->value();
    if (auto* combo = qobject_cast<QComboBox*>(editor)) {
        const QVariant data = combo->currentData();
        if (data.isValid())
            return data;
        // A number typed in rather than picked.
        bool ok = false;
        const int typed = combo->currentText().toInt(&ok);
        return ok ? QVariant(typed) : QVariant();
    }
    if (auto* spinBox = qobject_cast<QSpinBox*>(editor))
        return spinBox->value();
    if (auto* colorEdit = qobject_cast<MColorEdit*>(editor))
        return colorEdit->color();
    if (auto* fileNameEdit = qobject_cast<MFileNameEdit*>(editor))
        return fileNameEdit->fileName();
    return QVariant();
}

void MFieldPanel::setEditorValue(const Entry& entry, const QVariant& value)
{
    QWidget* editor = entry.editor;
    if (auto* slider = qobject_cast<MSliderSpinbox*>(editor)) {
        slider->set_value(value.toDouble());
    } else if (auto* checkBox = qobject_cast<QCheckBox*>(editor)) {
        checkBox->setChecked(value.toBool());
    } else if (auto* enumEdit = qobject_cast<MEnumEdit*>(editor)) {
        enumEdit->set_value(value.toInt());
    } else if (auto* combo = qobject_cast<QComboBox*>(editor)) {
        // Rows follow the pick list; rows the user typed in come after it.
        const int index = entry.field->pickList.indexOfValue(value);
        combo->setCurrentIndex(index);
        if (index < 0)
            combo->setEditText(value.isValid() ? value.toString() : QString());
    } else if (auto* spinBox = qobject_cast<QSpinBox*>(editor)) {
        spinBox->setValue(value.toInt());
    } else if (auto* colorEdit = qobject_cast<MColorEdit*>(editor)) {
        colorEdit->set_color(value.value<QColor>());
    } else if (auto* fileNameEdit = qobject_cast<MFileNameEdit*>(editor)) {
        fileNameEdit->set_fileName(value.toString());
    }
}

void MFieldPanel::updateCurveButton(const Entry& entry) const
{
    if (!entry.curveButton)
        return;
    const auto* owner = dynamic_cast<const MCurveOwner*>(m_object.data());
    const bool hasCurve = owner && owner->hasCurve(entry.field->id);
    const QString iconPath =
        hasCurve ? QStringLiteral(":/icons/check.ico") : QStringLiteral(":/icons/plus.ico");
    entry.curveButton->setIcon(QIcon(iconPath));
}
