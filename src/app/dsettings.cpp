#include "app/dsettings.h"

#include "app/menum.h"
#include "app/mlogger.h"
#include "app/msettings.h"
#include "app/mutility.h"
#include "tools/maction.h"
#include "tools/mactionlist.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QColorDialog>
#include <QComboBox>
#include <QDir>
#include <QDoubleSpinBox>
#include <QFontComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QImageReader>
#include <QKeySequenceEdit>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QMetaProperty>
#include <QPainter>
#include <QPushButton>
#include <QScrollArea>
#include <QStackedWidget>
#include <QTableWidget>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <limits>

namespace {

const char* const valueProperty = "TarnbeckValue";
const char* const nameProperty = "TarnbeckName";
const QString shortcutsCategory = QStringLiteral("Shortcuts");
const QString languageKey = QStringLiteral("userLangId");
const QString paperNameKey = QStringLiteral("paperName");

QMetaProperty settingProperty(const QString& key)
{
    const QMetaObject* meta = MSettings::instance()->metaObject();
    const int index = meta->indexOfProperty(key.toLatin1().constData());
    return index < 0 ? QMetaProperty() : meta->property(index);
}

QStringList paperFileNames()
{
    QStringList filters;
    const QList<QByteArray> formats = QImageReader::supportedImageFormats();
    for (const QByteArray& format : formats)
        filters << QStringLiteral("*.") + QString::fromLatin1(format);
    QStringList names;
    for (MEnum::PathType path : {MEnum::UserPath, MEnum::SystemPath})
        names << QDir(MUtility::directory(path, MEnum::PaperDir)).entryList(filters, QDir::Files);
    names.removeDuplicates();
    names.sort(Qt::CaseInsensitive);
    return names;
}

} // namespace

DSettings::DSettings(QWidget* actionsWidget, QWidget* parent)
    : QDialog(parent), m_actionsWidget(actionsWidget)
{
    setWindowTitle(tr("Settings"));

    m_tree = new QTreeWidget(this);
    m_tree->setObjectName(QStringLiteral("treeCategories"));
    m_tree->setHeaderHidden(true);
    m_tree->setRootIsDecorated(false);
    m_tree->setColumnCount(1);
    m_pages = new QStackedWidget(this);
    m_pages->setObjectName(QStringLiteral("stackPages"));

    const QStringList categories = MSettings::categories();
    int labelWidth = 0;
    for (const QString& category : categories) {
        const QString label = MSettings::categoryLabel(category);
        labelWidth = qMax(labelWidth, m_tree->fontMetrics().horizontalAdvance(label));
        auto* entry = new QTreeWidgetItem(m_tree, QStringList(label));
        entry->setData(0, Qt::UserRole, category);
        QWidget* page = category == shortcutsCategory ? buildShortcutsPage() : buildSettingsPage(category);
        page->setObjectName(QStringLiteral("page") + category);
        m_pages->addWidget(page);
    }
    m_tree->setFixedWidth(qMax(140, labelWidth + 2 * m_tree->frameWidth() + 24));
    connect(m_tree, &QTreeWidget::currentItemChanged, this, &DSettings::openPage);
    m_tree->setCurrentItem(m_tree->topLevelItem(0));

    auto* btnOk = new QPushButton(tr("Ok"), this);
    btnOk->setObjectName(QStringLiteral("btnOk"));
    btnOk->setDefault(true);
    auto* btnCancel = new QPushButton(tr("Cancel"), this);
    btnCancel->setObjectName(QStringLiteral("BtnCancel"));

    auto* body = new QHBoxLayout;
    body->addWidget(m_tree);
    body->addWidget(m_pages, 1);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(btnOk);
    buttons->addWidget(btnCancel);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(body, 1);
    layout->addLayout(buttons);
    resize(760, 540);

    MSettings* settings = MSettings::instance();
    connect(settings, &MSettings::userLangIdChanged, this, &DSettings::setNeedRestart);
    connect(settings, &MSettings::translateCompositionModesChanged, this, &DSettings::setNeedRestart);

    QMetaObject::connectSlotsByName(this);
}

QWidget* DSettings::buildSettingsPage(const QString& category)
{
    auto* content = new QWidget;
    auto* form = new QFormLayout(content);
    form->setFieldGrowthPolicy(QFormLayout::ExpandingFieldsGrow);
    form->setLabelAlignment(Qt::AlignLeft | Qt::AlignVCenter);

    const QVector<MSettingItem>& items = MSettings::instance()->items();
    for (const MSettingItem& item : items) {
        if (item.category != category || !item.isVisible)
            continue;
        const QMetaProperty property = settingProperty(item.key);
        if (!property.isValid()) {
            MLogger::systemError(QStringLiteral("DSettings::buildSettingsPage"),
                                 QStringLiteral("no property for the setting %1").arg(item.key));
            continue;
        }
        QWidget* editor = createEditor(item, property.read(MSettings::instance()), content);
        if (!editor)
            continue;
        m_editors.insert(item.key, editor);
        m_loaded.insert(item.key, editorValue(item));
        auto* label = new QLabel(item.label(), content);
        label->setObjectName(QStringLiteral("label"));
        label->setBuddy(editor);
        form->addRow(label, editor);
    }

    // A long page scrolls rather than growing the dialog past the screen.
    auto* scroll = new QScrollArea;
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setWidgetResizable(true);
    scroll->setWidget(content);
    return scroll;
}

QWidget* DSettings::createEditor(const MSettingItem& item, const QVariant& value, QWidget* parent)
{
    QWidget* editor = nullptr;
    switch (item.type) {
    case QMetaType::Bool: {
        auto* box = new QCheckBox(parent);
        box->setChecked(value.toBool());
        editor = box;
        break;
    }
    case QMetaType::Int:
        if (!item.enumName.isEmpty()) {
            auto* combo = new QComboBox(parent);
            const QMetaEnum meta = MEnum::metaEnum(item.enumName);
            for (int i = 0; i < meta.keyCount(); ++i)
                combo->addItem(MEnum::translatedKey(meta.key(i)), meta.value(i));
            combo->setCurrentIndex(combo->findData(value.toInt()));
            editor = combo;
        } else {
            auto* spin = new QSpinBox(parent);
            spin->setRange(item.hasMinimum() ? int(item.minimum) : std::numeric_limits<int>::min(),
                           item.hasMaximum() ? int(item.maximum) : std::numeric_limits<int>::max());
            spin->setValue(value.toInt());
            editor = spin;
        }
        break;
    case QMetaType::Double: {
        auto* spin = new QDoubleSpinBox(parent);
        // Wide enough for any setting without a range, narrow enough that the
        // box isn't sized for three hundred digits.
        const double unbounded = 1e9;
        const double minimum = item.hasMinimum() ? item.minimum : -unbounded;
        const double maximum = item.hasMaximum() ? item.maximum : unbounded;
        if (value.userType() == QMetaType::Int) {
            spin->setDecimals(0);
            spin->setSingleStep(1);
        } else {
            spin->setDecimals(2);
            spin->setSingleStep(maximum - minimum <= 1 ? 0.05 : 0.5);
        }
        spin->setRange(minimum, maximum);
        spin->setValue(value.toDouble());
        editor = spin;
        break;
    }
    case QMetaType::QString:
        if (item.key == languageKey) {
            auto* combo = new QComboBox(parent);
            combo->addItem(tr("English"), QStringLiteral("EN"));
            combo->addItem(tr("French"), QStringLiteral("FR"));
            // The store's default is lower case; the choice is the same language.
            for (int i = 0; i < combo->count(); ++i)
                if (combo->itemData(i).toString().compare(value.toString(), Qt::CaseInsensitive) == 0)
                    combo->setCurrentIndex(i);
            editor = combo;
        } else if (item.key == paperNameKey) {
            auto* combo = new QComboBox(parent);
            combo->setEditable(true);
            combo->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
            combo->addItems(paperFileNames());
            combo->setCurrentText(value.toString());
            editor = combo;
        } else {
            auto* line = new QLineEdit(value.toString(), parent);
            line->setCursorPosition(0);
            editor = line;
        }
        break;
    case QMetaType::QFont: {
        auto* combo = new QFontComboBox(parent);
        combo->setCurrentFont(QFont(value.toString()));
        editor = combo;
        break;
    }
    case QMetaType::QColor: {
        auto* button = new QPushButton(tr("edit"), parent);
        button->setProperty(nameProperty, item.key);
        showColor(button, value.value<QColor>());
        connect(button, &QPushButton::clicked, this, &DSettings::editColor);
        editor = button;
        break;
    }
    default:
        MLogger::systemError(QStringLiteral("DSettings::createEditor"),
                             QStringLiteral("the setting %1 has a type with no editor").arg(item.key));
        return nullptr;
    }
    editor->setObjectName(item.key);
    return editor;
}

QVariant DSettings::editorValue(const MSettingItem& item) const
{
    QWidget* editor = m_editors.value(item.key);
    switch (item.type) {
    case QMetaType::Bool:
        if (auto* box = qobject_cast<QCheckBox*>(editor))
            return box->isChecked();
        break;
    case QMetaType::Int:
        if (auto* combo = qobject_cast<QComboBox*>(editor))
            return combo->currentData();
        if (auto* spin = qobject_cast<QSpinBox*>(editor))
            return spin->value();
        break;
    case QMetaType::Double:
        if (auto* spin = qobject_cast<QDoubleSpinBox*>(editor))
            return spin->value();
        break;
    case QMetaType::QString:
        if (auto* combo = qobject_cast<QComboBox*>(editor))
            return combo->isEditable() ? QVariant(combo->currentText()) : combo->currentData();
        if (auto* line = qobject_cast<QLineEdit*>(editor))
            return line->text();
        break;
    case QMetaType::QFont:
        if (auto* combo = qobject_cast<QFontComboBox*>(editor))
            return combo->currentFont().family();
        break;
    case QMetaType::QColor:
        if (editor)
            return editor->property(valueProperty);
        break;
    default:
        break;
    }
    return QVariant();
}

void DSettings::writeSetting(const MSettingItem& item, const QVariant& value)
{
    const QMetaProperty property = settingProperty(item.key);
    QVariant stored = value;
    // The table may edit as a double what the store keeps as an int.
    if (property.userType() == QMetaType::Int && value.userType() == QMetaType::Double)
        stored = qRound(value.toDouble());
    if (!property.write(MSettings::instance(), stored))
        MLogger::systemError(QStringLiteral("DSettings::writeSetting"),
                             QStringLiteral("the setting %1 could not be written").arg(item.key));
}

void DSettings::showColor(QPushButton* button, const QColor& color)
{
    button->setProperty(valueProperty, color);
    QPixmap swatch(24, 14);
    swatch.fill(color);
    QPainter painter(&swatch);
    painter.setPen(button->palette().color(QPalette::Mid));
    painter.drawRect(swatch.rect().adjusted(0, 0, -1, -1));
    painter.end();
    button->setIcon(QIcon(swatch));
    button->setIconSize(swatch.size());
    button->setToolTip(color.name(QColor::HexRgb));
}

void DSettings::on_btnOk_clicked()
{
    const QVector<MSettingItem>& items = MSettings::instance()->items();
    for (const MSettingItem& item : items) {
        if (!m_editors.contains(item.key))
            continue;
        const QVariant value = editorValue(item);
        // An editor the user left alone keeps the stored value, even one it
        // can't show exactly: out of its range, finer than its decimals, a font
        // that isn't installed, a language id in another case.
        if (value == m_loaded.value(item.key))
            continue;
        writeSetting(item, value);
        m_loaded.insert(item.key, value);
    }
    applyShortcuts();
    Q_EMIT settingsChanged();
    accept();
}

void DSettings::on_BtnCancel_clicked()
{
    reject();
}

void DSettings::editColor()
{
    auto* button = qobject_cast<QPushButton*>(sender());
    if (!button)
        return;
    const MSettingItem* item = MSettings::instance()->item(button->property(nameProperty).toString());
    const QColor chosen =
        askColor(button->property(valueProperty).value<QColor>(), item ? item->label() : windowTitle());
    if (chosen.isValid())
        showColor(button, chosen);
}

QColor DSettings::askColor(const QColor& current, const QString& title)
{
    return QColorDialog::getColor(current, this, title);
}

void DSettings::openPage(QTreeWidgetItem* item)
{
    const int index = m_tree->indexOfTopLevelItem(item);
    if (index >= 0)
        m_pages->setCurrentIndex(index);
}

void DSettings::setNeedRestart()
{
    m_needRestart = true;
}

// ---------------------------------------------------------------------------
// Shortcuts

QWidget* DSettings::buildShortcutsPage()
{
    auto* page = new QWidget;

    auto* search = new QLineEdit(page);
    search->setObjectName(QStringLiteral("editSearch"));
    search->setPlaceholderText(tr("Search"));
    search->setClearButtonEnabled(true);
    connect(search, &QLineEdit::textChanged, this, &DSettings::filterShortcuts);

    // The rows are those of the window's action list: named actions with a
    // description.
    MActionList actionList;
    actionList.rebuild(m_actionsWidget);
    for (int row = 0; row < actionList.count(); ++row) {
        const auto* entry = qobject_cast<const MAction*>(actionList.item(row));
        QAction* action = entry ? entry->action() : nullptr;
        if (action)
            m_shortcuts.append({action, action->objectName(), entry->description(), action->shortcut()});
    }

    m_shortcutTable = new QTableWidget(m_shortcuts.size(), 2, page);
    m_shortcutTable->setObjectName(QStringLiteral("tableShortcuts"));
    m_shortcutTable->setHorizontalHeaderLabels({tr("Description"), tr("Shortcut")});
    m_shortcutTable->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_shortcutTable->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_shortcutTable->setSelectionMode(QAbstractItemView::SingleSelection);
    m_shortcutTable->verticalHeader()->hide();
    m_shortcutTable->verticalHeader()->setDefaultSectionSize(m_shortcutTable->fontMetrics().height() + 8);
    m_shortcutTable->setAlternatingRowColors(true);
    m_shortcutTable->horizontalHeader()->setSectionResizeMode(0, QHeaderView::Stretch);
    m_shortcutTable->horizontalHeader()->setSectionResizeMode(1, QHeaderView::ResizeToContents);
    for (int row = 0; row < m_shortcuts.size(); ++row) {
        auto* description = new QTableWidgetItem(m_shortcuts.at(row).description);
        description->setToolTip(m_shortcuts.at(row).name);
        m_shortcutTable->setItem(row, 0, description);
        m_shortcutTable->setItem(row, 1, new QTableWidgetItem);
        showShortcut(row, m_shortcuts.at(row).sequence);
    }
    connect(m_shortcutTable, &QTableWidget::cellDoubleClicked, this, &DSettings::editShortcut);

    auto* btnEdit = new QPushButton(tr("Edit"), page);
    btnEdit->setObjectName(QStringLiteral("btnEdit"));
    btnEdit->setToolTip(tr("Edit the shortcut."));
    connect(btnEdit, &QPushButton::clicked, this, &DSettings::editShortcut);
    auto* btnReset = new QPushButton(tr("Reset"), page);
    btnReset->setObjectName(QStringLiteral("btnReset"));
    btnReset->setToolTip(tr("Reset the shortcut to the default shortcut."));
    connect(btnReset, &QPushButton::clicked, this, &DSettings::resetShortcut);
    auto* btnResetAll = new QPushButton(tr("Reset all"), page);
    btnResetAll->setObjectName(QStringLiteral("btnResetAll"));
    btnResetAll->setToolTip(tr("Reset all the shortcuts to the default shortcuts."));
    connect(btnResetAll, &QPushButton::clicked, this, &DSettings::resetAllShortcuts);
    auto* btnCopy = new QPushButton(tr("Copy"), page);
    btnCopy->setObjectName(QStringLiteral("btnCopy"));
    btnCopy->setToolTip(
        tr("Copy the table to clipboard, paste it in something like excel and print it to get a shortcut "
           "list sheet."));
    connect(btnCopy, &QPushButton::clicked, this, &DSettings::copyShortcuts);

    auto* buttons = new QHBoxLayout;
    buttons->addWidget(btnEdit);
    buttons->addWidget(btnReset);
    buttons->addWidget(btnResetAll);
    buttons->addStretch(1);
    buttons->addWidget(btnCopy);
    auto* layout = new QVBoxLayout(page);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(search);
    layout->addWidget(m_shortcutTable, 1);
    layout->addLayout(buttons);
    return page;
}

int DSettings::shortcutRow(const QString& actionName) const
{
    for (int row = 0; row < m_shortcuts.size(); ++row)
        if (m_shortcuts.at(row).name == actionName)
            return row;
    return -1;
}

int DSettings::currentShortcutRow() const
{
    const int row = m_shortcutTable->currentRow();
    return row >= 0 && row < m_shortcuts.size() && !m_shortcutTable->isRowHidden(row) ? row : -1;
}

QKeySequence DSettings::pendingShortcut(const QString& actionName) const
{
    const int row = shortcutRow(actionName);
    return row < 0 ? QKeySequence() : m_shortcuts.at(row).sequence;
}

bool DSettings::assignShortcut(const QString& actionName, const QKeySequence& sequence)
{
    return assignShortcut(shortcutRow(actionName), sequence);
}

bool DSettings::assignShortcut(int row, const QKeySequence& sequence)
{
    if (row < 0 || row >= m_shortcuts.size())
        return false;
    if (m_shortcuts.at(row).sequence == sequence)
        return false;
    QVector<int> holders;
    if (!sequence.isEmpty()) {
        for (int other = 0; other < m_shortcuts.size(); ++other)
            if (other != row && m_shortcuts.at(other).sequence == sequence)
                holders << other;
    }
    // Every holder must agree before anything moves, so that a "No" leaves
    // the table as it was.
    for (int holder : holders)
        if (!askReplace(sequence, m_shortcuts.at(holder).description))
            return false;
    for (int holder : holders)
        showShortcut(holder, QKeySequence());
    showShortcut(row, sequence);
    return true;
}

void DSettings::showShortcut(int row, const QKeySequence& sequence)
{
    m_shortcuts[row].sequence = sequence;
    m_shortcutTable->item(row, 1)->setText(sequence.toString(QKeySequence::NativeText));
}

bool DSettings::askReplace(const QKeySequence& sequence, const QString& actionDescription)
{
    const QString question = tr("The shortcut %1 already exists for action '%2'. Do you want to replace it?")
                                 .arg(sequence.toString(QKeySequence::NativeText), actionDescription);
    return QMessageBox::question(this, tr("Shortcut"), question, QMessageBox::Yes | QMessageBox::No,
                                 QMessageBox::No) == QMessageBox::Yes;
}

bool DSettings::askShortcut(const QString& actionDescription, QKeySequence& sequence)
{
    QDialog dialog(this);
    dialog.setWindowTitle(tr("Shortcut"));
    auto* edit = new QKeySequenceEdit(sequence, &dialog);
    auto* btnClear = new QPushButton(tr("Clear"), &dialog);
    connect(btnClear, &QPushButton::clicked, edit, &QKeySequenceEdit::clear);
    auto* btnOk = new QPushButton(tr("Ok"), &dialog);
    connect(btnOk, &QPushButton::clicked, &dialog, &QDialog::accept);
    auto* btnCancel = new QPushButton(tr("Cancel"), &dialog);
    connect(btnCancel, &QPushButton::clicked, &dialog, &QDialog::reject);
    // The capture takes every key, Return included, so no button may be
    // pressed from the keyboard while it has the focus.
    btnOk->setAutoDefault(false);
    btnCancel->setAutoDefault(false);
    btnClear->setAutoDefault(false);

    auto* capture = new QHBoxLayout;
    capture->addWidget(edit, 1);
    capture->addWidget(btnClear);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(btnOk);
    buttons->addWidget(btnCancel);
    auto* layout = new QVBoxLayout(&dialog);
    layout->addWidget(new QLabel(actionDescription, &dialog));
    layout->addLayout(capture);
    layout->addLayout(buttons);
    dialog.resize(360, dialog.sizeHint().height());
    edit->setFocus();

    if (dialog.exec() != QDialog::Accepted)
        return false;
    sequence = edit->keySequence();
    return true;
}

void DSettings::editShortcut()
{
    const int row = currentShortcutRow();
    if (row < 0)
        return;
    QKeySequence sequence = m_shortcuts.at(row).sequence;
    if (askShortcut(m_shortcuts.at(row).description, sequence))
        assignShortcut(row, sequence);
}

void DSettings::resetShortcut()
{
    const int row = currentShortcutRow();
    if (row < 0)
        return;
    assignShortcut(row,
                   QKeySequence::fromString(MSettings::instance()->defaultShortcut(m_shortcuts.at(row).name),
                                            QKeySequence::PortableText));
}

void DSettings::resetAllShortcuts()
{
    // The defaults don't clash among themselves, so no question is asked.
    for (int row = 0; row < m_shortcuts.size(); ++row)
        showShortcut(
            row, QKeySequence::fromString(MSettings::instance()->defaultShortcut(m_shortcuts.at(row).name),
                                          QKeySequence::PortableText));
}

void DSettings::copyShortcuts()
{
    QString text;
    for (const ShortcutRow& row : qAsConst(m_shortcuts))
        text += row.description + QLatin1Char('\t') + row.sequence.toString(QKeySequence::NativeText) +
                QLatin1Char('\n');
    QApplication::clipboard()->setText(text);
}

void DSettings::filterShortcuts(const QString& text)
{
    const QString wanted = text.trimmed();
    for (int row = 0; row < m_shortcuts.size(); ++row) {
        const bool shown = wanted.isEmpty() ||
                           m_shortcuts.at(row).description.contains(wanted, Qt::CaseInsensitive) ||
                           m_shortcutTable->item(row, 1)->text().contains(wanted, Qt::CaseInsensitive);
        m_shortcutTable->setRowHidden(row, !shown);
    }
}

void DSettings::applyShortcuts()
{
    if (!m_actionsWidget)
        return;
    for (const ShortcutRow& row : qAsConst(m_shortcuts))
        if (row.action && row.action->shortcut() != row.sequence)
            row.action->setShortcut(row.sequence);
    MSettings::instance()->saveShortcuts(m_actionsWidget);
}
