#pragma once

#include <QDialog>

class QLabel;
class QPlainTextEdit;

// "Feedback senden…": a prepared message the poet completes, copies or hands to their
// own mail program. Nothing is sent by the program itself.
class FeedbackDialog : public QDialog {
    Q_OBJECT

public:
    explicit FeedbackDialog(QWidget *parent = nullptr);

    static QString supportAddress();
    static QString subject();
    QString message() const;
    QUrl mailUrl() const;

private:
    static QString preparedText();

    QPlainTextEdit *m_text;
    QLabel *m_confirmation;
};
