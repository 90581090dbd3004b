#include "app/gui/PrivacyNoticeDialog.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QVBoxLayout>

PrivacyNoticeDialog::PrivacyNoticeDialog(bool checksForUpdates, QWidget *parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("privacyDialog"));
    setWindowTitle(tr("Datenschutzhinweise"));
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(28, 22, 28, 16);
    layout->setSpacing(10);

    auto *heading = new QLabel(tr("Datenschutzhinweise"), this);
    heading->setObjectName(QStringLiteral("dialogTitle"));
    layout->addWidget(heading);

    const QStringList paragraphs = {
        tr("Deine Gedichte, Importe, Exporte und Sicherungen bleiben auf deinem Computer. OdeLeaf speichert alles "
           "im eigenen Datenordner und in den Ordnern, die du selbst auswählst; es gibt kein Konto und keine "
           "Cloud-Synchronisierung."),
        checksForUpdates
            ? tr("Die Suche nach Updates lädt nur die Liste der verfügbaren Versionen herunter. Dabei werden keine "
                 "Gedichte, Titel, Notizen oder anderen Inhalte deines Archivs übertragen.")
            : tr("Diese Ausgabe von OdeLeaf sucht nicht selbst nach Updates und verbindet sich dafür mit keinem "
                 "Server; neue Versionen kommen über die Paketverwaltung deines Systems."),
        tr("Reimseiten öffnest du selbst im Browser; dabei erhält die gewählte Website nur das Wort, das du "
           "nachschlägst."),
        tr("Feedback verschickst du mit deinem eigenen E-Mail-Programm. OdeLeaf sendet nichts von sich aus."),
    };
    for (const QString &paragraph : paragraphs) {
        auto *label = new QLabel(paragraph, this);
        label->setObjectName(QStringLiteral("privacyParagraph"));
        label->setWordWrap(true);
        layout->addWidget(label);
    }
    layout->addSpacing(6);
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    layout->addWidget(buttons);
    resize(520, sizeHint().height());
}
