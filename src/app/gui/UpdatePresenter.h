#pragma once

#include "app/UpdateCheckOutcome.h"

#include <QObject>
#include <QPointer>

class UpdateManager;
class QWidget;

// Tells the user how an update check ended: a new version with its download, or, when
// they asked, that the program is up to date or that the check failed.
class UpdatePresenter : public QObject {
    Q_OBJECT

public:
    UpdatePresenter(UpdateManager &manager, QWidget *window);

    void present(const UpdateCheckOutcome &outcome);

private:
    UpdateManager &m_manager;
    QPointer<QWidget> m_window;
};
