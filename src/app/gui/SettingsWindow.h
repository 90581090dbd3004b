#pragma once

#include "archive/FolderKind.h"
#include "archive/Result.h"

#include <QDialog>

#include <functional>

class ArchiveContext;
class QCheckBox;
class QComboBox;
class QFormLayout;
class QKeyEvent;
class QLabel;
class QLineEdit;
class QPushButton;
class QVBoxLayout;
class UpdateManager;

// "Einstellungen": the preferences, the list of categories with the poems that carry
// them, and the update options. Every change is stored at once; the window tells the
// library through its signals where something on screen has to follow.
class SettingsWindow : public QDialog {
    Q_OBJECT

public:
    // Without an update manager, or with one that has no feed, the update section says
    // that the package manager brings new versions.
    SettingsWindow(ArchiveContext &context, UpdateManager *updates, QWidget *parent = nullptr);

    void refreshCategories();
    void refreshFolders();
    QStringList shownCategories() const { return m_categories; }

    // The folder dialog and the confirmation before a category leaves its poems, asked
    // through these so tests can answer them. An empty folder means cancelled.
    std::function<QString(FolderKind kind, const QString &start)> chooseFolder;
    std::function<bool(const QString &category, int poemCount)> confirmRemoval;

Q_SIGNALS:
    void editorFontChanged();
    // The list changed, or poems were re-labelled.
    void categoriesChanged();

protected:
    void changeEvent(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    QVBoxLayout *addSection(const QString &title);
    QLabel *makeHint(const QString &text);
    QLabel *addHint(QVBoxLayout *section, const QString &text);
    void buildWritingSection();
    void buildCategorySection();
    void buildRhymeSection();
    void buildBackupSection();
    void buildFolderSection();
    void buildUpdateSection();
    void buildLanguageSection();
    void buildPrivacySection();

    QWidget *makeCategoryRow(const QString &name);
    void addCategory();
    void renameCategory(const QString &oldName, const QString &newName);
    void removeCategory(const QString &name);
    bool askRemoval(const QString &name, int carriers);
    void showUpdateStatus();
    // Every preference this window writes is checked; a failure stays in view until one succeeds.
    void report(const Result<void> &stored);

    ArchiveContext &m_context;
    UpdateManager *m_updates;
    QVBoxLayout *m_sections = nullptr;
    QStringList m_categories;
    QWidget *m_categoryRows = nullptr;
    QVBoxLayout *m_categoryRowsLayout = nullptr;
    QLabel *m_noCategories = nullptr;
    QLineEdit *m_newCategory = nullptr;
    QList<std::function<void()>> m_folderRefreshers;
    QCheckBox *m_automaticUpdates = nullptr;
    QPushButton *m_checkUpdates = nullptr;
    QLabel *m_updateStatus = nullptr;
    QLabel *m_notStored = nullptr;
    QLabel *m_languageNote = nullptr;
};
