#include "app/gui/UpdatePresenter.h"

#include "app/UpdateManager.h"

#include <QDesktopServices>
#include <QMessageBox>
#include <QPushButton>
#include <QTextDocument>

UpdatePresenter::UpdatePresenter(UpdateManager &manager, QWidget *window)
    : QObject(window), m_manager(manager), m_window(window)
{
    connect(&manager, &UpdateManager::checkFinished, this, &UpdatePresenter::present);
}

void UpdatePresenter::present(const UpdateCheckOutcome &outcome)
{
    const QString current = m_manager.currentVersion().toString();
    switch (outcome.kind) {
    case UpdateCheckOutcome::Kind::updateAvailable: {
        QMessageBox box(QMessageBox::Information, tr("Nach Updates suchen"),
                        tr("OdeLeaf %1 ist verfügbar.").arg(outcome.release.displayVersion), QMessageBox::NoButton,
                        m_window);
        QTextDocument notes;
        notes.setHtml(outcome.release.notes);
        QString details = tr("Du verwendest Version %1.").arg(current);
        if (!notes.toPlainText().trimmed().isEmpty())
            details += QStringLiteral("\n\n") + notes.toPlainText().trimmed();
        box.setInformativeText(details);
        QPushButton *download = box.addButton(tr("Herunterladen"), QMessageBox::AcceptRole);
        box.addButton(tr("Später"), QMessageBox::RejectRole);
        box.setDefaultButton(download);
        box.exec();
        if (box.clickedButton() == download && outcome.release.downloadUrl.isValid())
            QDesktopServices::openUrl(outcome.release.downloadUrl);
        return;
    }
    case UpdateCheckOutcome::Kind::upToDate:
        if (outcome.userInitiated) {
            QMessageBox::information(
                m_window, tr("Nach Updates suchen"),
                tr("OdeLeaf ist auf dem neuesten Stand. Version %1 ist die aktuelle Version.").arg(current));
        }
        return;
    case UpdateCheckOutcome::Kind::failed:
        if (outcome.userInitiated) {
            QMessageBox::warning(m_window, tr("Nach Updates suchen"),
                                 tr("Die Suche nach Updates ist fehlgeschlagen: %1").arg(outcome.errorText));
        }
        return;
    }
}
