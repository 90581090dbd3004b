#include "app/gui/AboutDialog.h"

#include "app/gui/AppIcon.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QLabel>
#include <QVBoxLayout>

AboutDialog::AboutDialog(QWidget *parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("aboutDialog"));
    setWindowTitle(tr("Über OdeLeaf"));
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(36, 28, 36, 18);
    layout->setSpacing(6);

    auto *icon = new QLabel(this);
    icon->setPixmap(AppIcon::icon().pixmap(72, 72));
    icon->setAlignment(Qt::AlignCenter);
    layout->addWidget(icon);
    layout->addSpacing(6);

    auto *name = new QLabel(QStringLiteral("OdeLeaf"), this);
    name->setObjectName(QStringLiteral("aboutName"));
    name->setAlignment(Qt::AlignCenter);
    layout->addWidget(name);

    auto *version = new QLabel(tr("Version %1").arg(QApplication::applicationVersion()), this);
    version->setObjectName(QStringLiteral("hintText"));
    version->setAlignment(Qt::AlignCenter);
    version->setTextInteractionFlags(Qt::TextSelectableByMouse);
    layout->addWidget(version);
    layout->addSpacing(10);

    auto *purpose = new QLabel(tr("Eine Schreib- und Verwaltungsapp für Gedichte."), this);
    purpose->setAlignment(Qt::AlignCenter);
    layout->addWidget(purpose);
    layout->addSpacing(14);

    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    layout->addWidget(buttons, 0, Qt::AlignCenter);
    setFixedSize(sizeHint().expandedTo(QSize(360, 0)));
}
