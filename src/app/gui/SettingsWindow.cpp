#include "app/gui/SettingsWindow.h"

#include "app/UpdateManager.h"
#include "app/gui/PrivacyNoticeDialog.h"
#include "archive/AppPreferences.h"
#include "archive/ArchiveContext.h"
#include "archive/CategoryCatalog.h"
#include "archive/PoemStore.h"
#include "archive/PoemVersions.h"
#include "editor/AppTheme.h"
#include "editor/RhymeProvider.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QDir>
#include <QEvent>
#include <QFileDialog>
#include <QFontDatabase>
#include <QFormLayout>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QMessageBox>
#include <QPushButton>
#include <QScrollArea>
#include <QTimer>
#include <QVBoxLayout>

namespace {

QString folderTitle(FolderKind kind)
{
    switch (kind) {
    case FolderKind::backup:
        return SettingsWindow::tr("Backups");
    case FolderKind::csv:
        return SettingsWindow::tr("CSV-Import");
    case FolderKind::documentImport:
        return SettingsWindow::tr("Dokument-Import");
    case FolderKind::exportFolder:
        return SettingsWindow::tr("Export");
    }
    return {};
}

QString languageTitle(AppLanguage language)
{
    switch (language) {
    case AppLanguage::system:
        return SettingsWindow::tr("Systemsprache");
    case AppLanguage::german:
        return QStringLiteral("Deutsch");
    case AppLanguage::english:
        return QStringLiteral("English");
    }
    return {};
}

QWidget *row(QWidget *parent, std::initializer_list<QWidget *> widgets, int stretchIndex)
{
    auto *container = new QWidget(parent);
    auto *layout = new QHBoxLayout(container);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(6);
    int index = 0;
    for (QWidget *widget : widgets)
        layout->addWidget(widget, index++ == stretchIndex ? 1 : 0);
    return container;
}

} // namespace

SettingsWindow::SettingsWindow(ArchiveContext &context, UpdateManager *updates, QWidget *parent)
    : QDialog(parent), m_context(context), m_updates(updates)
{
    setObjectName(QStringLiteral("settingsWindow"));
    setWindowTitle(tr("Einstellungen"));
    resize(640, 760);

    auto *outer = new QVBoxLayout(this);
    outer->setContentsMargins(0, 0, 0, 12);
    auto *scroll = new QScrollArea(this);
    scroll->setObjectName(QStringLiteral("settingsScroll"));
    scroll->setWidgetResizable(true);
    scroll->setFrameShape(QFrame::NoFrame);
    auto *page = new QWidget(scroll);
    page->setObjectName(QStringLiteral("settingsPage"));
    m_sections = new QVBoxLayout(page);
    m_sections->setContentsMargins(28, 20, 28, 12);
    m_sections->setSpacing(4);
    auto *heading = new QLabel(tr("Einstellungen"), page);
    heading->setObjectName(QStringLiteral("dialogTitle"));
    m_sections->addWidget(heading);
    auto *subtitle = new QLabel(tr("Schreiben, Reime, Sicherungen und Ordner"), page);
    subtitle->setObjectName(QStringLiteral("hintText"));
    m_sections->addWidget(subtitle);

    buildWritingSection();
    buildCategorySection();
    buildRhymeSection();
    buildBackupSection();
    buildFolderSection();
    buildUpdateSection();
    buildLanguageSection();
    buildPrivacySection();
    m_sections->addStretch(1);
    scroll->setWidget(page);
    outer->addWidget(scroll, 1);

    m_notStored = new QLabel(this);
    m_notStored->setObjectName(QStringLiteral("notStoredText"));
    m_notStored->setWordWrap(true);
    m_notStored->setContentsMargins(28, 4, 28, 0);
    m_notStored->setStyleSheet(QStringLiteral("color: %1;").arg(AppTheme::systemRed().name()));
    m_notStored->hide();
    outer->addWidget(m_notStored);
    if (m_updates) {
        connect(m_updates, &UpdateManager::preferenceNotStored, this, [this](const QString &message) {
            m_notStored->setText(message);
            m_notStored->show();
        });
    }

    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    buttons->setContentsMargins(28, 0, 28, 0);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    outer->addWidget(buttons);
}

QVBoxLayout *SettingsWindow::addSection(const QString &title)
{
    m_sections->addSpacing(14);
    auto *heading = new QLabel(title, this);
    heading->setObjectName(QStringLiteral("settingsSection"));
    m_sections->addWidget(heading);
    auto *group = new QFrame(this);
    group->setObjectName(QStringLiteral("settingsGroup"));
    auto *layout = new QVBoxLayout(group);
    layout->setContentsMargins(14, 10, 14, 12);
    layout->setSpacing(6);
    m_sections->addWidget(group);
    return layout;
}

QLabel *SettingsWindow::makeHint(const QString &text)
{
    auto *label = new QLabel(text, this);
    label->setObjectName(QStringLiteral("hintText"));
    label->setWordWrap(true);
    return label;
}

QLabel *SettingsWindow::addHint(QVBoxLayout *section, const QString &text)
{
    QLabel *label = makeHint(text);
    section->addWidget(label);
    return label;
}

void SettingsWindow::buildWritingSection()
{
    QVBoxLayout *section = addSection(tr("Schreiben"));
    auto *form = new QFormLayout;
    form->setLabelAlignment(Qt::AlignLeft);
    section->addLayout(form);

    auto *font = new QComboBox(this);
    font->setObjectName(QStringLiteral("editorFontPicker"));
    QStringList families = QFontDatabase::families();
    families.removeIf([](const QString &family) { return QFontDatabase::isPrivateFamily(family); });
    // A stored font that is not installed stays visible, so the choice is not lost silently.
    const QString stored = AppPreferences::editorFontName();
    if (!families.contains(stored))
        families.prepend(stored);
    font->addItems(families);
    font->setCurrentText(stored);
    connect(font, &QComboBox::currentTextChanged, this, [this](const QString &family) {
        report(AppPreferences::setEditorFontName(family));
        Q_EMIT editorFontChanged();
    });
    form->addRow(tr("Schrift im Editor"), font);
    // One form for font and footer, so that their fields line up; the hints span it.
    form->addRow(makeHint(tr("Neue Texte, DOCX-Importe und Exporte verwenden diese Schrift. Bestehende "
                             "Formatierungen bleiben erhalten, bis du sie änderst.")));
    auto *author = new QLineEdit(AppPreferences::poemFooterAuthor(), this);
    author->setObjectName(QStringLiteral("footerAuthorField"));
    connect(author, &QLineEdit::textEdited, this,
            [this](const QString &text) { report(AppPreferences::setPoemFooterAuthor(text)); });
    form->addRow(tr("Autor im Abschluss"), author);
    auto *place = new QLineEdit(AppPreferences::poemFooterPlace(), this);
    place->setObjectName(QStringLiteral("footerPlaceField"));
    connect(place, &QLineEdit::textEdited, this,
            [this](const QString &text) { report(AppPreferences::setPoemFooterPlace(text)); });
    form->addRow(tr("Ort im Abschluss"), place);
    form->addRow(
        makeHint(tr("Der Standardabschluss fügt Copyright, Ort und das aktuelle Tagesdatum ans Gedichtende an.")));
}

void SettingsWindow::buildCategorySection()
{
    QVBoxLayout *section = addSection(tr("Kategorien"));
    m_categoryRows = new QWidget(this);
    m_categoryRows->setObjectName(QStringLiteral("categoryRows"));
    m_categoryRowsLayout = new QVBoxLayout(m_categoryRows);
    m_categoryRowsLayout->setContentsMargins(0, 0, 0, 0);
    m_categoryRowsLayout->setSpacing(4);
    section->addWidget(m_categoryRows);
    m_noCategories = new QLabel(tr("Noch keine Kategorien festgelegt."), this);
    m_noCategories->setObjectName(QStringLiteral("noCategoriesLabel"));
    section->addWidget(m_noCategories);

    m_newCategory = new QLineEdit(this);
    m_newCategory->setObjectName(QStringLiteral("newCategoryField"));
    m_newCategory->setPlaceholderText(tr("Neue Kategorie"));
    auto *add = new QPushButton(tr("Hinzufügen"), this);
    add->setObjectName(QStringLiteral("addCategoryButton"));
    add->setAutoDefault(false);
    add->setEnabled(false);
    connect(m_newCategory, &QLineEdit::textChanged, add,
            [add](const QString &text) { add->setEnabled(!text.trimmed().isEmpty()); });
    connect(m_newCategory, &QLineEdit::returnPressed, this, &SettingsWindow::addCategory);
    connect(add, &QPushButton::clicked, this, &SettingsWindow::addCategory);
    section->addWidget(row(this, {m_newCategory, add}, 0));
    addHint(section, tr("Diese Kategorien stehen beim Bearbeiten eines Gedichts zur Auswahl. Kategorien aus "
                        "importierten Gedichten werden automatisch ergänzt."));
    refreshCategories();
}

QWidget *SettingsWindow::makeCategoryRow(const QString &name)
{
    auto *edit = new QLineEdit(name);
    edit->setObjectName(QStringLiteral("categoryNameField"));
    auto *rename = new QPushButton(tr("Umbenennen"));
    rename->setObjectName(QStringLiteral("renameCategoryButton"));
    rename->setAutoDefault(false);
    rename->setEnabled(false);
    auto *remove = new QPushButton(tr("Kategorie entfernen"));
    remove->setObjectName(QStringLiteral("removeCategoryButton"));
    remove->setAutoDefault(false);
    connect(edit, &QLineEdit::textChanged, rename, [rename, name](const QString &text) {
        rename->setEnabled(!text.trimmed().isEmpty() && text.trimmed() != name);
    });
    // The row is rebuilt by what it starts, so the work waits until its signal is done.
    const auto commit = [this, edit, name] {
        const QString edited = edit->text();
        QTimer::singleShot(0, this, [this, name, edited] { renameCategory(name, edited); });
    };
    connect(edit, &QLineEdit::returnPressed, this, commit);
    connect(rename, &QPushButton::clicked, this, commit);
    connect(remove, &QPushButton::clicked, this,
            [this, name] { QTimer::singleShot(0, this, [this, name] { removeCategory(name); }); });
    QWidget *container = row(m_categoryRows, {edit, rename, remove}, 0);
    container->setObjectName(QStringLiteral("categoryRow"));
    return container;
}

void SettingsWindow::refreshCategories()
{
    const QStringList categories = AppPreferences::poemCategories();
    if (categories == m_categories && m_categoryRowsLayout->count() == categories.size())
        return;
    m_categories = categories;
    while (QLayoutItem *item = m_categoryRowsLayout->takeAt(0)) {
        delete item->widget();
        delete item;
    }
    for (const QString &name : std::as_const(m_categories))
        m_categoryRowsLayout->addWidget(makeCategoryRow(name));
    m_categoryRows->setVisible(!m_categories.isEmpty());
    m_noCategories->setVisible(m_categories.isEmpty());
}

void SettingsWindow::addCategory()
{
    const auto added = CategoryCatalog::addCategory(m_newCategory->text());
    if (!added)
        QMessageBox::warning(this, tr("Kategorie hinzufügen"), added.errorMessage());
    if (!added || !*added)
        return;
    m_newCategory->clear();
    refreshCategories();
    Q_EMIT categoriesChanged();
}

void SettingsWindow::renameCategory(const QString &oldName, const QString &newName)
{
    if (newName.trimmed() != oldName.trimmed()) {
        const auto renamed =
            CategoryCatalog::renameCategory(m_context, oldName, newName, QDateTime::currentDateTimeUtc());
        if (!renamed)
            QMessageBox::warning(this, tr("Kategorie umbenennen"), renamed.errorMessage());
    }
    m_categories.clear(); // the row's pending edit is dropped either way
    refreshCategories();
    Q_EMIT categoriesChanged();
}

void SettingsWindow::removeCategory(const QString &name)
{
    const int carriers = int(m_context.fetch([&name](const Poem &poem) { return poem.category() == name; }).size());
    if (carriers > 0) {
        const bool confirmed = confirmRemoval ? confirmRemoval(name, carriers) : askRemoval(name, carriers);
        if (!confirmed)
            return;
    }
    if (auto removed = CategoryCatalog::removeCategory(m_context, name, QDateTime::currentDateTimeUtc()); !removed)
        QMessageBox::warning(this, tr("Kategorie entfernen"), removed.errorMessage());
    refreshCategories();
    Q_EMIT categoriesChanged();
}

bool SettingsWindow::askRemoval(const QString &name, int carriers)
{
    const QString text = carriers == 1 ? tr("„%1“ wird aus der Liste entfernt und bei einem Gedicht gelöscht. Das "
                                            "Gedicht selbst bleibt erhalten.")
                                             .arg(name)
                                       : tr("„%1“ wird aus der Liste entfernt und bei %2 Gedichten gelöscht. Die "
                                            "Gedichte selbst bleiben erhalten.")
                                             .arg(name)
                                             .arg(carriers);
    QMessageBox box(QMessageBox::Question, tr("Kategorie entfernen?"), text, QMessageBox::NoButton, this);
    QPushButton *remove = box.addButton(tr("Kategorie entfernen"), QMessageBox::DestructiveRole);
    box.setDefaultButton(box.addButton(tr("Abbrechen"), QMessageBox::RejectRole));
    box.exec();
    return box.clickedButton() == remove;
}

void SettingsWindow::buildRhymeSection()
{
    QVBoxLayout *section = addSection(tr("Reime"));
    auto *provider = new QComboBox(this);
    provider->setObjectName(QStringLiteral("rhymeProviderPicker"));
    for (const RhymeProvider each : allRhymeProviders)
        provider->addItem(title(each), rawValue(each));
    provider->setCurrentIndex(provider->findData(rawValue(defaultRhymeProvider())));
    connect(provider, &QComboBox::currentIndexChanged, this, [this, provider](int index) {
        report(AppPreferences::setDefaultRhymeProvider(provider->itemData(index).toString()));
    });
    auto *form = new QFormLayout;
    form->addRow(tr("Reimseite"), provider);
    section->addLayout(form);
    addHint(section, tr("Der normale Klick auf „Reime…“ nutzt diesen Dienst. Die anderen bleiben im Menü erreichbar."));
}

void SettingsWindow::buildBackupSection()
{
    QVBoxLayout *section = addSection(tr("Sicherung"));
    auto *daily = new QCheckBox(tr("Automatisches Tagesbackup"), this);
    daily->setObjectName(QStringLiteral("dailyBackupToggle"));
    daily->setChecked(AppPreferences::automaticDailyBackupEnabled());
    connect(daily, &QCheckBox::toggled, this,
            [this](bool on) { report(AppPreferences::setAutomaticDailyBackupEnabled(on)); });
    section->addWidget(daily);
    addHint(section, tr("OdeLeaf erstellt beim ersten App-Start pro Tag ein internes Sicherheitsbackup."));

    auto *versionSpace = new QLabel(this);
    versionSpace->setObjectName(QStringLiteral("versionSpace"));
    const auto showSpace = [this, versionSpace](const QString &before) {
        const auto bytes = PoemVersions::storageBytes(m_context);
        const QString space =
            bytes ? tr("Fassungen belegen %1.").arg(QLocale().formattedDataSize(*bytes)) : bytes.errorMessage();
        versionSpace->setText(before.isEmpty() ? space : before + QLatin1Char(' ') + space);
    };
    showSpace(QString());
    auto *prune = new QPushButton(tr("Alte Fassungen aufräumen"), this);
    prune->setObjectName(QStringLiteral("pruneVersionsButton"));
    prune->setAutoDefault(false);
    prune->setEnabled(!m_context.store().isReadOnly());
    connect(prune, &QPushButton::clicked, this, [this, showSpace] {
        const auto removed = PoemVersions::pruneAll(m_context);
        showSpace(removed ? tr("%n alte Fassungen entfernt.", nullptr, *removed) : removed.errorMessage());
    });
    section->addWidget(row(this, {versionSpace, prune}, 0));
    addHint(section, tr("Benannte Fassungen bleiben immer; sonst alle der letzten 30 Tage, dann eine pro Tag für ein "
                        "Jahr, danach eine pro Monat."));
}

void SettingsWindow::buildFolderSection()
{
    QVBoxLayout *section = addSection(tr("Ordner"));
    auto *grid = new QGridLayout;
    grid->setHorizontalSpacing(8);
    grid->setColumnStretch(1, 1);
    section->addLayout(grid);
    int line = 0;
    for (const FolderKind kind : allFolderKinds) {
        auto *name = new QLabel(folderTitle(kind), this);
        auto *path = new QLabel(this);
        path->setObjectName(QStringLiteral("folderPath_") + bookmarkKey(kind));
        path->setTextInteractionFlags(Qt::TextSelectableByMouse);
        auto *choose = new QPushButton(tr("Ordner auswählen"), this);
        choose->setObjectName(QStringLiteral("chooseFolder_") + bookmarkKey(kind));
        choose->setAutoDefault(false);
        auto *reset = new QPushButton(tr("Zurücksetzen"), this);
        reset->setObjectName(QStringLiteral("resetFolder_") + bookmarkKey(kind));
        reset->setAutoDefault(false);
        grid->addWidget(name, line, 0);
        grid->addWidget(path, line, 1);
        grid->addWidget(choose, line, 2);
        grid->addWidget(reset, line, 3);
        ++line;

        m_folderRefreshers.append([path, reset, kind] {
            const std::optional<QString> folder = AppPreferences::resolvedFolder(kind);
            const QString shown = folder ? QDir::toNativeSeparators(*folder) : tr("Kein Ordner festgelegt");
            path->setText(path->fontMetrics().elidedText(shown, Qt::ElideMiddle, 260));
            path->setToolTip(folder ? shown : QString());
            path->setEnabled(folder.has_value());
            reset->setEnabled(folder.has_value());
        });
        connect(choose, &QPushButton::clicked, this, [this, kind] {
            const QString start = AppPreferences::resolvedFolder(kind).value_or(QDir::homePath());
            const QString folder = chooseFolder
                                       ? chooseFolder(kind, start)
                                       : QFileDialog::getExistingDirectory(this, tr("Ordner auswählen"), start);
            if (!folder.isEmpty())
                AppPreferences::saveFolder(folder, kind);
            refreshFolders();
        });
        connect(reset, &QPushButton::clicked, this, [this, kind] {
            AppPreferences::resetFolder(kind);
            refreshFolders();
        });
    }
    refreshFolders();
}

void SettingsWindow::refreshFolders()
{
    for (const auto &refresh : std::as_const(m_folderRefreshers))
        refresh();
}

void SettingsWindow::buildUpdateSection()
{
    QVBoxLayout *section = addSection(tr("Aktualisierungen"));
    m_automaticUpdates = new QCheckBox(tr("Automatisch nach Updates suchen"), this);
    m_automaticUpdates->setObjectName(QStringLiteral("automaticUpdatesToggle"));
    m_checkUpdates = new QPushButton(tr("Jetzt nach Updates suchen"), this);
    m_checkUpdates->setObjectName(QStringLiteral("checkUpdatesButton"));
    m_checkUpdates->setAutoDefault(false);
    m_updateStatus = new QLabel(this);
    m_updateStatus->setObjectName(QStringLiteral("updateStatus"));
    m_updateStatus->setWordWrap(true);
    section->addWidget(m_automaticUpdates);
    section->addWidget(row(this, {m_checkUpdates, new QWidget(this)}, 1));
    section->addWidget(m_updateStatus);

    const bool hasFeed = m_updates && m_updates->hasFeed();
    m_automaticUpdates->setEnabled(hasFeed);
    m_checkUpdates->setEnabled(hasFeed && m_updates->canCheckForUpdates());
    if (!hasFeed) {
        m_automaticUpdates->setChecked(false);
        m_updateStatus->setText(tr("Diese Ausgabe von OdeLeaf erhält neue Versionen über die Paketverwaltung "
                                   "deines Systems; sie sucht nicht selbst nach Updates."));
        return;
    }
    m_automaticUpdates->setChecked(m_updates->automaticallyChecksForUpdates());
    connect(m_automaticUpdates, &QCheckBox::toggled, m_updates, &UpdateManager::setAutomaticallyChecksForUpdates);
    connect(m_updates, &UpdateManager::automaticallyChecksForUpdatesChanged, m_automaticUpdates,
            &QCheckBox::setChecked);
    connect(m_checkUpdates, &QPushButton::clicked, m_updates, &UpdateManager::checkForUpdates);
    connect(m_updates, &UpdateManager::canCheckForUpdatesChanged, m_checkUpdates, &QPushButton::setEnabled);
    connect(m_updates, &UpdateManager::lastUpdateCheckDateChanged, this, &SettingsWindow::showUpdateStatus);
    showUpdateStatus();
}

void SettingsWindow::showUpdateStatus()
{
    const std::optional<QDateTime> last = m_updates->lastUpdateCheckDate();
    if (!last) {
        m_updateStatus->setText(tr("OdeLeaf sucht höchstens einmal täglich automatisch nach neuen Versionen."));
        return;
    }
    m_updateStatus->setText(
        tr("Letzte Prüfung: %1").arg(QLocale().toString(last->toLocalTime(), QLocale::ShortFormat)));
}

void SettingsWindow::buildLanguageSection()
{
    QVBoxLayout *section = addSection(tr("Sprache"));
    auto *language = new QComboBox(this);
    language->setObjectName(QStringLiteral("languagePicker"));
    for (const AppLanguage each : {AppLanguage::system, AppLanguage::german, AppLanguage::english})
        language->addItem(languageTitle(each), rawValue(each));
    language->setCurrentIndex(language->findData(rawValue(AppPreferences::appLanguage())));
    auto *form = new QFormLayout;
    form->addRow(tr("App-Sprache"), language);
    section->addLayout(form);
    addHint(section, tr("OdeLeaf kann die Systemsprache verwenden oder fest auf Deutsch bzw. Englisch gestellt "
                        "werden."));
    m_languageNote = new QLabel(tr("Die Änderung wird nach einem Neustart von OdeLeaf vollständig aktiv."), this);
    m_languageNote->setObjectName(QStringLiteral("languageRestartNote"));
    m_languageNote->setWordWrap(true);
    m_languageNote->hide();
    section->addWidget(m_languageNote);
    connect(language, &QComboBox::currentIndexChanged, this, [this, language](int index) {
        AppPreferences::applyAppLanguage(appLanguageFromRaw(language->itemData(index).toString()));
        m_languageNote->show();
    });
}

void SettingsWindow::buildPrivacySection()
{
    QVBoxLayout *section = addSection(tr("Datenschutzhinweis"));
    auto *details = new QPushButton(tr("Details anzeigen"), this);
    details->setObjectName(QStringLiteral("privacyDetailsButton"));
    details->setAutoDefault(false);
    connect(details, &QPushButton::clicked, this, [this] {
        PrivacyNoticeDialog dialog(m_updates && m_updates->hasFeed(), this);
        dialog.exec();
    });
    addHint(section, tr("Was OdeLeaf speichert und was es über das Netz sendet."));
    section->addWidget(row(this, {details, new QWidget(this)}, 1));
}

void SettingsWindow::keyPressEvent(QKeyEvent *event)
{
    // Enter confirms the field it is typed in (a new or renamed category); it must not
    // also close the window through its default button.
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        event->accept();
        return;
    }
    QDialog::keyPressEvent(event);
}

void SettingsWindow::changeEvent(QEvent *event)
{
    QDialog::changeEvent(event);
    // Imports and the detail pane add categories while the window stays open.
    if (event->type() == QEvent::ActivationChange && isActiveWindow()) {
        refreshCategories();
        refreshFolders();
    }
}

void SettingsWindow::report(const Result<void> &stored)
{
    m_notStored->setVisible(!stored);
    if (!stored)
        m_notStored->setText(stored.errorMessage());
}
