#include "archive/AppPreferences.h"

#include "archive/ApplicationSupport.h"
#include "archive/AtomicFileWriter.h"
#include "archive/TextComparison.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QLocale>
#include <QSettings>
#include <QtDebug>

#include <algorithm>

#include <sys/statvfs.h>
#include <unistd.h>

namespace {

const QString keyAppLanguage = QStringLiteral("appLanguage");
const QString keyInterfaceLanguages = QStringLiteral("interfaceLanguages");
const QString keySearchMode = QStringLiteral("searchMode");
const QString keySearchTitleOnly = QStringLiteral("searchTitleOnly");
const QString keyDailyBackup = QStringLiteral("automaticDailyBackupEnabled");
const QString keyVerseTools = QStringLiteral("showsVerseTools");
const QString keyLastDailyBackup = QStringLiteral("lastAutomaticBackupDay");
const QString keyRhymeProvider = QStringLiteral("defaultRhymeProvider");
const QString keyEditorFont = QStringLiteral("editorFontName");
const QString keyFooterAuthor = QStringLiteral("poemFooterAuthor");
const QString keyFooterPlace = QStringLiteral("poemFooterPlace");
const QString keyCategories = QStringLiteral("poemCategories");
const QString keyAutomaticUpdateChecks = QStringLiteral("automaticallyChecksForUpdates");
const QString keyLastUpdateCheck = QStringLiteral("lastUpdateCheckDate");

QSettings settingsStore()
{
    return QSettings(ApplicationSupport::preferencesPath(), QSettings::IniFormat);
}

// QSettings only says that writing failed; the folder tells why.
QString writeFailureCause(const QString &folder)
{
    const QByteArray encoded = QFile::encodeName(folder);
    if (::access(encoded.constData(), W_OK) != 0)
        return AtomicFileWriter::describeSystemError(errno);
    struct statvfs space {};
    if (::statvfs(encoded.constData(), &space) == 0 && space.f_bavail == 0)
        return AtomicFileWriter::describeSystemError(ENOSPC);
    return AtomicFileWriter::describeSystemError(EIO);
}

// Writes the change at once, so a failure is seen by the one who made it.
Result<void> storeSettings(QSettings &settings)
{
    const QString folder = ApplicationSupport::directory();
    settings.sync();
    if (settings.status() != QSettings::NoError)
        return Error{AppPreferences::tr("Die Einstellungen konnten nicht gespeichert werden: %1")
                         .arg(writeFailureCause(folder))};
    // The file is rewritten with the permissions it had; the first write sets them.
    QFile::setPermissions(settings.fileName(), QFileDevice::ReadOwner | QFileDevice::WriteOwner);
    return {};
}

bool isBooleanKey(const QString &key)
{
    return key == keySearchTitleOnly || key == keyDailyBackup || key == keyAutomaticUpdateChecks;
}

QString accountName()
{
    const QString name = qEnvironmentVariable("USER");
    return name.isEmpty() ? QDir::home().dirName() : name;
}

} // namespace

bool AppPreferences::flag(const QString &key)
{
    const QSettings settings = settingsStore();
    if (!settings.contains(key))
        return true;
    return settings.value(key).toBool();
}

QString AppPreferences::string(const QString &key, const QString &fallback)
{
    const QSettings settings = settingsStore();
    if (!settings.contains(key))
        return fallback;
    return settings.value(key).toString();
}

Result<void> AppPreferences::setValue(const QString &key, const QVariant &value)
{
    if (auto folder = AtomicFileWriter::ensurePrivateFolder(ApplicationSupport::directory()); !folder)
        return folder;
    QSettings settings = settingsStore();
    settings.setValue(key, value);
    return storeSettings(settings);
}

Result<void> AppPreferences::remove(const QString &key)
{
    QSettings settings = settingsStore();
    settings.remove(key);
    return storeSettings(settings);
}

void AppPreferences::sync()
{
    QSettings settings = settingsStore();
    settings.sync();
}

AppLanguage AppPreferences::appLanguage()
{
    return appLanguageFromRaw(string(keyAppLanguage));
}

void AppPreferences::applyAppLanguage(AppLanguage language)
{
    (void)storeAppLanguage(language);
}

Result<void> AppPreferences::storeAppLanguage(AppLanguage language)
{
    if (auto stored = setValue(keyAppLanguage, rawValue(language)); !stored)
        return stored;
    switch (language) {
    case AppLanguage::german:
        return setValue(keyInterfaceLanguages, QStringList{QStringLiteral("de")});
    case AppLanguage::english:
        return setValue(keyInterfaceLanguages, QStringList{QStringLiteral("en")});
    case AppLanguage::system:
        return remove(keyInterfaceLanguages);
    }
    return {};
}

QString AppPreferences::interfaceLanguage()
{
    const QSettings settings = settingsStore();
    const QStringList chosen = settings.value(keyInterfaceLanguages).toStringList();
    if (!chosen.isEmpty())
        return chosen.first() == QLatin1String("en") ? QStringLiteral("en") : QStringLiteral("de");
    // The interface is written in German; any other system language gets the English one.
    // A bare C locale names no language at all, so the program's own language applies.
    const QLocale::Language system = QLocale::system().language();
    return system == QLocale::German || system == QLocale::C ? QStringLiteral("de") : QStringLiteral("en");
}

std::optional<QString> AppPreferences::searchMode()
{
    const QSettings settings = settingsStore();
    if (!settings.contains(keySearchMode))
        return std::nullopt;
    return settings.value(keySearchMode).toString();
}

Result<void> AppPreferences::setSearchMode(const QString &label)
{
    return setValue(keySearchMode, label);
}

bool AppPreferences::searchTitleOnly()
{
    return flag(keySearchTitleOnly);
}

Result<void> AppPreferences::setSearchTitleOnly(bool value)
{
    return setValue(keySearchTitleOnly, value);
}

bool AppPreferences::showsVerseTools()
{
    return flag(keyVerseTools);
}

Result<void> AppPreferences::setShowsVerseTools(bool value)
{
    return setValue(keyVerseTools, value);
}

bool AppPreferences::automaticDailyBackupEnabled()
{
    return flag(keyDailyBackup);
}

Result<void> AppPreferences::setAutomaticDailyBackupEnabled(bool value)
{
    return setValue(keyDailyBackup, value);
}

QString AppPreferences::lastAutomaticBackupDay()
{
    return string(keyLastDailyBackup);
}

Result<void> AppPreferences::setLastAutomaticBackupDay(const QString &day)
{
    return setValue(keyLastDailyBackup, day);
}

QString AppPreferences::defaultRhymeProvider()
{
    return string(keyRhymeProvider);
}

Result<void> AppPreferences::setDefaultRhymeProvider(const QString &identifier)
{
    return setValue(keyRhymeProvider, identifier);
}

QString AppPreferences::editorFontName()
{
    const QString name = string(keyEditorFont);
    return name.isEmpty() ? QStringLiteral("Roboto") : name;
}

Result<void> AppPreferences::setEditorFontName(const QString &name)
{
    return setValue(keyEditorFont, name);
}

QString AppPreferences::poemFooterAuthor()
{
    return string(keyFooterAuthor, accountName());
}

Result<void> AppPreferences::setPoemFooterAuthor(const QString &author)
{
    return setValue(keyFooterAuthor, author);
}

QString AppPreferences::poemFooterPlace()
{
    return string(keyFooterPlace);
}

Result<void> AppPreferences::setPoemFooterPlace(const QString &place)
{
    return setValue(keyFooterPlace, place);
}

QStringList AppPreferences::poemCategories()
{
    const QSettings settings = settingsStore();
    return settings.value(keyCategories).toStringList();
}

Result<void> AppPreferences::setPoemCategories(const QStringList &categories)
{
    return setValue(keyCategories, categories);
}

QStringList AppPreferences::normalizedCategories(const QStringList &categories)
{
    QStringList cleaned;
    QStringList seen;
    for (const QString &entry : categories) {
        const QString name = entry.trimmed();
        if (name.isEmpty())
            continue;
        const QString key = TextComparison::folded(name);
        if (seen.contains(key))
            continue;
        seen.append(key);
        cleaned.append(name);
    }
    std::stable_sort(cleaned.begin(), cleaned.end(), [](const QString &a, const QString &b) {
        return TextComparison::localizedStandardCompare(a, b) < 0;
    });
    return cleaned;
}

Result<bool> AppPreferences::renamePoemCategory(const QString &oldName, const QString &newName)
{
    const QString from = oldName.trimmed();
    const QString to = newName.trimmed();
    if (from.isEmpty() || to.isEmpty())
        return false;
    const auto matches = [](const QString &entry, const QString &name) {
        return TextComparison::equalsIgnoringCaseAndDiacritics(entry.trimmed(), name);
    };
    const QStringList categories = poemCategories();
    // "lyrik" to "Lyrik" matches both names and only changes the spelling.
    bool hasNewName = std::any_of(categories.begin(), categories.end(),
                                  [&](const QString &entry) { return matches(entry, to) && !matches(entry, from); });
    QStringList renamed;
    for (const QString &entry : categories) {
        if (!matches(entry, from)) {
            renamed.append(entry);
            continue;
        }
        if (!hasNewName)
            renamed.append(to);
        hasNewName = true;
    }
    if (renamed != categories) {
        if (auto stored = setPoemCategories(renamed); !stored)
            return stored.error();
    }
    return true;
}

bool AppPreferences::automaticallyChecksForUpdates()
{
    return flag(keyAutomaticUpdateChecks);
}

Result<void> AppPreferences::setAutomaticallyChecksForUpdates(bool value)
{
    return setValue(keyAutomaticUpdateChecks, value);
}

std::optional<QDateTime> AppPreferences::lastUpdateCheckDate()
{
    const QDateTime date = QDateTime::fromString(string(keyLastUpdateCheck), Qt::ISODate);
    if (!date.isValid())
        return std::nullopt;
    return date;
}

Result<void> AppPreferences::setLastUpdateCheckDate(const QDateTime &date)
{
    return setValue(keyLastUpdateCheck, date.toUTC().toString(Qt::ISODate));
}

std::optional<QString> AppPreferences::resolvedFolder(FolderKind kind)
{
    const QString key = bookmarkKey(kind);
    const QString path = string(key);
    if (path.isEmpty())
        return std::nullopt;
    if (!QFileInfo(path).isDir()) {
        (void)remove(key);
        qWarning().noquote() << QStringLiteral("Folder-Bookmark resolve fail: %1")
                                    .arg(QStringLiteral("folder no longer exists: ") + path);
        return std::nullopt;
    }
    return path;
}

void AppPreferences::saveFolder(const QString &folder, FolderKind kind)
{
    (void)setValue(bookmarkKey(kind), QFileInfo(folder).absoluteFilePath());
}

void AppPreferences::resetFolder(FolderKind kind)
{
    (void)remove(bookmarkKey(kind));
}

QStringList AppPreferences::knownKeys()
{
    QStringList keys{keyAppLanguage, keySearchMode,   keySearchTitleOnly, keyDailyBackup, keyRhymeProvider,
                     keyEditorFont,  keyFooterAuthor, keyFooterPlace,     keyCategories,  keyLastDailyBackup};
    for (const FolderKind kind : allFolderKinds)
        keys.append(bookmarkKey(kind));
    keys.append({keyAutomaticUpdateChecks, keyLastUpdateCheck});
    return keys;
}

std::optional<QString> AppPreferences::valueText(const QString &key)
{
    if (!knownKeys().contains(key))
        return std::nullopt;
    if (isBooleanKey(key))
        return flag(key) ? QStringLiteral("true") : QStringLiteral("false");
    if (key == keyCategories)
        return QString::fromUtf8(
            QJsonDocument(QJsonArray::fromStringList(poemCategories())).toJson(QJsonDocument::Compact));
    if (key == keyAppLanguage)
        return rawValue(appLanguage());
    if (key == keyEditorFont)
        return editorFontName();
    if (key == keyFooterAuthor)
        return poemFooterAuthor();
    return string(key);
}

Result<bool> AppPreferences::setValueText(const QString &key, const QString &value)
{
    const auto stored = [](const Result<void> &written) -> Result<bool> {
        if (!written)
            return written.error();
        return true;
    };
    if (!knownKeys().contains(key))
        return false;
    if (isBooleanKey(key)) {
        if (value != QLatin1String("true") && value != QLatin1String("false"))
            return false;
        return stored(setValue(key, value == QLatin1String("true")));
    }
    if (key == keyCategories) {
        const QJsonDocument document = QJsonDocument::fromJson(value.toUtf8());
        if (!document.isArray())
            return false;
        QStringList names;
        for (const QJsonValue &entry : document.array()) {
            if (!entry.isString())
                return false;
            names.append(entry.toString());
        }
        return stored(setValue(keyCategories, names));
    }
    if (key == keyAppLanguage) {
        // An unknown name would quietly become "system"; refuse it instead.
        const AppLanguage language = appLanguageFromRaw(value);
        if (rawValue(language) != value)
            return false;
        return stored(storeAppLanguage(language));
    }
    return stored(setValue(key, value));
}
