#include "app/gui/MainWindow.h"
#include "archive/AppPreferences.h"
#include "archive/PersistenceController.h"

#include <QApplication>
#include <QLibraryInfo>
#include <QMessageBox>
#include <QTranslator>

namespace {

void installTranslators(QApplication &app)
{
    if (AppPreferences::interfaceLanguage() != QLatin1String("en"))
        return;
    auto *own = new QTranslator(&app);
    if (own->load(QStringLiteral(":/i18n/odeleaf_en.qm")))
        QApplication::installTranslator(own);
    auto *qt = new QTranslator(&app);
    if (qt->load(QStringLiteral("qtbase_en"), QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QApplication::installTranslator(qt);
}

} // namespace

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("OdeLeaf"));
    QApplication::setApplicationDisplayName(QStringLiteral("OdeLeaf"));
    QApplication::setApplicationVersion(QStringLiteral(ODELEAF_VERSION));
    QApplication::setDesktopFileName(QStringLiteral("odeleaf"));
    installTranslators(app);

    // The store opens before the first window; a store that cannot be read ends the
    // program without touching the file.
    if (auto opened = PersistenceController::openShared(); !opened) {
        QMessageBox::critical(nullptr, QStringLiteral("OdeLeaf"), opened.errorMessage());
        return 1;
    }
    MainWindow window(PersistenceController::shared().viewContext());
    window.show();
    return QApplication::exec();
}
