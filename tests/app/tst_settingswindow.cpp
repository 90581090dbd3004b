#include "app/UpdateManager.h"
#include "app/gui/MainWindow.h"
#include "app/gui/PoemDetailView.h"
#include "app/gui/SettingsWindow.h"
#include "app/gui/WheelFocusGuard.h"
#include "archive/AppPreferences.h"
#include "archive/ApplicationSupport.h"
#include "archive/ArchiveContext.h"
#include "archive/PersistenceController.h"
#include "archive/PoemFactory.h"
#include "editor/RhymeProvider.h"
#include "editor/gui/PoemEditorPane.h"
#include "editor/gui/RichPoemTextView.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFontDatabase>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QSignalSpy>
#include <QSlider>
#include <QSpinBox>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QWheelEvent>

class SettingsWindowTest : public QObject {
    Q_OBJECT

private:
    QTemporaryDir m_dir;
    std::unique_ptr<PersistenceController> m_store;
    QDateTime m_created = QDateTime::currentDateTimeUtc().addDays(-2);

    ArchiveContext &context() { return m_store->viewContext(); }

    PoemPtr poemIn(const QString &category)
    {
        PoemPtr poem = PoemFactory::makeNewPoem(context(), m_created);
        poem->setCategory(category);
        if (!context().save())
            qWarning("could not store the sample poem");
        return poem;
    }

    template <typename T> static T *child(const QWidget &window, const QString &name)
    {
        T *found = window.findChild<T *>(name);
        if (!found)
            qWarning("no child %s", qPrintable(name));
        return found;
    }

    static QList<QWidget *> categoryRows(const SettingsWindow &window)
    {
        return window.findChildren<QWidget *>(QStringLiteral("categoryRow"));
    }

    static QStringList sectionTitles(const SettingsWindow &window)
    {
        QStringList titles;
        for (const QLabel *label : window.findChildren<QLabel *>(QStringLiteral("settingsSection")))
            titles.append(label->text());
        return titles;
    }

    // The text of the privacy notice that "Details anzeigen" opens.
    static QString privacyNoticeOf(SettingsWindow &window)
    {
        QString text;
        QTimer::singleShot(0, &window, [&text] {
            QWidget *notice = QApplication::activeModalWidget();
            if (!notice)
                return;
            for (const QLabel *label : notice->findChildren<QLabel *>(QStringLiteral("privacyParagraph")))
                text += label->text() + QLatin1Char('\n');
            notice->close();
        });
        child<QPushButton>(window, QStringLiteral("privacyDetailsButton"))->click();
        return text;
    }

private Q_SLOTS:
    void initTestCase() { ApplicationSupport::setDirectory(m_dir.path()); }

    void init()
    {
        QFile::remove(ApplicationSupport::preferencesPath());
        m_store = PersistenceController::inMemory();
    }

    void cleanup() { m_store.reset(); }

    void sectionsComeInTheirOrder()
    {
        SettingsWindow window(context(), nullptr);
        QCOMPARE(window.windowTitle(), QStringLiteral("Einstellungen"));
        QCOMPARE(sectionTitles(window), (QStringList{"Schreiben", "Kategorien", "Reime", "Sicherung", "Ordner",
                                                     "Aktualisierungen", "Sprache", "Datenschutzhinweis"}));
        window.show();
        QVERIFY(child<QLabel>(window, QStringLiteral("noCategoriesLabel"))->isVisible());
        QCOMPARE(child<QLabel>(window, QStringLiteral("noCategoriesLabel"))->text(),
                 QStringLiteral("Noch keine Kategorien festgelegt."));
        QVERIFY(!child<QLabel>(window, QStringLiteral("languageRestartNote"))->isVisible());
    }

    void categoriesAreEditedWithTheirPoems()
    {
        PoemPtr exact = poemIn(QStringLiteral("Lyrik"));
        PoemPtr otherCase = poemIn(QStringLiteral("lyrik"));
        PoemPtr unrelated = poemIn(QStringLiteral("Prosa"));
        QVERIFY(AppPreferences::setPoemCategories({QStringLiteral("Lyrik")}).ok());
        SettingsWindow window(context(), nullptr);
        QSignalSpy changed(&window, &SettingsWindow::categoriesChanged);
        window.show();
        QCOMPARE(categoryRows(window).size(), 1);
        QVERIFY(!child<QLabel>(window, QStringLiteral("noCategoriesLabel"))->isVisible());

        // Blank names and names already there in another spelling change nothing.
        auto *field = child<QLineEdit>(window, QStringLiteral("newCategoryField"));
        auto *add = child<QPushButton>(window, QStringLiteral("addCategoryButton"));
        QTest::keyClicks(field, QStringLiteral("   "));
        QVERIFY(!add->isEnabled());
        QTest::keyClick(field, Qt::Key_Return);
        field->setText(QStringLiteral("LYRIK"));
        add->click();
        QCOMPARE(AppPreferences::poemCategories(), QStringList{QStringLiteral("Lyrik")});
        QCOMPARE(field->text(), QStringLiteral("LYRIK"));
        QVERIFY(changed.isEmpty());
        field->setText(QStringLiteral(" Natur "));
        add->click();
        QCOMPARE(AppPreferences::poemCategories(), (QStringList{QStringLiteral("Lyrik"), QStringLiteral("Natur")}));
        QVERIFY(field->text().isEmpty());
        QCOMPARE(categoryRows(window).size(), 2);
        QCOMPARE(changed.size(), 1);

        // Renaming the list entry re-labels only the poems spelt exactly like it.
        QWidget *first = categoryRows(window).first();
        auto *name = first->findChild<QLineEdit *>(QStringLiteral("categoryNameField"));
        auto *rename = first->findChild<QPushButton *>(QStringLiteral("renameCategoryButton"));
        QVERIFY(!rename->isEnabled());
        name->selectAll();
        QTest::keyClicks(name, QStringLiteral("Gedichte"));
        QVERIFY(rename->isEnabled());
        rename->click();
        QTRY_COMPARE(AppPreferences::poemCategories(),
                     (QStringList{QStringLiteral("Gedichte"), QStringLiteral("Natur")}));
        QCOMPARE(*exact->category(), QStringLiteral("Gedichte"));
        QVERIFY(*exact->updatedAt() > m_created);
        QCOMPARE(*otherCase->category(), QStringLiteral("lyrik"));
        QCOMPARE(*otherCase->updatedAt(), m_created);
        QCOMPARE(categoryRows(window).first()->findChild<QLineEdit *>()->text(), QStringLiteral("Gedichte"));

        // Removing asks first when poems carry the name; they keep an empty category.
        QStringList asked;
        bool answer = false;
        window.confirmRemoval = [&asked, &answer](const QString &category, int count) {
            asked.append(QStringLiteral("%1:%2").arg(category).arg(count));
            return answer;
        };
        categoryRows(window).first()->findChild<QPushButton *>(QStringLiteral("removeCategoryButton"))->click();
        QTRY_COMPARE(asked, QStringList{QStringLiteral("Gedichte:1")});
        QCOMPARE(AppPreferences::poemCategories().size(), 2);
        answer = true;
        const QDateTime beforeRemoval = *exact->updatedAt();
        QTest::qWait(5);
        categoryRows(window).first()->findChild<QPushButton *>(QStringLiteral("removeCategoryButton"))->click();
        QTRY_COMPARE(AppPreferences::poemCategories(), QStringList{QStringLiteral("Natur")});
        QCOMPARE(exact->category(), std::optional<QString>(QString()));
        QVERIFY(*exact->updatedAt() > beforeRemoval);
        QCOMPARE(*unrelated->category(), QStringLiteral("Prosa"));
        QVERIFY(!context().hasChanges());

        // A name no poem carries goes without a question.
        categoryRows(window).first()->findChild<QPushButton *>(QStringLiteral("removeCategoryButton"))->click();
        QTRY_VERIFY(AppPreferences::poemCategories().isEmpty());
        QCOMPARE(asked.size(), 2);
        QCOMPARE(*unrelated->category(), QStringLiteral("Prosa"));
        QTRY_VERIFY(child<QLabel>(window, QStringLiteral("noCategoriesLabel"))->isVisible());
        // Enter in a field never closed the window on the way.
        QVERIFY(window.isVisible());
    }

    void preferencesAreStoredAtOnce()
    {
        SettingsWindow window(context(), nullptr);
        QSignalSpy fontChanged(&window, &SettingsWindow::editorFontChanged);
        auto *font = child<QComboBox>(window, QStringLiteral("editorFontPicker"));
        QCOMPARE(font->currentText(), QStringLiteral("Roboto"));
        const QString other = font->itemText(font->currentIndex() == 0 ? 1 : 0);
        font->setCurrentText(other);
        QCOMPARE(AppPreferences::editorFontName(), other);
        QCOMPARE(fontChanged.size(), 1);

        auto *author = child<QLineEdit>(window, QStringLiteral("footerAuthorField"));
        author->clear();
        QTest::keyClicks(author, QStringLiteral("Mascha Kaleko"));
        QTest::keyClicks(child<QLineEdit>(window, QStringLiteral("footerPlaceField")), QStringLiteral("Czernowitz"));
        QCOMPARE(AppPreferences::poemFooterAuthor(), QStringLiteral("Mascha Kaleko"));
        QCOMPARE(AppPreferences::poemFooterPlace(), QStringLiteral("Czernowitz"));

        child<QComboBox>(window, QStringLiteral("rhymeProviderPicker"))->setCurrentIndex(2);
        QCOMPARE(defaultRhymeProvider(), RhymeProvider::reimOMat);

        auto *daily = child<QCheckBox>(window, QStringLiteral("dailyBackupToggle"));
        QVERIFY(daily->isChecked());
        daily->click();
        QVERIFY(!AppPreferences::automaticDailyBackupEnabled());

        window.show();
        auto *language = child<QComboBox>(window, QStringLiteral("languagePicker"));
        QCOMPARE(language->currentText(), QStringLiteral("Systemsprache"));
        language->setCurrentIndex(language->findText(QStringLiteral("English")));
        QCOMPARE(AppPreferences::appLanguage(), AppLanguage::english);
        QCOMPARE(AppPreferences::interfaceLanguage(), QStringLiteral("en"));
        QVERIFY(child<QLabel>(window, QStringLiteral("languageRestartNote"))->isVisible());

        // A new window shows what was stored.
        SettingsWindow again(context(), nullptr);
        QCOMPARE(child<QComboBox>(again, QStringLiteral("editorFontPicker"))->currentText(), other);
        QCOMPARE(child<QComboBox>(again, QStringLiteral("languagePicker"))->currentText(), QStringLiteral("English"));
        QVERIFY(!child<QCheckBox>(again, QStringLiteral("dailyBackupToggle"))->isChecked());
    }

    // Scrolling over the settings with the wheel changes no control until it has the focus.
    // A preference that cannot be stored is said in the window, not dropped in silence.
    void preferencesThatCannotBeStoredAreShown()
    {
        SettingsWindow window(context(), nullptr);
        window.show();
        // A folder where the preference file belongs: every write of it fails.
        QVERIFY(QDir().mkdir(ApplicationSupport::preferencesPath()));
        auto *author = child<QLineEdit>(window, QStringLiteral("footerAuthorField"));
        auto *notStored = child<QLabel>(window, QStringLiteral("notStoredText"));
        QVERIFY(notStored->isHidden());
        QTest::keyClicks(author, QStringLiteral("Ida"));
        QVERIFY(!notStored->isHidden());
        QVERIFY2(notStored->text().startsWith(QStringLiteral("Die Einstellungen konnten nicht gespeichert werden: ")),
                 qPrintable(notStored->text()));
        QVERIFY(QDir().rmdir(ApplicationSupport::preferencesPath()));
        QTest::keyClicks(author, QStringLiteral("!"));
        QVERIFY(notStored->isHidden());
        QCOMPARE(AppPreferences::poemFooterAuthor(), author->text());
        QVERIFY(author->text().endsWith(QStringLiteral("Ida!")));
    }

    void theWheelChangesOnlyTheFocusedControl()
    {
        WheelFocusGuard guard;
        qApp->installEventFilter(&guard);
        SettingsWindow window(context(), nullptr);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        const auto turn = [](QWidget *control) {
            QWheelEvent wheel(QPointF(4, 4), control->mapToGlobal(QPointF(4, 4)), QPoint(), QPoint(0, -120),
                              Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
            QApplication::sendEvent(control, &wheel);
            return wheel.isAccepted();
        };
        const QList<QComboBox *> pickers = window.findChildren<QComboBox *>();
        QVERIFY(pickers.size() >= 3);
        for (QComboBox *picker : pickers) {
            QCOMPARE(picker->focusPolicy(), Qt::StrongFocus);
            const int before = picker->currentIndex();
            QVERIFY2(!turn(picker), qPrintable(picker->objectName()));
            QCOMPARE(picker->currentIndex(), before);
        }
        QCOMPARE(AppPreferences::appLanguage(), AppLanguage::system);
        QCOMPARE(AppPreferences::editorFontName(), QStringLiteral("Roboto"));

        auto *language = child<QComboBox>(window, QStringLiteral("languagePicker"));
        language->setFocus();
        QTRY_VERIFY(language->hasFocus());
        turn(language);
        QVERIFY(language->currentIndex() != 0);

        // A spin box or slider elsewhere follows the same rule; scroll bars always scroll.
        QWidget page;
        auto *spin = new QSpinBox(&page);
        auto *slider = new QSlider(&page);
        auto *bar = new QScrollBar(&page);
        bar->setRange(0, 100);
        page.show();
        turn(spin);
        QCOMPARE(spin->value(), 0);
        turn(slider);
        QCOMPARE(slider->value(), 0);
        QVERIFY(turn(bar));
        QVERIFY(bar->value() > 0);
        qApp->removeEventFilter(&guard);
    }

    void foldersAreChosenAndReset()
    {
        SettingsWindow window(context(), nullptr);
        const QString key = bookmarkKey(FolderKind::csv);
        auto *path = child<QLabel>(window, QStringLiteral("folderPath_") + key);
        auto *reset = child<QPushButton>(window, QStringLiteral("resetFolder_") + key);
        QCOMPARE(path->text(), QStringLiteral("Kein Ordner festgelegt"));
        QVERIFY(!reset->isEnabled());

        QTemporaryDir chosen;
        QList<FolderKind> asked;
        window.chooseFolder = [&](FolderKind kind, const QString &) {
            asked.append(kind);
            return asked.size() == 1 ? QString() : chosen.path();
        };
        child<QPushButton>(window, QStringLiteral("chooseFolder_") + key)->click();
        QCOMPARE(path->text(), QStringLiteral("Kein Ordner festgelegt"));
        child<QPushButton>(window, QStringLiteral("chooseFolder_") + key)->click();
        QCOMPARE(asked, (QList<FolderKind>{FolderKind::csv, FolderKind::csv}));
        QCOMPARE(AppPreferences::resolvedFolder(FolderKind::csv), std::optional<QString>(chosen.path()));
        QCOMPARE(path->toolTip(), chosen.path());
        QVERIFY(reset->isEnabled());
        QVERIFY(!AppPreferences::resolvedFolder(FolderKind::backup));

        reset->click();
        QVERIFY(!AppPreferences::resolvedFolder(FolderKind::csv));
        QCOMPARE(path->text(), QStringLiteral("Kein Ordner festgelegt"));
    }

    void updateSectionFollowsTheUpdater()
    {
        // Without a feed the package manager brings new versions: nothing to switch.
        UpdateManager withoutFeed(QUrl(), QVersionNumber(1, 0));
        QVERIFY(!withoutFeed.canCheckForUpdates());
        QVERIFY(!withoutFeed.checkInBackgroundIfDue());
        SettingsWindow packaged(context(), &withoutFeed);
        QVERIFY(!child<QCheckBox>(packaged, QStringLiteral("automaticUpdatesToggle"))->isEnabled());
        QVERIFY(!child<QPushButton>(packaged, QStringLiteral("checkUpdatesButton"))->isEnabled());
        QVERIFY(child<QLabel>(packaged, QStringLiteral("updateStatus"))->text().contains(u"Paketverwaltung"));
        SettingsWindow withoutManager(context(), nullptr);
        QVERIFY(child<QLabel>(withoutManager, QStringLiteral("updateStatus"))->text().contains(u"Paketverwaltung"));
        // The privacy notice it opens tells the same: no download of a version list.
        QVERIFY(!privacyNoticeOf(packaged).contains(u"Liste der verfügbaren Versionen"));
        QVERIFY(privacyNoticeOf(packaged).contains(u"Paketverwaltung"));

        UpdateManager updates(QUrl(QStringLiteral("http://127.0.0.1:9/feed.xml")), QVersionNumber(1, 0));
        SettingsWindow window(context(), &updates);
        auto *toggle = child<QCheckBox>(window, QStringLiteral("automaticUpdatesToggle"));
        auto *status = child<QLabel>(window, QStringLiteral("updateStatus"));
        QVERIFY(toggle->isEnabled());
        QVERIFY(toggle->isChecked());
        QCOMPARE(status->text(),
                 QStringLiteral("OdeLeaf sucht höchstens einmal täglich automatisch nach neuen Versionen."));
        QVERIFY(privacyNoticeOf(window).contains(u"Liste der verfügbaren Versionen"));
        toggle->click();
        QVERIFY(!updates.automaticallyChecksForUpdates());
        updates.setAutomaticallyChecksForUpdates(true);
        QVERIFY(toggle->isChecked());

        QVERIFY(
            AppPreferences::setLastUpdateCheckDate(QDateTime(QDate(2026, 11, 3), QTime(9, 30), Qt::LocalTime)).ok());
        UpdateManager checkedBefore(QUrl(QStringLiteral("http://127.0.0.1:9/feed.xml")), QVersionNumber(1, 0));
        SettingsWindow later(context(), &checkedBefore);
        QVERIFY(child<QLabel>(later, QStringLiteral("updateStatus"))->text().startsWith(u"Letzte Prüfung: "));
        QVERIFY(child<QLabel>(later, QStringLiteral("updateStatus"))->text().contains(u":30"));
    }

    void libraryWindowFollowsTheSettings()
    {
        PoemPtr poem = poemIn(QString());
        MainWindow window(context());
        QSignalSpy started(&window, &MainWindow::startUpFinished);
        window.show();
        QVERIFY(started.wait(5000));
        window.selectPoem(poem);

        QTest::keyClick(&window, Qt::Key_Comma, Qt::ControlModifier);
        SettingsWindow *settings = window.settingsWindow();
        QVERIFY(settings);
        QTRY_VERIFY(settings->isVisible());

        auto *field = child<QLineEdit>(*settings, QStringLiteral("newCategoryField"));
        field->setText(QStringLiteral("Sonette"));
        QTest::keyClick(field, Qt::Key_Return);
        QComboBox *combo = window.detailView()->categoryField();
        QVERIFY(combo->findText(QStringLiteral("Sonette")) >= 0);

        RichPoemTextView *editor = window.detailView()->editorPane()->textView();
        auto *font = child<QComboBox>(*settings, QStringLiteral("editorFontPicker"));
        QString other;
        for (int i = 0; i < font->count() && other.isEmpty(); ++i) {
            if (font->itemText(i) != editor->font().family() && QFontDatabase::hasFamily(font->itemText(i)))
                other = font->itemText(i);
        }
        QVERIFY(!other.isEmpty());
        font->setCurrentText(other);
        QCOMPARE(editor->font().family(), other);

        // A name typed in the detail pane joins the list and is offered from then on.
        settings->close();
        combo->setEditText(QStringLiteral("Balladen"));
        window.detailView()->commitPendingEdits();
        QCOMPARE(*poem->category(), QStringLiteral("Balladen"));
        QCOMPARE(AppPreferences::poemCategories(),
                 (QStringList{QStringLiteral("Sonette"), QStringLiteral("Balladen")}));
        QVERIFY(combo->findText(QStringLiteral("Balladen")) >= 0);
        window.showSettings();
        QTRY_COMPARE(settings->shownCategories().size(), 2);
        QCOMPARE(window.settingsWindow(), settings);
    }
};

QTEST_MAIN(SettingsWindowTest)
#include "tst_settingswindow.moc"
