#pragma once

#include <QDialog>

// "Über OdeLeaf": the program's name, version and what it is for.
class AboutDialog : public QDialog {
    Q_OBJECT

public:
    explicit AboutDialog(QWidget *parent = nullptr);
};
