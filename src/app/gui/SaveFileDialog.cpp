#include "app/gui/SaveFileDialog.h"

#include <QFileDialog>
#include <QFileInfo>

QString SaveFileDialog::ask(QWidget *parent, const QString &title, const QString &nameFilter, const QString &suffix,
                            const QString &proposedPath)
{
    QFileDialog dialog(parent, title);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setFileMode(QFileDialog::AnyFile);
    dialog.setNameFilter(nameFilter);
    dialog.setDefaultSuffix(suffix);
    dialog.setDirectory(QFileInfo(proposedPath).absolutePath());
    dialog.selectFile(QFileInfo(proposedPath).fileName());
    if (dialog.exec() != QDialog::Accepted)
        return {};
    return dialog.selectedFiles().value(0);
}
