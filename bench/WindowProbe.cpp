// Opens an archive the way the program does, shows the main window and reports the time
// from the start of the process to the first shown window and the resident memory. With
// --shot it also saves a picture of a window state, to look at the window without a screen.
#include "SampleArchive.h"

#include "app/ProgramFiles.h"
#include "app/gui/AboutDialog.h"
#include "app/gui/AppIcon.h"
#include "app/gui/ArchiveOperations.h"
#include "app/gui/FeedbackDialog.h"
#include "app/gui/LibrarySidebar.h"
#include "app/gui/MainWindow.h"
#include "app/gui/PoemDetailView.h"
#include "app/gui/PoemListPane.h"
#include "app/gui/PrivacyNoticeDialog.h"
#include "app/gui/ThemeIcon.h"
#include "app/gui/TrashDialog.h"
#include "archive/AppPreferences.h"
#include "archive/ApplicationSupport.h"
#include "archive/PersistenceController.h"
#include "editor/gui/PoemEditorActions.h"
#include "editor/gui/PoemEditorPane.h"
#include "editor/gui/RichPoemTextView.h"
#include "export/PoemExport.h"
#include "export/gui/PoemExportActions.h"
#include "export/gui/PrintPreviewWindow.h"
#include "import/gui/CSVImportActions.h"

#include <QApplication>
#include <QComboBox>
#include <QCommandLineParser>
#include <QElapsedTimer>
#include <QFile>
#include <QHash>
#include <QIcon>
#include <QKeyEvent>
#include <QLibraryInfo>
#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>
#include <QTimer>
#include <QTranslator>

#include <algorithm>
#include <cstdio>
#include <unistd.h>
#include <vector>

namespace {

// Milliseconds since the kernel started this process.
double processAgeMs()
{
    QFile stat(QStringLiteral("/proc/self/stat"));
    QFile uptime(QStringLiteral("/proc/uptime"));
    if (!stat.open(QIODevice::ReadOnly) || !uptime.open(QIODevice::ReadOnly))
        return -1;
    const QByteArray statLine = stat.readAll();
    const QList<QByteArray> fields = statLine.mid(statLine.lastIndexOf(')') + 2).split(' ');
    const double startTicks = fields.value(19).toDouble();
    const double upSeconds = uptime.readAll().split(' ').value(0).toDouble();
    return (upSeconds - startTicks / double(sysconf(_SC_CLK_TCK))) * 1000.0;
}

// Resident memory, with the part that is the program's own heap and stacks (anonymous)
// and the part that maps the program's and libraries' files.
QString residentMemory()
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return {};
    QHash<QByteArray, QByteArray> fields;
    for (const QByteArray &line : status.readAll().split('\n')) {
        const qsizetype colon = line.indexOf(':');
        if (colon > 0)
            fields.insert(line.left(colon), line.mid(colon + 1).trimmed());
    }
    return QStringLiteral("%1 (anonymous %2, files %3)")
        .arg(QString::fromLatin1(fields.value("VmRSS")), QString::fromLatin1(fields.value("RssAnon")),
             QString::fromLatin1(fields.value("RssFile")));
}

// Types into a field as a poet would and reports the time each keystroke takes to be
// saved and shown in the list (median and 99th percentile over many keystrokes).
void measureKeystrokes(QWidget *field, const char *what)
{
    const QString typed = QStringLiteral("Abendstern über den stillen Feldern, ein Lied im Wind ");
    field->setFocus();
    std::vector<double> times;
    for (int round = 0; round < 3; ++round) {
        for (const QChar c : typed) {
            QElapsedTimer timer;
            timer.start();
            QKeyEvent press(QEvent::KeyPress, 0, Qt::NoModifier, QString(c));
            QApplication::sendEvent(field, &press);
            QApplication::processEvents();
            times.push_back(double(timer.nsecsElapsed()) / 1e6);
        }
    }
    std::sort(times.begin(), times.end());
    std::printf("keystroke in %s: median %.2f ms, 99th percentile %.2f ms (%zu keystrokes)\n", what,
                times[times.size() / 2], times[std::min(times.size() - 1, times.size() * 99 / 100)], times.size());
}

// Types into the text and the title of a poem in the middle of the list, then into a
// title while the list is sorted by title, where every keystroke moves the row.
void measureTyping(MainWindow &window)
{
    window.selectPoem(window.library().poemAt(window.library().rowCount() / 2));
    measureKeystrokes(window.detailView()->editorPane()->textView(), "the poem text");
    measureKeystrokes(window.detailView()->titleField(), "the title");
    Q_EMIT window.listPane()->sortModeChanged(PoemSortMode::title);
    window.selectPoem(window.library().poemAt(window.library().rowCount() / 3));
    measureKeystrokes(window.detailView()->titleField(), "the title, sorted by title");
    Q_EMIT window.listPane()->sortModeChanged(PoemSortMode::recentlyChanged);

    // Search keystrokes in "Alles": typing a word and taking it back again.
    auto *mode = window.listPane()->findChild<QComboBox *>(QStringLiteral("searchModePicker"));
    mode->setCurrentIndex(mode->findText(displayTitle(SearchMode::all)));
    Q_EMIT mode->activated(mode->currentIndex());
    QLineEdit *search = window.listPane()->searchField();
    search->setFocus();
    std::vector<double> times;
    for (int round = 0; round < 5; ++round) {
        for (const int key : {int(Qt::Key_A), int(Qt::Key_C), int(Qt::Key_H), int(Qt::Key_Backspace),
                              int(Qt::Key_Backspace), int(Qt::Key_Backspace)}) {
            QElapsedTimer timer;
            timer.start();
            const QString text = key == Qt::Key_Backspace ? QString() : QString(QChar(key).toLower());
            QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier, text);
            QApplication::sendEvent(search, &press);
            QApplication::processEvents();
            times.push_back(double(timer.nsecsElapsed()) / 1e6);
        }
    }
    std::sort(times.begin(), times.end());
    std::printf("search keystroke in \"Alles\": median %.2f ms, 99th percentile %.2f ms (%zu keystrokes)\n",
                times[times.size() / 2], times[std::min(times.size() - 1, times.size() * 99 / 100)], times.size());
}

} // namespace

int main(int argc, char **argv)
{
    QElapsedTimer sinceMain;
    sinceMain.start();
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("OdeLeaf"));
    QApplication::setApplicationVersion(QStringLiteral(ODELEAF_VERSION));
    QApplication::setWindowIcon(AppIcon::icon());
    ThemeIcon::useDesktopTheme();

    QCommandLineParser parser;
    parser.addOption({QStringLiteral("data-dir"), QStringLiteral("archive folder"), QStringLiteral("DIR")});
    parser.addOption({QStringLiteral("shot"), QStringLiteral("save a PNG of the state"), QStringLiteral("FILE")});
    parser.addOption({QStringLiteral("state"), QStringLiteral("archive, search, trash, writer, scope, find"),
                      QStringLiteral("STATE"), QStringLiteral("archive")});
    parser.addOption({QStringLiteral("search"), QStringLiteral("search text"), QStringLiteral("TEXT")});
    parser.addOption(
        {QStringLiteral("select"), QStringLiteral("row to select"), QStringLiteral("ROW"), QStringLiteral("0")});
    parser.addOption({QStringLiteral("size"), QStringLiteral("window size WxH"), QStringLiteral("SIZE"),
                      QStringLiteral("1280x800")});
    parser.addOption(
        {QStringLiteral("fill"), QStringLiteral("first add N sample poems and stop"), QStringLiteral("N")});
    parser.addOption(
        {QStringLiteral("csv"), QStringLiteral("import a poem list before the picture"), QStringLiteral("FILE")});
    parser.process(app);
    if (parser.isSet(QStringLiteral("data-dir")))
        ApplicationSupport::setDirectory(parser.value(QStringLiteral("data-dir")));

    // The language chosen in the archive's preferences, as the program itself picks it.
    const QString language = AppPreferences::interfaceLanguage();
    QTranslator qtTexts;
    if (qtTexts.load(QStringLiteral("qtbase_") + language, QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QApplication::installTranslator(&qtTexts);
    QTranslator ownTexts;
    if (language == QLatin1String("en") &&
        ownTexts.load(QStringLiteral("odeleaf_en"), ProgramFiles::translationsDirectory()))
        QApplication::installTranslator(&ownTexts);

    if (auto opened = PersistenceController::openShared(); !opened) {
        std::fprintf(stderr, "%s\n", qPrintable(opened.errorMessage()));
        return 1;
    }
    if (parser.isSet(QStringLiteral("fill"))) {
        const auto filled = fillSampleArchive(PersistenceController::shared().viewContext(),
                                              parser.value(QStringLiteral("fill")).toInt());
        if (!filled)
            std::fprintf(stderr, "%s\n", qPrintable(filled.errorMessage()));
        return filled ? 0 : 1;
    }
    MainWindow window(PersistenceController::shared().viewContext());
    const QStringList size = parser.value(QStringLiteral("size")).split(QLatin1Char('x'));
    window.resize(size.value(0).toInt(), size.value(1).toInt());
    if (parser.isSet(QStringLiteral("csv")))
        new ArchiveOperations(window);
    QObject::connect(&window, &MainWindow::startUpFinished, &window, [&] {
        std::printf("start-to-window: %.0f ms since main(), %.0f ms since process start\n", double(sinceMain.elapsed()),
                    processAgeMs());
        std::printf("resident memory: %s\n", qPrintable(residentMemory()));
        std::fflush(stdout);
        if (!parser.isSet(QStringLiteral("shot")))
            return; // on when the texts are prepared for searching

        const QString state = parser.value(QStringLiteral("state"));
        if (parser.isSet(QStringLiteral("csv")))
            window.findChild<CSVImportActions *>()->importFile(parser.value(QStringLiteral("csv")));
        if (parser.isSet(QStringLiteral("search")))
            window.listPane()->searchField()->setText(parser.value(QStringLiteral("search")));
        const int row = parser.value(QStringLiteral("select")).toInt();
        if (row >= 0 && row < window.library().rowCount())
            window.selectPoem(window.library().poemAt(row));
        if (state == QLatin1String("scope"))
            window.sidebar()->selectScope(SidebarScope::missingText);
        if (state == QLatin1String("writer"))
            window.setWriterMode(true);
        if (state == QLatin1String("find"))
            window.detailView()->editorPane()->actions()->find->trigger();
        QTimer::singleShot(200, &window, [&window, &parser, state] {
            QPixmap picture = window.grab();
            std::unique_ptr<QDialog> dialog;
            if (state == QLatin1String("trash"))
                dialog = std::make_unique<TrashDialog>(window.context(), Trash::StatusCallback{}, &window);
            else if (state == QLatin1String("about"))
                dialog = std::make_unique<AboutDialog>(&window);
            else if (state == QLatin1String("privacy"))
                dialog = std::make_unique<PrivacyNoticeDialog>(&window);
            else if (state == QLatin1String("feedback"))
                dialog = std::make_unique<FeedbackDialog>(&window);
            else if (state == QLatin1String("preview") && window.detail()->poem()) {
                if (const auto pdf = PoemExport::temporaryPdf(*window.detail()->poem()))
                    dialog = std::make_unique<PrintPreviewWindow>(*pdf, QStringLiteral("Vorschau"), &window);
            }
            if (state == QLatin1String("export")) {
                QMenu *menu = window.detail()->exportActions()->exportMenu();
                menu->popup(window.mapToGlobal(QPoint(400, 300)));
                QApplication::processEvents();
                picture = menu->grab();
            }
            if (dialog) {
                dialog->show();
                // The PDF view renders its pages in the background.
                QElapsedTimer settle;
                settle.start();
                while (settle.elapsed() < (state == QLatin1String("preview") ? 1500 : 0))
                    QApplication::processEvents(QEventLoop::AllEvents, 50);
                QApplication::processEvents();
                picture = dialog->grab();
            }
            picture.save(parser.value(QStringLiteral("shot")));
            QApplication::quit();
        });
    });
    QObject::connect(&window, &MainWindow::searchPrepared, &window, [&] {
        std::printf("search prepared: %.0f ms since process start, resident memory %s\n", processAgeMs(),
                    qPrintable(residentMemory()));
        std::fflush(stdout);
        if (parser.value(QStringLiteral("state")) == QLatin1String("typing"))
            measureTyping(window);
        if (!parser.isSet(QStringLiteral("shot")))
            QApplication::quit();
    });
    window.show();
    return QApplication::exec();
}
