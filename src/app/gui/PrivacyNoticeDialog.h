#pragma once

#include <QDialog>

// "Datenschutzhinweise": what stays on the computer and what the update check sends.
class PrivacyNoticeDialog : public QDialog {
    Q_OBJECT

public:
    explicit PrivacyNoticeDialog(QWidget *parent = nullptr);
};
