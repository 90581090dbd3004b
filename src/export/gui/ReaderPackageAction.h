#pragma once

#include <QDateTime>
#include <QObject>

#include <functional>

class ArchiveContext;
class QAction;
class QWidget;

// "Reader-Paket exportieren": asks where to save the package of the active poems and
// writes it, reporting through statusChanged and the written file through fileWritten.
class ReaderPackageAction : public QObject {
    Q_OBJECT

public:
    ReaderPackageAction(ArchiveContext &context, QWidget *window);

    QAction *action() const { return m_action; }

    using Clock = std::function<QDateTime()>;
    void setClock(Clock clock) { m_clock = std::move(clock); }

public Q_SLOTS:
    void exportPackage();

Q_SIGNALS:
    void statusChanged(const QString &text);
    void fileWritten(const QString &path);

protected:
    // The save dialog; an empty path means the user cancelled.
    virtual QString chooseDestination(const QString &proposedPath);

private:
    ArchiveContext &m_context;
    QWidget *m_window;
    QAction *m_action;
    Clock m_clock;
};
