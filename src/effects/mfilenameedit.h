#pragma once

#include <QString>
#include <QWidget>

class QLineEdit;
class QToolButton;

// A line for a file path with a button that browses for it. The path changes
// when the user leaves the line or picks a file, not at every key.
class MFileNameEdit : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(QString fileName READ fileName WRITE set_fileName NOTIFY fileNameChanged USER true)
    Q_PROPERTY(QString filter READ filter WRITE set_filter NOTIFY filterChanged)

public:
    explicit MFileNameEdit(QWidget* parent = nullptr);

    QString fileName() const { return m_fileName; }
    // The file dialog's filter, as QFileDialog takes it.
    QString filter() const { return m_filter; }

    QLineEdit* lineEdit() const { return m_lineEdit; }
    QToolButton* browseButton() const { return m_browseButton; }

public Q_SLOTS:
    void set_fileName(const QString& fileName);
    void set_filter(const QString& filter);
    // Asks the user for a file and takes it unless they cancel.
    void browse();

Q_SIGNALS:
    void fileNameChanged(const QString& fileName);
    void filterChanged(const QString& filter);

protected:
    // The file the user picks, empty when they cancel.
    virtual QString askFileName(const QString& current);

private:
    void onEditingFinished();

    QLineEdit* m_lineEdit;
    QToolButton* m_browseButton;
    QString m_fileName;
    QString m_filter;
};
