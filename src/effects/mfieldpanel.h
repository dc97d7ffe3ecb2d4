#pragma once

#include "effects/mconnector.h"

#include <QByteArray>
#include <QHash>
#include <QPointer>
#include <QVariant>
#include <QVector>
#include <QWidget>

#include <memory>
#include <vector>

class MField;
class MValues;
class QLabel;
class QToolButton;
class QVBoxLayout;

// A grid of editors, one per visible field, bound to the properties of any
// object or to the entries of an MValues table. Editing writes the value at
// once and reports it through valueChanged; loading values into the editors
// reports nothing.
class MFieldPanel : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(bool labelsOnTop READ labelsOnTop WRITE set_labelsOnTop NOTIFY labelsOnTopChanged)
    Q_PROPERTY(bool addSpacer READ addSpacer WRITE set_addSpacer NOTIFY addSpacerChanged)
    Q_PROPERTY(bool addLines READ addLines WRITE set_addLines NOTIFY addLinesChanged)
    Q_PROPERTY(bool addScrollBox READ addScrollBox WRITE set_addScrollBox NOTIFY addScrollBoxChanged)
    Q_PROPERTY(
        bool showCurveButtons READ showCurveButtons WRITE set_showCurveButtons NOTIFY showCurveButtonsChanged)
    Q_PROPERTY(bool showSpinBoxes READ showSpinBoxes WRITE set_showSpinBoxes NOTIFY showSpinBoxesChanged)
    Q_PROPERTY(bool boldLabels READ boldLabels WRITE set_boldLabels NOTIFY boldLabelsChanged)
    Q_PROPERTY(
        bool slidersTracking READ slidersTracking WRITE set_slidersTracking NOTIFY slidersTrackingChanged)

public:
    // The dynamic property that ties an editor to its field's name.
    static constexpr const char* fieldProperty = "TbkFieldPanelProperty";
    // The dynamic property that holds the setting of a curve button.
    static constexpr const char* settingProperty = "TBK_BRUSHSETTING";

    explicit MFieldPanel(QWidget* parent = nullptr);
    ~MFieldPanel() override;

    bool labelsOnTop() const { return m_labelsOnTop; }
    bool addSpacer() const { return m_addSpacer; }
    bool addLines() const { return m_addLines; }
    bool addScrollBox() const { return m_addScrollBox; }
    bool showCurveButtons() const { return m_showCurveButtons; }
    bool showSpinBoxes() const { return m_showSpinBoxes; }
    bool boldLabels() const { return m_boldLabels; }
    bool slidersTracking() const { return m_slidersTracking; }

    // Takes copies of the fields and builds the grid anew.
    void setFields(const QVector<MField*>& fields);
    int fieldCount() const { return int(m_fields.size()); }
    const MField* field(int index) const;

    // Binds the panel to an object's properties, or to the entries of an
    // MValues, and loads the editors from it. The panel doesn't own it.
    void setObject(QObject* object);
    QObject* object() const { return m_object; }

    // Writes one value to the bound object.
    virtual void setValue(const QByteArray& name, const QVariant& value);
    // Reads one value from the bound object; invalid when it has none.
    QVariant value(const QByteArray& name) const;

    // The editor, label and curve button of a field; null when the field has none.
    QWidget* editor(const QByteArray& name) const;
    QLabel* label(const QByteArray& name) const;
    QToolButton* curveButton(const QByteArray& name) const;

public Q_SLOTS:
    void set_labelsOnTop(bool labelsOnTop);
    void set_addSpacer(bool addSpacer);
    void set_addLines(bool addLines);
    void set_addScrollBox(bool addScrollBox);
    void set_showCurveButtons(bool showCurveButtons);
    void set_showSpinBoxes(bool showSpinBoxes);
    void set_boldLabels(bool boldLabels);
    void set_slidersTracking(bool slidersTracking);

    // Loads every editor from the object, silently.
    void valuesToWidgets();
    // Writes every editor's value to the object, silently.
    void widgetsToValues();

Q_SIGNALS:
    void valueChanged(const QByteArray& propertyName, const QVariant& value);
    void editCurve(QToolButton* button, int setting);

    void labelsOnTopChanged(bool labelsOnTop);
    void addSpacerChanged(bool addSpacer);
    void addLinesChanged(bool addLines);
    void addScrollBoxChanged(bool addScrollBox);
    void showCurveButtonsChanged(bool showCurveButtons);
    void showSpinBoxesChanged(bool showSpinBoxes);
    void boldLabelsChanged(bool boldLabels);
    void slidersTrackingChanged(bool slidersTracking);

private Q_SLOTS:
    void onButtonClicked();
    void onEditorChanged();

private:
    struct Entry
    {
        QWidget* editor = nullptr;
        const MField* field = nullptr;
        QLabel* label = nullptr;
        QToolButton* curveButton = nullptr;
    };

    void rebuild();
    // Whether curve buttons go with the current object.
    bool curvesShown() const;
    // Makes the editor of a field and connects it; null for a type without one.
    QWidget* createEditor(const MField& field, QWidget* parent);
    static QVariant editorValue(const Entry& entry);
    static void setEditorValue(const Entry& entry, const QVariant& value);
    void updateCurveButton(const Entry& entry) const;

    bool m_labelsOnTop = true;
    bool m_addSpacer = true;
    bool m_addLines = false;
    bool m_addScrollBox = false;
    bool m_showCurveButtons = false;
    bool m_showSpinBoxes = true;
    bool m_boldLabels = false;
    bool m_slidersTracking = true;

    std::vector<std::unique_ptr<MField>> m_fields;
    QHash<QByteArray, Entry> m_entries;
    QPointer<QObject> m_object;
    MConnector m_connector;
    QVBoxLayout* m_layout;
    // The grid's widget, or the scroll area around it.
    QWidget* m_content = nullptr;
    bool m_builtWithCurves = false;
};
