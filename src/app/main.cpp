#include "app/ProgramFiles.h"
#include "app/UpdateManager.h"
#include "app/gui/AppIcon.h"
#include "app/gui/ArchiveOperations.h"
#include "app/gui/MainWindow.h"
#include "app/gui/ScreenFitGuard.h"
#include "app/gui/ThemeIcon.h"
#include "app/gui/WheelFocusGuard.h"
#include "archive/AppPreferences.h"
#include "archive/PersistenceController.h"
#include "backup/TemporaryLeftovers.h"

#include <QApplication>
#include <QIcon>
#include <QLibraryInfo>
#include <QLocale>
#include <QMessageBox>
#include <QTranslator>

namespace {

// Dates and numbers in the interface's language; the system's own region where it speaks
// that language (English in Britain writes its dates the British way).
QLocale interfaceLocale(const QString &language)
{
    const QLocale::Language wanted = language == QLatin1String("en") ? QLocale::English : QLocale::German;
    const QLocale system = QLocale::system();
    if (system.language() == wanted)
        return system;
    return wanted == QLocale::English ? QLocale(QLocale::English, QLocale::UnitedStates)
                                      : QLocale(QLocale::German, QLocale::Germany);
}

void installTranslators(QApplication &app)
{
    const QString language = AppPreferences::interfaceLanguage();
    QLocale::setDefault(interfaceLocale(language));
    // Qt's own buttons and dialogs (OK, Schließen, the file dialogs) speak the same language.
    auto *qt = new QTranslator(&app);
    if (qt->load(QStringLiteral("qtbase_") + language, QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QApplication::installTranslator(qt);
    if (language != QLatin1String("en"))
        return;
    auto *own = new QTranslator(&app);
    if (own->load(QStringLiteral("odeleaf_en"), ProgramFiles::translationsDirectory()))
        QApplication::installTranslator(own);
}

} // namespace

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("OdeLeaf"));
    QApplication::setApplicationDisplayName(QStringLiteral("OdeLeaf"));
    QApplication::setApplicationVersion(QStringLiteral(ODELEAF_VERSION));
    QApplication::setDesktopFileName(QStringLiteral(ODELEAF_APP_ID));
    QApplication::setWindowIcon(AppIcon::icon());
    ThemeIcon::useDesktopTheme();
    installTranslators(app);
    app.installEventFilter(new WheelFocusGuard(&app));
    app.installEventFilter(new ScreenFitGuard(&app));

    // The store opens before the first window; a store that cannot be read ends the
    // program without touching the file.
    if (auto opened = PersistenceController::openShared(); !opened) {
        QMessageBox::critical(nullptr, QStringLiteral("OdeLeaf"), opened.errorMessage());
        return 1;
    }
    TemporaryLeftovers::removeFromKnownFolders();
    UpdateManager updates;
    MainWindow window(PersistenceController::shared().viewContext());
    window.setUpdateManager(&updates);
    new ArchiveOperations(window);
    window.show();
    // The updater starts with the program; its check runs in the background.
    updates.start();
    return QApplication::exec();
}
