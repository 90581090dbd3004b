#pragma once

#include "archive/AppLanguage.h"
#include "archive/FolderKind.h"
#include "archive/Result.h"

#include <QCoreApplication>

#include <QDateTime>
#include <QStringList>
#include <QVariant>

#include <optional>

// Typed access to the preference store, an INI file in the application-support folder.
// Absent booleans read as true, so a fresh installation has every switch on.
class AppPreferences {
    Q_DECLARE_TR_FUNCTIONS(AppPreferences)

public:
    static AppLanguage appLanguage();
    // Stores the choice; it takes effect at the next start (see interfaceLanguage()).
    static void applyAppLanguage(AppLanguage language);
    // "de" or "en": the language the interface starts in.
    static QString interfaceLanguage();

    static std::optional<QString> searchMode();
    [[nodiscard]] static Result<void> setSearchMode(const QString &label);
    static bool searchTitleOnly();
    [[nodiscard]] static Result<void> setSearchTitleOnly(bool value);

    // The verse gutter and metre beside the poem ("Versmaß"); on unless turned off.
    static bool showsVerseTools();
    [[nodiscard]] static Result<void> setShowsVerseTools(bool value);

    static bool automaticDailyBackupEnabled();
    [[nodiscard]] static Result<void> setAutomaticDailyBackupEnabled(bool value);
    // The local day ("yyyy-MM-dd") of the last daily backup written; empty before the first.
    static QString lastAutomaticBackupDay();
    [[nodiscard]] static Result<void> setLastAutomaticBackupDay(const QString &day);

    // The stored provider identifier; the rhyme lookup maps unknown or empty to its first provider.
    static QString defaultRhymeProvider();
    [[nodiscard]] static Result<void> setDefaultRhymeProvider(const QString &identifier);

    static QString editorFontName();
    [[nodiscard]] static Result<void> setEditorFontName(const QString &name);

    static QString poemFooterAuthor();
    [[nodiscard]] static Result<void> setPoemFooterAuthor(const QString &author);
    static QString poemFooterPlace();
    [[nodiscard]] static Result<void> setPoemFooterPlace(const QString &place);

    // The list keeps the poet's order: the settings window appends new names and renames
    // in place, and nothing re-sorts what the poet arranged. Names the program adopts by
    // itself (imports, CSV rows, the detail pane) go through normalizedCategories() and
    // join the end of the list in its order (CategoryCatalog::adoptCategories).
    static QStringList poemCategories();
    static Result<void> setPoemCategories(const QStringList &categories);
    // Trimmed, blanks and repeats (ignoring case and diacritics, first spelling wins)
    // dropped, then sorted in the localised standard order.
    static QStringList normalizedCategories(const QStringList &categories);
    // Entries matching the old name take the new one; when the list already holds the new
    // name (in any spelling), that entry stays and the old ones are dropped. A list without
    // the old name is left as it is. False for a blank name; an error when the list could
    // not be stored.
    static Result<bool> renamePoemCategory(const QString &oldName, const QString &newName);

    static bool automaticallyChecksForUpdates();
    [[nodiscard]] static Result<void> setAutomaticallyChecksForUpdates(bool value);
    static std::optional<QDateTime> lastUpdateCheckDate();
    [[nodiscard]] static Result<void> setLastUpdateCheckDate(const QDateTime &date);

    static std::optional<QString> resolvedFolder(FolderKind kind);
    static void saveFolder(const QString &folder, FolderKind kind);
    static void resetFolder(FolderKind kind);

    // Raw access for the command line's "prefs get|set"; the keys are the stored ones.
    static QStringList knownKeys();
    static std::optional<QString> valueText(const QString &key);
    // False when the value does not fit the key; an error when it could not be stored.
    static Result<bool> setValueText(const QString &key, const QString &value);

    static void sync();

private:
    static bool flag(const QString &key);
    static QString string(const QString &key, const QString &fallback = QString());
    static Result<void> setValue(const QString &key, const QVariant &value);
    static Result<void> remove(const QString &key);
    static Result<void> storeAppLanguage(AppLanguage language);
};
