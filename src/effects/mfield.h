#pragma once

#include "effects/mpicklist.h"

#include <QByteArray>
#include <QString>
#include <QVariant>


// The description of one editable value: type, range, label, unit and display
// hints. Brush settings, effect parameters and table columns are all fields.
class MField
{
public:
    enum Role { DisplayRole = 0, DecorationRole = 1, SizeHintRole = 13 };

    MField() = default;
    MField(const MField& other) = default;
    MField& operator=(const MField& other) = default;
    virtual ~MField() = default;

    bool isNull() const { return id == -1; }

    // Bounds never cross: a new bound beyond the other swaps the two.
    void setMinimum(double value);
    void setMaximum(double value);
    void addPick(const QString& text, const QVariant& value) { pickList.add(text, value); }
    bool hasPickList() const { return !pickList.isEmpty(); }

    double minimum() const { return m_minimum; }
    double maximum() const { return m_maximum; }

    // How a table cell shows a value through this field.
    QVariant format(const QVariant& value, int role) const;

    QByteArray name;
    int id = -1;
    QString label;
    QString description;
    int type = QVariant::Double;
    QByteArray enumName;
    bool isLogarithmic = false;
    bool isPercentage = false;
    double step = 0.1;
    QString unit;
    QVariant defaultValue = 0.0;
    bool hasCurve = true;
    bool visible = true;
    MPickList pickList;

private:
    double m_maximum = 1.0;
    double m_minimum = 0.0;
};
