#include "archive/AppPreferences.h"
#include "archive/ApplicationSupport.h"
#include "archive/PersistenceController.h"
#include "archive/PoemEdit.h"
#include "archive/PoemFactory.h"
#include "import/DocumentBatchImporter.h"
#include "import/gui/FolderScanController.h"
#include "import/gui/ImportProposalTableModel.h"
#include "import/gui/ImportReviewWindow.h"
#include "import/gui/PoemPickerDialog.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QDir>
#include <QFile>
#include <QHeaderView>
#include <QIcon>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QPushButton>
#include <QSignalSpy>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

namespace {

QString addPoem(ArchiveContext &context, const QString &title)
{
    PoemPtr poem = PoemFactory::makeNewPoem(context, QDateTime::currentDateTimeUtc());
    PoemEdit::setTitle(*poem, title);
    return uuidText(*poem->id());
}

QStringList actionTexts(const QMenu *menu)
{
    QStringList texts;
    for (const QAction *action : menu->actions())
        texts.append(action->isSeparator() ? QStringLiteral("|") : action->text());
    return texts;
}

QAction *actionNamed(const QMenu *menu, const QString &text)
{
    for (QAction *action : menu->actions()) {
        if (action->text() == text)
            return action;
    }
    return nullptr;
}

} // namespace

class ImportReviewTest : public QObject {
    Q_OBJECT

private:
    QTemporaryDir m_dataDir;
    std::unique_ptr<PersistenceController> m_store;
    QString m_herbstlied, m_herbst, m_mond, m_abend;

    FolderScanOutcome scanOf(const QStringList &fileNames, bool imagesOnly = false)
    {
        QList<ScannedFile> files;
        for (const QString &name : fileNames)
            files.append({name, QStringLiteral("2021/") + name});
        FolderScanOutcome outcome;
        outcome.folder = m_dataDir.path();
        outcome.imagesOnly = imagesOnly;
        outcome.scannedFilesCount = int(files.size());
        const QList<PoemSnapshotEntry> poems = livePoems();
        outcome.proposals = imagesOnly ? DocumentBatchImporter::buildImageProposals(files, poems)
                                       : DocumentBatchImporter::buildProposals(files, poems, 5);
        return outcome;
    }

    QList<PoemSnapshotEntry> livePoems() const
    {
        QList<PoemSnapshotEntry> poems;
        for (const PoemPtr &poem : m_store->viewContext().fetch())
            poems.append({*poem->id(), poem->title().value_or(QString())});
        return poems;
    }

private Q_SLOTS:
    void initTestCase()
    {
        qRegisterMetaType<ImportReviewWindow *>();
        ApplicationSupport::setDirectory(m_dataDir.path());
        m_store = PersistenceController::inMemory();
        ArchiveContext &context = m_store->viewContext();
        m_herbstlied = addPoem(context, QStringLiteral("Herbstlied"));
        m_herbst = addPoem(context, QStringLiteral("Herbst am Meer"));
        m_mond = addPoem(context, QStringLiteral("Der Mond"));
        m_abend = addPoem(context, QStringLiteral("Abendstille"));
        QVERIFY(context.save());
    }

    void headerFilterAndDefaults()
    {
        const FolderScanOutcome scan =
            scanOf({QStringLiteral("Herbstlied.docx"), QStringLiteral("Mond.pdf"), QStringLiteral("Unbekannt.docx")});
        ImportReviewWindow review(m_store->viewContext(), scan);
        QCOMPARE(review.findChild<QLabel *>(QStringLiteral("reviewHeader"))->text(),
                 QStringLiteral("Scan: 3 | Vorschläge: 3"));
        QCOMPARE(review.filter(), ProposalFilter::needsMatch);
        QCOMPARE(review.visibleProposalIndices(), (QList<qsizetype>{1, 2}));
        review.setFilter(ProposalFilter::matched);
        QCOMPARE(review.visibleProposalIndices(), QList<qsizetype>{0});
        review.setFilter(ProposalFilter::lowConfidence);
        QCOMPARE(review.visibleProposalIndices(), (QList<qsizetype>{1, 2}));
        review.setFilter(ProposalFilter::all);
        QCOMPARE(review.visibleProposalIndices(), (QList<qsizetype>{0, 1, 2}));

        QCOMPARE(review.options(), ImportReviewOptions());
        QStringList boxes;
        for (const QCheckBox *box : review.findChildren<QCheckBox *>())
            boxes.append(box->text() + (box->isChecked() ? QStringLiteral(" [x]") : QStringLiteral(" [ ]")));
        QCOMPARE(boxes, (QStringList{"DOCX importieren [x]", "PDF importieren [ ]", "Nur wenn Gedichttext leer [x]",
                                     "DOCX zuerst, PDF nur noch wenn danach leer [x]"}));
        QStringList labels;
        for (const QLabel *label : review.findChildren<QLabel *>())
            labels.append(label->text());
        for (const char *text : {"PDF Mindestscore:", "PDF Margin:", "Timeout DOCX: 8s", "Timeout PDF: 15s",
                                 "PDF import: Score ≥ Mindestscore UND (best - zweitbest) ≥ Margin."})
            QVERIFY2(labels.contains(QString::fromUtf8(text)), text);
    }

    // A header click sorts; the file shows its subfolder; a poem chosen twice is pointed out.
    void headersSortAndAPoemChosenTwiceIsPointedOut()
    {
        const FolderScanOutcome scan =
            scanOf({QStringLiteral("Herbstlied.docx"), QStringLiteral("Mond.pdf"), QStringLiteral("Abendstille.docx")});
        ImportReviewWindow review(m_store->viewContext(), scan);
        review.setFilter(ProposalFilter::all);
        auto *table = review.findChild<QTableView *>();
        const auto column = [table](int column) {
            QStringList texts;
            for (int row = 0; row < table->model()->rowCount(); ++row)
                texts.append(table->model()->index(row, column).data().toString());
            return texts;
        };
        QCOMPARE(column(ImportProposalTableModel::fileColumn),
                 (QStringList{"2021/Herbstlied.docx", "2021/Mond.pdf", "2021/Abendstille.docx"}));
        table->horizontalHeader()->setSortIndicator(ImportProposalTableModel::fileColumn, Qt::AscendingOrder);
        QCOMPARE(column(ImportProposalTableModel::fileColumn),
                 (QStringList{"2021/Abendstille.docx", "2021/Herbstlied.docx", "2021/Mond.pdf"}));
        // Scores sort as numbers ("100 %" after "85 %").
        table->horizontalHeader()->setSortIndicator(ImportProposalTableModel::scoreColumn, Qt::DescendingOrder);
        QList<double> scores;
        for (int row = 0; row < table->model()->rowCount(); ++row)
            scores.append(table->model()
                              ->index(row, ImportProposalTableModel::scoreColumn)
                              .data(ImportProposalTableModel::sortRole)
                              .toDouble());
        QVERIFY(std::is_sorted(scores.rbegin(), scores.rend()));
        QCOMPARE(table->model()->index(0, ImportProposalTableModel::scoreColumn).data().toString(),
                 QStringLiteral("100 %"));

        auto *warning = review.findChild<QLabel *>(QStringLiteral("sharedChoiceWarning"));
        QVERIFY(warning->isHidden());
        review.choose(1, m_herbstlied);
        QVERIFY(!warning->isHidden());
        QCOMPARE(warning->text(), QStringLiteral("Ein Gedicht ist mehr als einer Datei zugeordnet; übernommen "
                                                 "wird nur ein Text."));
        for (const qsizetype shared : {0, 1}) {
            const QModelIndex cell = review.findChild<ImportProposalTableModel *>()->index(
                int(shared), ImportProposalTableModel::choiceColumn);
            QVERIFY(!cell.data(Qt::DecorationRole).value<QIcon>().isNull());
            QCOMPARE(cell.data(Qt::ToolTipRole).toString(), ImportProposalTableModel::sharedChoiceText());
        }
        review.choose(1, std::nullopt);
        QVERIFY(warning->isHidden());
    }

    void importButtonWaitsForTheImport()
    {
        ImportReviewWindow review(m_store->viewContext(), scanOf({QStringLiteral("Herbstlied.docx")}));
        QPushButton *import = nullptr;
        for (QPushButton *button : review.findChildren<QPushButton *>()) {
            if (button->text() == QLatin1String("Importieren"))
                import = button;
        }
        QVERIFY(import);
        QVERIFY(!import->isEnabled());
        QSignalSpy requested(&review, &ImportReviewWindow::importRequested);
        review.setImportAvailable(true);
        QVERIFY(import->isEnabled());
        import->click();
        QCOMPARE(requested.count(), 1);
        review.setImporting(true);
        QVERIFY(!import->isEnabled());
        // While the run goes on, the window offers cancel instead of close.
        QPushButton *cancel = nullptr;
        for (QPushButton *button : review.findChildren<QPushButton *>()) {
            if (button->text() == QLatin1String("Abbrechen"))
                cancel = button;
        }
        QVERIFY(cancel && !cancel->isHidden());
        QSignalSpy cancelled(&review, &ImportReviewWindow::cancelRequested);
        cancel->click();
        QCOMPARE(cancelled.count(), 1);
        review.show();
        review.reject();
        QVERIFY2(review.isVisible(), "closing waits until the run has stopped");
        review.setImporting(false);
        QVERIFY(cancel->isHidden());
        review.reject();
        QVERIFY(!review.isVisible());
    }

    void choiceMenuSetsAndClearsTheChoice()
    {
        ImportReviewWindow review(m_store->viewContext(), scanOf({QStringLiteral("Herbst.docx")}));
        const ImportProposal &proposal = review.proposals().at(0);
        QVERIFY(!proposal.chosenPoemObjectURI);
        std::unique_ptr<QMenu> menu(review.choiceMenu(0, nullptr));
        QCOMPARE(actionTexts(menu.get()), (QStringList{"— keine Zuordnung —", "|", "Herbst am Meer — 37 %",
                                                       "Herbstlied — 24 %", "|", "Aus allen Gedichten wählen…"}));
        QVERIFY(actionNamed(menu.get(), QStringLiteral("— keine Zuordnung —"))->isChecked());

        actionNamed(menu.get(), QStringLiteral("Herbstlied — 24 %"))->trigger();
        QCOMPARE(review.proposals().at(0).chosenPoemObjectURI, m_herbstlied);
        // Choosing leaves the candidates and the suggestion alone.
        QCOMPARE(review.proposals().at(0).candidates, proposal.candidates);
        QCOMPARE(review.proposals().at(0).suggestedTitle, QStringLiteral("Herbst am Meer"));
        QVERIFY(review.visibleProposalIndices().isEmpty()); // no longer "Offen"
        review.setFilter(ProposalFilter::lowConfidence);
        QCOMPARE(review.visibleProposalIndices(), QList<qsizetype>{0});

        menu.reset(review.choiceMenu(0, nullptr));
        QVERIFY(actionNamed(menu.get(), QStringLiteral("Herbstlied — 24 %"))->isChecked());
        actionNamed(menu.get(), QStringLiteral("— keine Zuordnung —"))->trigger();
        QVERIFY(!review.proposals().at(0).chosenPoemObjectURI);
    }

    void pickingFromAllPoemsAssignsAnyPoem()
    {
        ImportReviewWindow review(m_store->viewContext(), scanOf({QStringLiteral("Zzz.docx")}));
        QVERIFY(review.proposals().at(0).candidates.isEmpty());
        std::unique_ptr<QMenu> menu(review.choiceMenu(0, nullptr));
        QVERIFY(actionTexts(menu.get()).contains(QStringLiteral("Keine Kandidaten gefunden")));

        QStringList shownTitles;
        QTimer::singleShot(0, this, [&] {
            auto *picker = qobject_cast<PoemPickerDialog *>(QApplication::activeModalWidget());
            QVERIFY(picker);
            QCOMPARE(picker->windowTitle(), QStringLiteral("Gedicht auswählen"));
            QCOMPARE(review.activeProposalIndex(), qsizetype(0));
            picker->setSearchText(QStringLiteral("MOND"));
            const auto *list = picker->findChild<QListWidget *>();
            for (int row = 0; row < list->count(); ++row) {
                if (!list->item(row)->isHidden())
                    shownTitles.append(list->item(row)->text());
            }
            picker->accept();
        });
        QVERIFY(review.pickFromAllPoems(0));
        QCOMPARE(shownTitles, QStringList{QStringLiteral("Der Mond")});
        QCOMPARE(review.proposals().at(0).chosenPoemObjectURI, m_mond);
        QVERIFY(!review.activeProposalIndex());

        // A chosen poem outside the candidates is named from the archive in the menu.
        menu.reset(review.choiceMenu(0, nullptr));
        QAction *current = actionNamed(menu.get(), QStringLiteral("Der Mond"));
        QVERIFY(current && current->isChecked());

        QTimer::singleShot(0, this, [] { QApplication::activeModalWidget()->close(); });
        QVERIFY(!review.pickFromAllPoems(0));
        QCOMPARE(review.proposals().at(0).chosenPoemObjectURI, m_mond);
    }

    void imageReviewHasNoTextOptions()
    {
        ImportReviewWindow review(m_store->viewContext(), scanOf({QStringLiteral("Mond.png")}, true));
        QVERIFY(review.findChildren<QCheckBox *>().isEmpty());
        QCOMPARE(review.windowTitle(), QStringLiteral("Bildimport prüfen"));
    }

    void controllerScansInTheBackgroundAndOpensTheReview()
    {
        QTemporaryDir folder;
        QVERIFY(QFile(folder.filePath(QStringLiteral("Abendstille.docx"))).open(QIODevice::WriteOnly));
        QVERIFY(QFile(folder.filePath(QStringLiteral("Mond.pdf"))).open(QIODevice::WriteOnly));
        QWidget window;
        FolderScanController controller(m_store->viewContext(), &window);
        QCOMPARE(controller.textScanAction()->text(), QStringLiteral("Ordner scan"));
        QSignalSpy statuses(&controller, &FolderScanController::statusChanged);
        QSignalSpy busy(&controller, &FolderScanController::busyChanged);
        QSignalSpy opened(&controller, &FolderScanController::reviewOpened);

        controller.startFolderScan(folder.path(), false);
        QVERIFY(controller.isScanning());
        QVERIFY(!controller.textScanAction()->isEnabled());
        QVERIFY(opened.wait(10000));
        QVERIFY(!controller.isScanning());
        QVERIFY(controller.imageScanAction()->isEnabled());
        QCOMPARE(busy.count(), 2);
        QCOMPARE(busy.at(0).at(0).toBool(), true);
        QCOMPARE(busy.at(1).at(0).toBool(), false);

        QStringList texts;
        for (const QList<QVariant> &status : std::as_const(statuses))
            texts.append(status.at(0).toString());
        QCOMPARE(texts.size(), 7); // the last summary is reported by the worker and again on finishing
        QCOMPARE(texts.mid(0, 3), (QStringList{"Ordner wird gescannt…", "Snapshot der Gedichte…", "Dateien sammeln…"}));
        QVERIFY(texts.last().startsWith(QStringLiteral("Scan: 2 | Proposals: 2 | Scan ")));

        ImportReviewWindow *review = controller.review();
        QVERIFY(review && review->isVisible());
        QCOMPARE(review->proposals().size(), 2);
        QCOMPARE(AppPreferences::resolvedFolder(FolderKind::documentImport), QDir(folder.path()).absolutePath());
        review->close();
    }
};

QTEST_MAIN(ImportReviewTest)
#include "tst_importreview.moc"
