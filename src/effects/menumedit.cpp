#include "effects/menumedit.h"

#include "gpu/mcompositionmodelist.h"

#include <QCoreApplication>
#include <QIcon>

MEnumEdit::MEnumEdit(QWidget* parent) : QComboBox(parent)
{
    setFocusPolicy(Qt::StrongFocus);
    connect(this, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
            &MEnumEdit::onCurrentIndexChanged);
}

void MEnumEdit::setEnum(const QMetaEnum& metaEnum, const QStringList& icons)
{
    clear();
    if (!metaEnum.isValid())
        return;
    for (int i = 0; i < metaEnum.keyCount(); ++i) {
        const QString text = QCoreApplication::translate("Enum", metaEnum.key(i));
        addValue(text, metaEnum.value(i), i < icons.size() ? QIcon(icons.at(i)) : QIcon());
    }
}

void MEnumEdit::setCompositionModes(bool brushModesOnly)
{
    clear();
    MCompositionModeList::instance()->fillComboBox(this, brushModesOnly);
}

void MEnumEdit::addValue(const QString& text, int value, const QIcon& icon)
{
    addItem(icon, text, value);
}

int MEnumEdit::value() const
{
    return currentIndex() < 0 ? -1 : currentData().toInt();
}

void MEnumEdit::set_value(int value)
{
    setCurrentIndex(findData(value));
}

void MEnumEdit::onCurrentIndexChanged(int index)
{
    Q_EMIT valueChanged(index < 0 ? -1 : itemData(index).toInt());
}
