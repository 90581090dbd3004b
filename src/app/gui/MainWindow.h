#pragma once

#include <QMainWindow>

class ArchiveContext;

// The library window: sidebar, list and detail columns over the archive context.
class MainWindow : public QMainWindow {
    Q_OBJECT

public:
    explicit MainWindow(ArchiveContext &context, QWidget *parent = nullptr);

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    ArchiveContext &m_context;
};
