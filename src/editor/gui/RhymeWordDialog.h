#pragma once

#include <QDialog>

class QLineEdit;

// "Reime suchen": asks for the word when the editor has none at the cursor.
class RhymeWordDialog : public QDialog {
    Q_OBJECT

public:
    explicit RhymeWordDialog(QWidget *parent = nullptr);
    QString word() const;

private:
    QLineEdit *m_word;
};
