#pragma once

#include <QWidget>

class QLabel;
class QProgressBar;
class QPushButton;

// The sidebar's "Status" panel: a busy indicator while a long operation runs, the one
// status line every archive-wide operation reports into, and, when the last operation
// wrote a file, a button that shows that file in the file manager.
class StatusPanel : public QWidget {
    Q_OBJECT

public:
    explicit StatusPanel(QWidget *parent = nullptr);

    void setStatus(const QString &text);
    QString status() const;
    void setLastWrittenFile(const QString &path);
    QString lastWrittenFile() const { return m_lastWrittenFile; }
    void setBusy(bool busy);
    bool isBusy() const;
    // Shows the whole of a message the panel had to cut.
    void showWholeStatus();

Q_SIGNALS:
    void revealRequested(const QString &path);

private:
    QLabel *m_statusLabel;
    QProgressBar *m_busyIndicator;
    QPushButton *m_revealButton;
    QPushButton *m_wholeStatusButton;
    QString m_status;
    QString m_lastWrittenFile;
    bool m_fileAnnouncedThisTurn = false;
};
