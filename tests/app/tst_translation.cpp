#include "analysis/DuplicateChecker.h"
#include "analysis/StatisticsReport.h"
#include "app/gui/ArchiveOperations.h"
#include "app/gui/MainWindow.h"
#include "archive/ApplicationSupport.h"
#include "archive/ArchiveContext.h"
#include "archive/PersistenceController.h"
#include "archive/PoemFactory.h"
#include "archive/PoemRow.h"
#include "archive/PoemVersions.h"
#include "archive/SidebarScope.h"
#include "backup/BackupStatus.h"
#include "import/DocxPackage.h"
#include "import/ExtractError.h"
#include "import/FolderScan.h"
#include "import/ImportReport.h"
#include "import/ImportReviewOptions.h"
#include "import/gui/ImportReportWindow.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAction>
#include <QComboBox>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QTranslator>
#include <QXmlStreamReader>

namespace {

struct Message {
    QString context;
    QString source;
    bool numerus = false;
    QStringList translations;
};

QList<Message> messagesOf(const QString &tsPath)
{
    QFile file(tsPath);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QList<Message> messages;
    QString context;
    QXmlStreamReader xml(&file);
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement)
            continue;
        const auto name = xml.name();
        if (name == QLatin1String("name")) {
            context = xml.readElementText();
        } else if (name == QLatin1String("message")) {
            messages.append(
                {context, {}, xml.attributes().value(QLatin1String("numerus")) == QLatin1String("yes"), {}});
        } else if (name == QLatin1String("source")) {
            messages.last().source = xml.readElementText();
        } else if (name == QLatin1String("translation") && !messages.last().numerus) {
            messages.last().translations.append(xml.readElementText());
        } else if (name == QLatin1String("numerusform")) {
            messages.last().translations.append(xml.readElementText());
        }
    }
    return xml.hasError() ? QList<Message>{} : messages;
}

QStringList placeholders(const QString &text)
{
    QStringList found;
    for (const QRegularExpressionMatch &match : QRegularExpression(QStringLiteral("%(\\d+|n)")).globalMatch(text))
        found.append(match.captured());
    found.sort();
    return found;
}

// Every text a user can read in a window: labels, buttons, fields, actions, menus, lists.
QStringList visibleTexts(QWidget &window)
{
    QStringList texts;
    for (const QLabel *label : window.findChildren<QLabel *>())
        texts << label->text() << label->toolTip();
    for (const QAbstractButton *button : window.findChildren<QAbstractButton *>())
        texts << button->text() << button->toolTip();
    for (const QLineEdit *field : window.findChildren<QLineEdit *>())
        texts << field->placeholderText() << field->toolTip();
    for (const QComboBox *box : window.findChildren<QComboBox *>()) {
        texts << box->toolTip();
        for (int row = 0; row < box->count(); ++row)
            texts << box->itemText(row);
    }
    for (const QAbstractItemView *view : window.findChildren<QAbstractItemView *>()) {
        const QAbstractItemModel *model = view->model();
        for (int row = 0; model && row < model->rowCount(); ++row)
            texts << model->index(row, 0).data().toString();
    }
    for (const QMenu *menu : window.findChildren<QMenu *>())
        texts << menu->title();
    for (const QAction *action : window.findChildren<QAction *>())
        texts << action->text() << action->toolTip() << action->statusTip();
    texts.removeAll(QString());
    return texts;
}

} // namespace

class TranslationTest : public QObject {
    Q_OBJECT

private:
    QTranslator m_english;
    QList<Message> m_messages;
    QTemporaryDir m_dir;

private Q_SLOTS:
    void initTestCase()
    {
        // The same compiled file, under the same resource path, that the program loads.
        QVERIFY(m_english.load(QStringLiteral(":/i18n/odeleaf_en.qm")));
        QVERIFY(QCoreApplication::installTranslator(&m_english));
        m_messages = messagesOf(QStringLiteral(ODELEAF_TS));
        QVERIFY2(m_messages.size() > 300, "the translation source could not be read");
        ApplicationSupport::setDirectory(m_dir.path());
    }

    void everyMessageIsTranslatedWithItsPlaceholders()
    {
        for (const Message &message : std::as_const(m_messages)) {
            const QByteArray context = message.context.toUtf8();
            const QByteArray source = message.source.toUtf8();
            const QList<int> counts = message.numerus ? QList<int>{1, 2} : QList<int>{-1};
            for (const int count : counts) {
                const QString english = m_english.translate(context, source, nullptr, count);
                const QByteArray where = context + " / " + source;
                QVERIFY2(!english.isEmpty(), "untranslated: " + where);
                QVERIFY2(placeholders(english) == placeholders(message.source), "placeholders differ: " + where);
                QVERIFY2(english.count(QLatin1Char('&')) == message.source.count(QLatin1Char('&')),
                         "menu shortcut differs: " + where);
            }
        }
    }

    void keyTexts_data()
    {
        QTest::addColumn<QString>("context");
        QTest::addColumn<QString>("german");
        QTest::addColumn<QString>("english");
        QTest::newRow("new poem") << "MainWindow"
                                  << "Neues Gedicht"
                                  << "New Poem";
        QTest::newRow("file menu") << "MainWindow"
                                   << "&Datei"
                                   << "&File";
        QTest::newRow("reveal") << "StatusPanel"
                                << "Im Dateimanager zeigen"
                                << "Show in File Manager";
        QTest::newRow("trash") << "TrashDialog"
                               << "Papierkorb"
                               << "Trash";
        QTest::newRow("backup failed") << "BackupStatus"
                                       << "Sicherung konnte nicht erstellt werden: %1"
                                       << "Backup could not be created: %1";
        QTest::newRow("version restored") << "PoemVersions"
                                          << "Fassung wiederhergestellt."
                                          << "Version restored.";
        QTest::newRow("restore a version") << "PoemVersionsPanel"
                                           << "Diese Fassung wiederherstellen"
                                           << "Restore This Version";
    }

    void keyTexts()
    {
        QFETCH(QString, context);
        QFETCH(QString, german);
        QFETCH(QString, english);
        QCOMPARE(m_english.translate(context.toUtf8(), german.toUtf8()), english);
        QCOMPARE(QCoreApplication::translate(context.toUtf8(), german.toUtf8()), english);
    }

    void countsUseTheSingularOnlyForOne()
    {
        const QString path = QStringLiteral("/home/poet/OdeLeaf-Backup-2026-11-14-2103.json");
        QCOMPARE(BackupStatus::backupCreated(1, path),
                 QStringLiteral("Backup created: 1 poem saved. File: OdeLeaf-Backup-2026-11-14-2103.json"));
        QCOMPARE(BackupStatus::backupCreated(2, path),
                 QStringLiteral("Backup created: 2 poems saved. File: OdeLeaf-Backup-2026-11-14-2103.json"));
        QCOMPARE(BackupStatus::backupCreated(0, path).left(29), QStringLiteral("Backup created: 0 poems saved"));
        QCOMPARE(QCoreApplication::translate("PoemPickerDialog", "%1 von %2 Gedicht"), QStringLiteral("%1 of %2 poem"));
        DuplicateCheckReport checked;
        checked.poemCount = 1;
        checked.similarPairs.resize(1);
        QCOMPARE(DuplicateChecker::summaryText(checked),
                 QStringLiteral("1 poem checked. 0 identical titles, 1 similar title found. Nothing was changed."));
        QCOMPARE(QCoreApplication::translate("PoemPickerDialog", "%1 von %2 Gedichten"),
                 QStringLiteral("%1 of %2 poems"));
        for (const int stanzas : {1, 3}) {
            QCOMPARE(QCoreApplication::translate("PoemVersionsPanel", "… %n unveränderte Strophen", nullptr, stanzas),
                     stanzas == 1 ? QStringLiteral("… 1 unchanged stanza") : QStringLiteral("… 3 unchanged stanzas"));
        }
    }

    // Texts made outside a widget reach the translation under the context lupdate saw.
    void textsOfPlainClassesAreTranslated()
    {
        QCOMPARE(ExtractError::failed(QStringLiteral("kaputt")).description(),
                 QStringLiteral("Extraction failed: kaputt"));
        QCOMPARE(ExtractError::unsupportedExtension(QStringLiteral("png")).description(),
                 QStringLiteral("Unsupported file format: png"));
        QCOMPARE(DocxPackage::open(m_dir.filePath(QStringLiteral("fehlt.docx"))).errorMessage(),
                 QStringLiteral("The file was not found."));
        QCOMPARE(FolderScan::scanningText(), QStringLiteral("Scanning folder…"));
        QCOMPARE(ImportReviewOptions::importDOCXLabel(), QStringLiteral("Import DOCX"));
        QCOMPARE(displayTitle(SidebarScope::missingText), QStringLiteral("Without Text"));
        QCOMPARE(PoemRow{}.displayTitle(), QStringLiteral("Untitled Poem"));
        // Reasons are kept as German keys and read in the interface language.
        PoemVersion restored;
        restored.reason = PoemVersions::restoreReason(3);
        QCOMPARE(restored.label(), QStringLiteral("before restoring version 3"));
        QCOMPARE(PoemVersion::reasonText(QStringLiteral("vor Wiederherstellung")), QStringLiteral("before restore"));
    }

    // A saved report keeps keys, shown in the language of the day; figures follow that language.
    void reportsAndFiguresFollowTheInterfaceLanguage()
    {
        const ImportReport report{
            QDateTime(QDate(2026, 11, 25), QTime(14, 33), Qt::LocalTime),
            ImportReport::textImportTitle(),
            QStringLiteral("Import fertig"),
            {{ImportReport::Status::skipped, "a.docx", "A", QStringLiteral("Datei ist leer (0 Byte).")},
             {ImportReport::Status::failed, "b.pdf", "B", QStringLiteral("Timeout nach 15s")},
             {ImportReport::Status::failed, "c.pdf", "C", QStringLiteral("kaputt")}}};
        QCOMPARE(report.title, QStringLiteral("Letzter Textimport"));
        ImportReportWindow window(report, QString());
        QCOMPARE(window.windowTitle(), QStringLiteral("Last Text Import"));
        QStringList reasons;
        for (int row = 0; row < window.itemTable()->rowCount(); ++row)
            reasons.append(window.itemTable()->item(row, 3)->text());
        QCOMPARE(reasons, (QStringList{"File is empty (0 bytes).", "Timeout after 15s", "kaputt"}));
        QStringList labels;
        for (const QLabel *label : window.findChildren<QLabel *>())
            labels.append(label->text());
        QVERIFY2(labels.contains(QStringLiteral("Last Text Import – 11/25/2026, 2:33 PM")),
                 qPrintable(labels.join('|')));

        const QLocale before;
        QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
        const QString percent = StatisticsReport::percentText(3.0 / 7.0);
        QLocale::setDefault(before);
        QCOMPARE(percent, QStringLiteral("42.9%"));
    }

    void libraryWindowShowsNoGermanText()
    {
        // Sources whose English differs; "Text" or "Status" read the same in both languages.
        QSet<QString> germanOnly;
        QSet<QString> english;
        for (const Message &message : std::as_const(m_messages)) {
            germanOnly.insert(message.source);
            for (const QString &translation : message.translations)
                english.insert(translation);
        }
        germanOnly.subtract(english);

        const auto store = PersistenceController::inMemory();
        PoemPtr poem = PoemFactory::makeNewPoem(store->viewContext(), QDateTime::currentDateTimeUtc());
        poem->setTitle(QStringLiteral("Evening Song"));
        poem->setText(QStringLiteral("The moon has risen"));
        QVERIFY(store->viewContext().save());
        MainWindow window(store->viewContext());
        new ArchiveOperations(window);
        QSignalSpy started(&window, &MainWindow::startUpFinished);
        window.show();
        QVERIFY(started.wait(5000));
        window.selectPoem(poem);

        const QStringList texts = visibleTexts(window);
        QVERIFY(texts.contains(QStringLiteral("New Poem")));
        for (const QString &text : texts) {
            QVERIFY2(!germanOnly.contains(text), qPrintable(text));
            QVERIFY2(!text.contains(QRegularExpression(QStringLiteral("[äöüÄÖÜß„]"))), qPrintable(text));
        }
        QCOMPARE(window.fileMenu()->title(), QStringLiteral("&File"));
        QCOMPARE(window.helpMenu()->title(), QStringLiteral("&Help"));
    }
};

QTEST_MAIN(TranslationTest)
#include "tst_translation.moc"
