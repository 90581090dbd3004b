#include "app/gui/MainWindow.h"

#include "archive/ArchiveContext.h"

#include <QCloseEvent>
#include <QLabel>
#include <QMessageBox>

MainWindow::MainWindow(ArchiveContext &context, QWidget *parent) : QMainWindow(parent), m_context(context)
{
    setWindowTitle(QStringLiteral("OdeLeaf"));
    resize(1280, 800);
    auto *placeholder = new QLabel(tr("%n Gedichte im Archiv", nullptr, int(m_context.fetch().size())), this);
    placeholder->setAlignment(Qt::AlignCenter);
    setCentralWidget(placeholder);
}

void MainWindow::closeEvent(QCloseEvent *event)
{
    if (!m_context.hasChanges()) {
        event->accept();
        return;
    }
    if (auto saved = m_context.save(); !saved) {
        QMessageBox::critical(this, tr("OdeLeaf"),
                              tr("Änderungen konnten nicht gespeichert werden: %1").arg(saved.errorMessage()));
        event->ignore();
        return;
    }
    event->accept();
}
