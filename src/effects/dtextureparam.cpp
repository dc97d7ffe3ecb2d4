#include "effects/dtextureparam.h"

#include "app/mpathvar.h"
#include "app/mpathvarlist.h"

#include <QAction>
#include <QComboBox>
#include <QFileDialog>
#include <QFileInfo>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QRegularExpression>
#include <QToolButton>
#include <QVBoxLayout>

namespace {

// The option words of the declaration language; the line uses them lower-cased,
// so they are shown as they are, untranslated.
const QStringList filterNames = {QStringLiteral("Nearest"),
                                 QStringLiteral("Linear"),
                                 QStringLiteral("NearestMipMapNearest"),
                                 QStringLiteral("NearestMipMapLinear"),
                                 QStringLiteral("LinearMipMapNearest"),
                                 QStringLiteral("LinearMipMapLinear")};
const QStringList wrapNames = {QStringLiteral("Repeat"), QStringLiteral("MirroredRepeat"),
                               QStringLiteral("ClampToEdge"), QStringLiteral("ClampToBorder"),
                               QStringLiteral("MirrorClampToEdge")};

// Words the declaration language reserves in any case: a texture of such a
// name would not parse.
const QStringList keywords = {QStringLiteral("texture"),
                              QStringLiteral("min"),
                              QStringLiteral("filter"),
                              QStringLiteral("mag"),
                              QStringLiteral("wraps"),
                              QStringLiteral("wrapt"),
                              QStringLiteral("nearest"),
                              QStringLiteral("linear"),
                              QStringLiteral("nearestmipmapnearest"),
                              QStringLiteral("nearestmipmaplinear"),
                              QStringLiteral("linearmipmapnearest"),
                              QStringLiteral("linearmipmaplinear"),
                              QStringLiteral("repeat"),
                              QStringLiteral("mirroredrepeat"),
                              QStringLiteral("clamptoedge"),
                              QStringLiteral("clamptoborder"),
                              QStringLiteral("mirrorclamptoedge"),
                              QStringLiteral("int"),
                              QStringLiteral("bool"),
                              QStringLiteral("float"),
                              QStringLiteral("color"),
                              QStringLiteral("enum"),
                              QStringLiteral("true"),
                              QStringLiteral("false"),
                              QStringLiteral("rgb"),
                              QStringLiteral("max"),
                              QStringLiteral("increment"),
                              QStringLiteral("values")};

QComboBox* makeCombo(const QStringList& items, const QString& current, const QString& objectName,
                     QWidget* parent)
{
    auto* combo = new QComboBox(parent);
    combo->setObjectName(objectName);
    combo->addItems(items);
    combo->setCurrentText(current);
    return combo;
}

} // namespace

DTextureParam::DTextureParam(QWidget* parent)
    : QDialog(parent), m_varNameEdit(new QLineEdit(this)), m_fileNameEdit(new QLineEdit(this)),
      m_minFilterCombo(makeCombo(filterNames, QStringLiteral("LinearMipMapLinear"),
                                 QStringLiteral("minFilterCombo"), this)),
      m_magFilterCombo(
          makeCombo(filterNames, QStringLiteral("Linear"), QStringLiteral("magFilterCombo"), this)),
      m_wrapSCombo(makeCombo(wrapNames, QStringLiteral("ClampToEdge"), QStringLiteral("wrapSCombo"), this)),
      m_wrapTCombo(makeCombo(wrapNames, QStringLiteral("ClampToEdge"), QStringLiteral("wrapTCombo"), this))
{
    setWindowTitle(tr("Texture shader parameter"));
    m_varNameEdit->setObjectName(QStringLiteral("varNameEdit"));
    m_fileNameEdit->setObjectName(QStringLiteral("fileNameEdit"));

    auto* fileNameBtn = new QToolButton(this);
    fileNameBtn->setObjectName(QStringLiteral("fileNameBtn"));
    fileNameBtn->setText(QStringLiteral("..."));
    fileNameBtn->setToolTip(tr("Browse for the texture file"));

    auto* varMenu = new QMenu(this);
    for (int i = 0; i < MPathVarList::instance()->count(); ++i) {
        const MPathVar* variable = MPathVarList::instance()->at(i);
        QAction* action =
            varMenu->addAction(QStringLiteral("%1 (%2)").arg(variable->variable(), variable->description()));
        action->setData(variable->variable());
        connect(action, &QAction::triggered, this, &DTextureParam::addVar);
    }
    auto* varButton = new QToolButton(this);
    varButton->setObjectName(QStringLiteral("varBtn"));
    varButton->setText(QStringLiteral("$"));
    varButton->setToolTip(tr("Insert a path variable"));
    varButton->setMenu(varMenu);
    varButton->setPopupMode(QToolButton::InstantPopup);

    auto* fileRow = new QHBoxLayout;
    fileRow->setSpacing(2);
    fileRow->addWidget(m_fileNameEdit, 1);
    fileRow->addWidget(fileNameBtn);
    fileRow->addWidget(varButton);

    auto* form = new QFormLayout;
    form->addRow(tr("Var name"), m_varNameEdit);
    form->addRow(tr("File name"), fileRow);
    form->addRow(tr("Min filter"), m_minFilterCombo);
    form->addRow(tr("Mag filter"), m_magFilterCombo);
    form->addRow(tr("Wrap s"), m_wrapSCombo);
    form->addRow(tr("Wrap t"), m_wrapTCombo);

    auto* okBtn = new QPushButton(tr("Ok"), this);
    okBtn->setObjectName(QStringLiteral("okBtn"));
    okBtn->setDefault(true);
    auto* cancelBtn = new QPushButton(tr("Cancel"), this);
    cancelBtn->setObjectName(QStringLiteral("cancelBtn"));
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(okBtn);
    buttons->addWidget(cancelBtn);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addStretch(1);
    layout->addLayout(buttons);
    m_fileNameEdit->setMinimumWidth(300);

    QMetaObject::connectSlotsByName(this);
}

QString DTextureParam::buildDeclaration() const
{
    // A path holding double quotes can still be written between single ones.
    const QString fileName = m_fileNameEdit->text();
    const QChar quote = fileName.contains(QLatin1Char('"')) ? QLatin1Char('\'') : QLatin1Char('"');
    return QStringLiteral("texture %1 %2%3%2 min filter = %4 mag filter = %5 wraps = %6 wrapt = %7;")
        .arg(m_varNameEdit->text().trimmed(), quote, fileName, m_minFilterCombo->currentText().toLower(),
             m_magFilterCombo->currentText().toLower(), m_wrapSCombo->currentText().toLower(),
             m_wrapTCombo->currentText().toLower());
}

QString DTextureParam::validationError() const
{
    const QString name = m_varNameEdit->text().trimmed();
    static const QRegularExpression identifier(QStringLiteral("^[A-Za-z_][A-Za-z0-9_]*$"));
    if (!identifier.match(name).hasMatch())
        return tr(
            "The variable name must begin with a letter or \"_\" and hold only letters, digits and \"_\".");
    if (keywords.contains(name, Qt::CaseInsensitive))
        return tr("\"%1\" is a word of the parameter language and can't name a texture.").arg(name);
    if (name.startsWith(QStringLiteral("gl_")))
        return tr("Names beginning with \"gl_\" are reserved by OpenGL.");
    const QString fileName = m_fileNameEdit->text();
    if (fileName.contains(QLatin1Char('"')) && fileName.contains(QLatin1Char('\'')))
        return tr("The file name can't hold both single and double quotes.");
    if (fileName.contains(QLatin1Char('\n')) || fileName.contains(QLatin1Char('\r')))
        return tr("The file name must be on one line.");
    return QString();
}

void DTextureParam::addVar()
{
    const auto* action = qobject_cast<QAction*>(sender());
    if (!action)
        return;
    m_fileNameEdit->insert(action->data().toString());
    m_fileNameEdit->setFocus();
}

void DTextureParam::on_okBtn_clicked()
{
    const QString error = validationError();
    if (!error.isEmpty()) {
        showWarning(error);
        return;
    }
    m_declaration = buildDeclaration();
    Q_EMIT declarationReady(m_declaration);
    accept();
}

void DTextureParam::on_cancelBtn_clicked()
{
    reject();
}

void DTextureParam::on_fileNameBtn_clicked()
{
    const QString current = MPathVarList::instance()->expand(m_fileNameEdit->text());
    const QString directory = current.isEmpty() ? QString() : QFileInfo(current).absolutePath();
    const QString chosen = QFileDialog::getOpenFileName(
        this, tr("Texture file"), directory,
        tr("Images (*.png *.jpg *.jpeg *.bmp *.tif *.tiff *.webp);;All files (*)"));
    if (!chosen.isEmpty())
        m_fileNameEdit->setText(chosen);
}

void DTextureParam::showWarning(const QString& text)
{
    QMessageBox::warning(this, windowTitle(), text);
}
