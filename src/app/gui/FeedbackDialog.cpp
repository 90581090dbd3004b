#include "app/gui/FeedbackDialog.h"

#include <QApplication>
#include <QClipboard>
#include <QDesktopServices>
#include <QDialogButtonBox>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSysInfo>
#include <QUrl>
#include <QVBoxLayout>

#ifndef ODELEAF_SUPPORT_MAIL
#define ODELEAF_SUPPORT_MAIL ""
#endif

FeedbackDialog::FeedbackDialog(QWidget *parent)
    : QDialog(parent), m_text(new QPlainTextEdit(preparedText(), this)), m_confirmation(new QLabel(this))
{
    setObjectName(QStringLiteral("feedbackDialog"));
    setWindowTitle(tr("Feedback senden"));
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(24, 20, 24, 16);
    layout->setSpacing(8);

    auto *heading = new QLabel(tr("Feedback senden"), this);
    heading->setObjectName(QStringLiteral("dialogTitle"));
    layout->addWidget(heading);
    const bool hasAddress = !supportAddress().isEmpty();
    auto *intro = new QLabel(hasAddress ? tr("Ergänze den vorbereiteten Text und schicke ihn mit deinem "
                                             "E-Mail-Programm an %1. Er enthält Version und System, aber keine "
                                             "Gedichte.")
                                              .arg(supportAddress())
                                        : tr("Ergänze den vorbereiteten Text und kopiere ihn, um ihn dort "
                                             "weiterzugeben, wo du OdeLeaf bezogen hast. Er enthält Version und "
                                             "System, aber keine Gedichte."),
                             this);
    intro->setWordWrap(true);
    intro->setTextInteractionFlags(Qt::TextSelectableByMouse);
    layout->addWidget(intro);

    m_text->setObjectName(QStringLiteral("feedbackText"));
    layout->addWidget(m_text, 1);
    m_confirmation->setObjectName(QStringLiteral("hintText"));
    layout->addWidget(m_confirmation);

    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    QPushButton *copy = buttons->addButton(tr("Text kopieren"), QDialogButtonBox::ActionRole);
    copy->setObjectName(QStringLiteral("copyFeedbackButton"));
    copy->setDefault(!hasAddress);
    connect(copy, &QPushButton::clicked, this, [this] {
        QApplication::clipboard()->setText(message());
        m_confirmation->setText(tr("Der Text liegt in der Zwischenablage."));
    });
    // Without an address of its own the program has no one to write to.
    if (hasAddress) {
        QPushButton *mail = buttons->addButton(tr("In E-Mail öffnen"), QDialogButtonBox::AcceptRole);
        mail->setObjectName(QStringLiteral("mailFeedbackButton"));
        mail->setDefault(true);
        connect(mail, &QPushButton::clicked, this, [this] {
            if (QDesktopServices::openUrl(mailUrl())) {
                accept();
                return;
            }
            QApplication::clipboard()->setText(message());
            m_confirmation->setText(tr("Kein E-Mail-Programm gefunden. Der Text liegt in der Zwischenablage; "
                                       "schicke ihn an %1.")
                                        .arg(supportAddress()));
        });
    }
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    layout->addWidget(buttons);
    resize(560, 460);
}

QString FeedbackDialog::supportAddress()
{
    return QStringLiteral(ODELEAF_SUPPORT_MAIL);
}

QString FeedbackDialog::subject()
{
    return tr("Feedback zu OdeLeaf %1").arg(QApplication::applicationVersion());
}

QString FeedbackDialog::message() const
{
    return m_text->toPlainText();
}

QUrl FeedbackDialog::mailUrl() const
{
    // Mail programs read line breaks in the body only as %0D%0A.
    QString body = message();
    body.replace(QLatin1Char('\n'), QStringLiteral("\r\n"));
    return QUrl::fromEncoded("mailto:" + supportAddress().toUtf8() + "?subject=" + QUrl::toPercentEncoding(subject()) +
                             "&body=" + QUrl::toPercentEncoding(body));
}

QString FeedbackDialog::preparedText()
{
    return tr("Hallo,\n\n"
              "mir ist in OdeLeaf Folgendes aufgefallen:\n\n\n"
              "So lässt es sich nachvollziehen:\n\n\n"
              "Das hätte ich erwartet:\n\n\n"
              "––\n"
              "OdeLeaf %1\n"
              "%2 (%3)\n"
              "Qt %4")
        .arg(QApplication::applicationVersion(), QSysInfo::prettyProductName(), QSysInfo::currentCpuArchitecture(),
             QString::fromLatin1(qVersion()));
}
