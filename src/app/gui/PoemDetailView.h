#pragma once

#include "archive/Poem.h"

#include <QWidget>

#include <functional>

class ArchiveContext;
class PoemEditorPane;
class PoemExportActions;
class QCheckBox;
class QComboBox;
class QDateEdit;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;
class QStackedWidget;

// The third column: edits the selected poem. Every change is saved at once (touch and
// save); the save status reads "Gespeichert", or tells the failure.
class PoemDetailView : public QWidget {
    Q_OBJECT

public:
    explicit PoemDetailView(ArchiveContext &context, QWidget *parent = nullptr);

    // Null shows the placeholder.
    void showPoem(const PoemPtr &poem);
    const PoemPtr &poem() const { return m_poem; }
    // Takes over changes made elsewhere (an import, a restore) without disturbing typing;
    // runs by itself on the context's notice of the poem.
    void refreshFromPoem();
    // Saves what a field holds but has not handed over yet (a category being typed).
    void commitPendingEdits();
    void reloadCategories();
    void setWriterMode(bool active);
    void focusTitle();
    void focusBody();

    QString saveStatus() const;
    QLineEdit *titleField() const { return m_title; }
    QComboBox *categoryField() const { return m_category; }
    QCheckBox *publishedToggle() const { return m_published; }
    QCheckBox *podcastToggle() const { return m_podcast; }
    QCheckBox *noDateToggle() const { return m_noDate; }
    QPushButton *importTextButton() const { return m_importText; }
    QDateEdit *dateField() const { return m_date; }
    QPlainTextEdit *notesField() const { return m_notes; }
    PoemEditorPane *editorPane() const { return m_editor; }
    PoemExportActions *exportActions() const { return m_exportActions; }
    // The library's search text, marked in the body for display only.
    void setSearchHighlight(const QString &text);

Q_SIGNALS:
    void poemChanged();
    void duplicateRequested();
    void trashRequested();
    void leaveWriterModeRequested();
    void writerModeRequested(bool active);
    // A one-line outcome for the window's status line (e.g. an image that could not be read).
    void statusMessage(const QString &message);
    // An exported file, for the window's "show in file manager".
    void fileWritten(const QString &path);
    // "Text importieren…": a document's text for this poem.
    void textImportRequested();
    void versionsRequested();

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    QWidget *makeEditorPage();
    QWidget *makePlaceholderPage();
    void applyEdit(const std::function<void(Poem &)> &change);
    void commitCategory();
    void showFields();
    void setSaveStatus(const QString &text, bool failed);
    void showNotesSection();
    void fitFooter(int width);

    ArchiveContext &m_context;
    PoemPtr m_poem;
    bool m_loading = false;
    bool m_applying = false;
    static constexpr int writerColumnWidth = 860;
    static constexpr int compactHeight = 600;
    static constexpr int narrowWidth = 560;
    bool m_writerMode = false;
    bool m_compact = false;

    PoemExportActions *m_exportActions = nullptr;
    QStackedWidget *m_pages = nullptr;
    QWidget *m_column = nullptr;
    QWidget *m_writerBar = nullptr;
    QLineEdit *m_title = nullptr;
    QComboBox *m_category = nullptr;
    QDateEdit *m_date = nullptr;
    QCheckBox *m_noDate = nullptr;
    QCheckBox *m_published = nullptr;
    QCheckBox *m_podcast = nullptr;
    QPlainTextEdit *m_notes = nullptr;
    PoemEditorPane *m_editor = nullptr;
    QWidget *m_notesSection = nullptr;
    QLabel *m_saveStatus = nullptr;
    QPushButton *m_duplicate = nullptr;
    QPushButton *m_trash = nullptr;
    QPushButton *m_importText = nullptr;
};
