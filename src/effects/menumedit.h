#pragma once

#include <QComboBox>
#include <QMetaEnum>
#include <QStringList>

// A combo box of the values of an enumeration, shown by their translated keys
// and optional icons; it reads and writes the enumeration's value, not the row.
class MEnumEdit : public QComboBox
{
    Q_OBJECT
    Q_PROPERTY(int value READ value WRITE set_value NOTIFY valueChanged USER true)

public:
    explicit MEnumEdit(QWidget* parent = nullptr);

    // Fills the box with the keys of the enumeration, translated in the context
    // "Enum"; icons are resource paths given in the order of the keys, and
    // rows beyond the list get none. The first value becomes current.
    void setEnum(const QMetaEnum& metaEnum, const QStringList& icons = QStringList());
    // Fills the box with the composition modes, those that brushes offer only
    // when asked; the first becomes current.
    void setCompositionModes(bool brushModesOnly);
    // Adds a row for a value that comes from elsewhere than an enumeration.
    void addValue(const QString& text, int value, const QIcon& icon = QIcon());

    // The value of the current row, -1 when there is none.
    int value() const;

public Q_SLOTS:
    // Selects the row of that value; an unknown value leaves no row selected.
    void set_value(int value);

Q_SIGNALS:
    void valueChanged(int value);

private:
    void onCurrentIndexChanged(int index);
};
