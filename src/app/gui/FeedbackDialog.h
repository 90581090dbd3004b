#pragma once

#include <QDialog>

class QLabel;
class QPlainTextEdit;

// "Feedback senden…": a prepared message the poet completes, copies or hands to their
// own mail program. Nothing is sent by the program itself. The address is a build
// option; without one the text can only be copied.
class FeedbackDialog : public QDialog {
    Q_OBJECT

public:
    explicit FeedbackDialog(QWidget *parent = nullptr);

    // Empty when the build names none.
    static QString supportAddress();
    static QString subject();
    QString message() const;
    QUrl mailUrl() const;

private:
    static QString preparedText();

    QPlainTextEdit *m_text;
    QLabel *m_confirmation;
};
