#pragma once

#include <QWidget>

class QLabel;
class QLineEdit;

// The find and replace bar above the poem text.
class FindReplaceBar : public QWidget {
    Q_OBJECT

public:
    explicit FindReplaceBar(QWidget *parent = nullptr);

    QString findText() const;
    QString replaceText() const;
    void setFindText(const QString &text);
    void setStatus(const QString &status);
    QString status() const;
    void focusFind();
    void focusReplace();

Q_SIGNALS:
    void findNextRequested();
    void findPreviousRequested();
    void replaceRequested();
    void replaceAllRequested();
    void closeRequested();

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    QLineEdit *m_find;
    QLineEdit *m_replace;
    QLabel *m_status;
};
