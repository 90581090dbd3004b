#pragma once

#include <QDialog>

// "Datenschutzhinweise": what stays on the computer and what the update check sends.
class PrivacyNoticeDialog : public QDialog {
    Q_OBJECT

public:
    // checksForUpdates: whether this build has an update feed; the notice says what it does.
    explicit PrivacyNoticeDialog(bool checksForUpdates, QWidget *parent = nullptr);
};
