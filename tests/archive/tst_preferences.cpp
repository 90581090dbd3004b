#include "archive/AppPreferences.h"
#include "archive/ApplicationSupport.h"
#include "archive/CategoryCatalog.h"
#include "archive/PersistenceController.h"
#include "archive/PoemFactory.h"

#include <QDir>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

class PreferencesTest : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<QTemporaryDir> m_dir;

private Q_SLOTS:
    void init()
    {
        m_dir = std::make_unique<QTemporaryDir>();
        ApplicationSupport::setDirectory(m_dir->path());
    }

    void freshStoreHasTheDocumentedDefaults()
    {
        QVERIFY(AppPreferences::automaticDailyBackupEnabled());
        QVERIFY(AppPreferences::searchTitleOnly());
        QVERIFY(!AppPreferences::searchMode().has_value());
        QCOMPARE(AppPreferences::editorFontName(), QStringLiteral("Roboto"));
        QCOMPARE(AppPreferences::appLanguage(), AppLanguage::system);
        QCOMPARE(AppPreferences::poemFooterPlace(), QString());
        QVERIFY(!AppPreferences::poemFooterAuthor().isEmpty());
        QVERIFY(AppPreferences::poemCategories().isEmpty());
        for (const FolderKind kind : allFolderKinds)
            QVERIFY(!AppPreferences::resolvedFolder(kind).has_value());
    }

    void storedValuesOverrideDefaults()
    {
        QVERIFY(AppPreferences::setAutomaticDailyBackupEnabled(false).ok());
        QVERIFY(AppPreferences::setEditorFontName(QString()).ok());
        QVERIFY(AppPreferences::setPoemFooterAuthor(QString()).ok());
        QSettings(ApplicationSupport::preferencesPath(), QSettings::IniFormat)
            .setValue(QStringLiteral("appLanguage"), QStringLiteral("klingonisch"));
        QVERIFY(!AppPreferences::automaticDailyBackupEnabled());
        QCOMPARE(AppPreferences::editorFontName(), QStringLiteral("Roboto"));
        QCOMPARE(AppPreferences::poemFooterAuthor(), QString());
        QCOMPARE(AppPreferences::appLanguage(), AppLanguage::system);
    }

    void languageChoiceDecidesTheInterfaceLanguage()
    {
        QCOMPARE(*AppPreferences::setValueText(QStringLiteral("appLanguage"), QStringLiteral("english")), true);
        QCOMPARE(*AppPreferences::setValueText(QStringLiteral("appLanguage"), QStringLiteral("en")), false);
        QCOMPARE(AppPreferences::appLanguage(), AppLanguage::english);
        AppPreferences::applyAppLanguage(AppLanguage::english);
        QCOMPARE(AppPreferences::appLanguage(), AppLanguage::english);
        QCOMPARE(AppPreferences::interfaceLanguage(), QStringLiteral("en"));
        AppPreferences::applyAppLanguage(AppLanguage::german);
        QCOMPARE(AppPreferences::interfaceLanguage(), QStringLiteral("de"));
        AppPreferences::applyAppLanguage(AppLanguage::system);
        QVERIFY(!QSettings(ApplicationSupport::preferencesPath(), QSettings::IniFormat)
                     .contains(QStringLiteral("interfaceLanguages")));
    }

    void folderThatVanishedIsForgotten()
    {
        const QString folder = m_dir->filePath(QStringLiteral("Backups"));
        QVERIFY(QDir().mkpath(folder));
        AppPreferences::saveFolder(folder, FolderKind::backup);
        QCOMPARE(AppPreferences::resolvedFolder(FolderKind::backup).value_or(QString()), folder);
        QVERIFY(!AppPreferences::resolvedFolder(FolderKind::csv).has_value());

        QVERIFY(QDir(folder).removeRecursively());
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("^Folder-Bookmark resolve fail: ")));
        QVERIFY(!AppPreferences::resolvedFolder(FolderKind::backup).has_value());
        QVERIFY(!QSettings(ApplicationSupport::preferencesPath(), QSettings::IniFormat)
                     .contains(QStringLiteral("backupFolderBookmark")));

        AppPreferences::saveFolder(m_dir->path(), FolderKind::exportFolder);
        AppPreferences::resetFolder(FolderKind::exportFolder);
        QVERIFY(!AppPreferences::resolvedFolder(FolderKind::exportFolder).has_value());
    }

    void renamingCategoriesKeepsOneSpelling()
    {
        QVERIFY(AppPreferences::setPoemCategories({QStringLiteral("lyrik"), QStringLiteral("Prosa")}).ok());
        QVERIFY(AppPreferences::renamePoemCategory(QStringLiteral(" lyrik "), QStringLiteral("Lyrik")).value());
        QCOMPARE(AppPreferences::poemCategories(), (QStringList{QStringLiteral("Lyrik"), QStringLiteral("Prosa")}));

        // The new name is already there in another spelling: that entry stays as it is.
        QVERIFY(AppPreferences::renamePoemCategory(QStringLiteral("prosa"), QStringLiteral("LYRIK")).value());
        QCOMPARE(AppPreferences::poemCategories(), QStringList{QStringLiteral("Lyrik")});

        QVERIFY(!AppPreferences::renamePoemCategory(QStringLiteral("  "), QStringLiteral("Neu")).value());
        QVERIFY(!AppPreferences::renamePoemCategory(QStringLiteral("Lyrik"), QStringLiteral("\n")).value());
        QCOMPARE(AppPreferences::poemCategories(), QStringList{QStringLiteral("Lyrik")});
    }

    void renamingANameTheListDoesNotHoldLeavesTheList()
    {
        QVERIFY(AppPreferences::setPoemCategories({QStringLiteral("Natur"), QStringLiteral("Liebe")}).ok());
        QVERIFY(AppPreferences::renamePoemCategory(QStringLiteral("xyz"), QStringLiteral("natur")).value());
        QCOMPARE(AppPreferences::poemCategories(), (QStringList{QStringLiteral("Natur"), QStringLiteral("Liebe")}));

        // Several spellings of the old name collapse into one entry, where the first stood.
        QVERIFY(AppPreferences::setPoemCategories({QStringLiteral("Élégie"), QStringLiteral("Liebe"),
                                                   QStringLiteral("elegie"), QStringLiteral("Natur")})
                    .ok());
        QVERIFY(AppPreferences::renamePoemCategory(QStringLiteral("Elegie"), QStringLiteral("Klage")).value());
        QCOMPARE(AppPreferences::poemCategories(),
                 (QStringList{QStringLiteral("Klage"), QStringLiteral("Liebe"), QStringLiteral("Natur")}));
    }

    void normalizedCategoriesDropsBlanksAndRepeatsAndSorts()
    {
        const QStringList cleaned = AppPreferences::normalizedCategories(
            {QStringLiteral(" Zyklus 10"), QStringLiteral(""), QStringLiteral("Élégie"), QStringLiteral("zyklus 10"),
             QStringLiteral("Zyklus 9"), QStringLiteral("elegie"), QStringLiteral("  ")});
        QCOMPARE(cleaned,
                 (QStringList{QStringLiteral("Élégie"), QStringLiteral("Zyklus 9"), QStringLiteral("Zyklus 10")}));
    }

    void adoptedCategoriesJoinTheEndAndLeaveThePoetsOrder()
    {
        QVERIFY(AppPreferences::setPoemCategories({QStringLiteral("Zyklus"), QStringLiteral("Abend")}).ok());
        const int added =
            CategoryCatalog::adoptCategories({QStringLiteral("morgen"), QStringLiteral(" abend "), QStringLiteral(""),
                                              QStringLiteral("Brief"), QStringLiteral("BRIEF")})
                .value();
        QCOMPARE(added, 2);
        QCOMPARE(AppPreferences::poemCategories(), (QStringList{QStringLiteral("Zyklus"), QStringLiteral("Abend"),
                                                                QStringLiteral("Brief"), QStringLiteral("morgen")}));
        QCOMPARE(CategoryCatalog::adoptCategories({QStringLiteral("ZYKLUS"), QStringLiteral("  ")}).value(), 0);
        QCOMPARE(AppPreferences::poemCategories().size(), 4);
        // The settings window appends without sorting either.
        QVERIFY(CategoryCatalog::addCategory(QStringLiteral("Anfang")).value());
        QCOMPARE(AppPreferences::poemCategories().last(), QStringLiteral("Anfang"));
    }

    void categoryActionsRelabelPoemsByExactName()
    {
        auto controller = PersistenceController::inMemory();
        ArchiveContext &context = controller->viewContext();
        const QDateTime created = QDateTime::currentDateTimeUtc().addDays(-1);
        PoemPtr exact = PoemFactory::makeNewPoem(context, created);
        exact->setCategory(QStringLiteral("lyrik"));
        PoemPtr otherCase = PoemFactory::makeNewPoem(context, created);
        otherCase->setCategory(QStringLiteral("Lyrik"));
        QVERIFY(context.save().ok());

        QVERIFY(CategoryCatalog::addCategory(QStringLiteral("Lyrik")).value());
        QVERIFY(!CategoryCatalog::addCategory(QStringLiteral("LYRIK")).value());
        QVERIFY(!CategoryCatalog::addCategory(QStringLiteral("   ")).value());

        const QDateTime now = QDateTime::currentDateTimeUtc();
        QVERIFY(
            CategoryCatalog::renameCategory(context, QStringLiteral("lyrik"), QStringLiteral("Gedichte"), now).value());
        QCOMPARE(AppPreferences::poemCategories(), QStringList{QStringLiteral("Gedichte")});
        QCOMPARE(*exact->category(), QStringLiteral("Gedichte"));
        QCOMPARE(*exact->updatedAt(), now);
        QCOMPARE(*otherCase->category(), QStringLiteral("Lyrik"));
        QCOMPARE(*otherCase->updatedAt(), created);

        QVERIFY(CategoryCatalog::removeCategory(context, QStringLiteral("Gedichte"), now.addSecs(5)).ok());
        QVERIFY(AppPreferences::poemCategories().isEmpty());
        QCOMPARE(exact->category(), std::optional<QString>(QString()));
        QCOMPARE(*exact->updatedAt(), now.addSecs(5));
        QVERIFY(!context.hasChanges());
    }
};

QTEST_GUILESS_MAIN(PreferencesTest)
#include "tst_preferences.moc"
