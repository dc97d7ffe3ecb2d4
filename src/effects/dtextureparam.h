#pragma once

#include <QDialog>
#include <QString>

class QComboBox;
class QLineEdit;

// Asks for the name, file and sampling of a texture and makes the line that
// declares it in an effect's parameters, such as
// texture grain "$ImagesPath$/grain.png" min filter = linear mag filter = linear wraps = repeat wrapt =
// repeat;
class DTextureParam : public QDialog
{
    Q_OBJECT

public:
    explicit DTextureParam(QWidget* parent = nullptr);

    // The line that "Ok" made; empty before.
    QString declaration() const { return m_declaration; }
    // The line the current entries make, whether they are valid or not.
    QString buildDeclaration() const;
    // Why the current entries can't make a valid line; empty when they can.
    QString validationError() const;

Q_SIGNALS:
    // "Ok" made a valid line; the dialog closes after this.
    void declarationReady(const QString& declaration);

public Q_SLOTS:
    // Inserts the path variable of the triggering action into the file name.
    void addVar();
    void on_okBtn_clicked();
    void on_cancelBtn_clicked();
    void on_fileNameBtn_clicked();

protected:
    virtual void showWarning(const QString& text);

private:
    QLineEdit* m_varNameEdit;
    QLineEdit* m_fileNameEdit;
    QComboBox* m_minFilterCombo;
    QComboBox* m_magFilterCombo;
    QComboBox* m_wrapSCombo;
    QComboBox* m_wrapTCombo;
    QString m_declaration;
};
