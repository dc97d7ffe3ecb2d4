#include "effects/mfilenameedit.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QToolButton>

MFileNameEdit::MFileNameEdit(QWidget* parent)
    : QWidget(parent), m_lineEdit(new QLineEdit(this)), m_browseButton(new QToolButton(this)),
      m_filter(tr("Images (*.png *.jpg *.jpeg *.bmp *.tif *.tiff *.webp);;All files (*)"))
{
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(2);
    layout->addWidget(m_lineEdit, 1);
    layout->addWidget(m_browseButton);
    m_browseButton->setText(QStringLiteral("..."));
    m_browseButton->setToolTip(tr("Browse for a file"));
    setFocusProxy(m_lineEdit);

    connect(m_lineEdit, &QLineEdit::editingFinished, this, &MFileNameEdit::onEditingFinished);
    connect(m_browseButton, &QToolButton::clicked, this, &MFileNameEdit::browse);
}

void MFileNameEdit::set_fileName(const QString& fileName)
{
    if (m_lineEdit->text() != fileName)
        m_lineEdit->setText(fileName);
    if (fileName == m_fileName)
        return;
    m_fileName = fileName;
    m_lineEdit->setToolTip(m_fileName);
    Q_EMIT fileNameChanged(m_fileName);
}

void MFileNameEdit::set_filter(const QString& filter)
{
    if (filter == m_filter)
        return;
    m_filter = filter;
    Q_EMIT filterChanged(m_filter);
}

void MFileNameEdit::browse()
{
    const QString chosen = askFileName(m_fileName);
    if (!chosen.isEmpty())
        set_fileName(chosen);
}

QString MFileNameEdit::askFileName(const QString& current)
{
    const QString directory = current.isEmpty() ? QString() : QFileInfo(current).absolutePath();
    return QFileDialog::getOpenFileName(this, tr("Choose a file"), directory, m_filter);
}

void MFileNameEdit::onEditingFinished()
{
    set_fileName(m_lineEdit->text());
}
