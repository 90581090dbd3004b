#include "app/gui/PoemDetailView.h"

#include "app/gui/ThemeIcon.h"
#include "archive/AppPreferences.h"
#include "archive/ArchiveContext.h"
#include "archive/CategoryCatalog.h"
#include "archive/PoemEdit.h"
#include "archive/PoemStore.h"
#include "editor/EditorAppearance.h"
#include "editor/gui/PoemEditorPane.h"
#include "editor/gui/RichPoemTextView.h"
#include "export/gui/PoemExportActions.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QFrame>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSignalBlocker>
#include <QStackedWidget>
#include <QStyle>
#include <QToolButton>
#include <QVBoxLayout>
#include <QtDebug>

namespace {

QLabel *fieldLabel(const QString &text, QWidget *parent)
{
    auto *label = new QLabel(text, parent);
    label->setObjectName(QStringLiteral("fieldLabel"));
    return label;
}

QFrame *rule(QWidget *parent)
{
    auto *line = new QFrame(parent);
    line->setFrameShape(QFrame::HLine);
    line->setObjectName(QStringLiteral("detailRule"));
    return line;
}

} // namespace

PoemDetailView::PoemDetailView(ArchiveContext &context, QWidget *parent) : QWidget(parent), m_context(context)
{
    setObjectName(QStringLiteral("detailView"));
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    m_pages = new QStackedWidget(this);
    m_pages->addWidget(makePlaceholderPage());
    m_pages->addWidget(makeEditorPage());
    layout->addWidget(m_pages);
    showPoem(nullptr);
    // Whoever changed the poem (an import, a restore, another program), the fields show
    // it before the next keystroke, which would otherwise save their old values back.
    connect(&m_context, &ArchiveContext::contextDidChange, this, [this](const QSet<qint64> &poemKeys) {
        if (m_poem && !m_applying && poemKeys.contains(m_poem->storeKey()))
            refreshFromPoem();
    });
}

QWidget *PoemDetailView::makePlaceholderPage()
{
    auto *page = new QWidget(this);
    page->setObjectName(QStringLiteral("detailPage"));
    page->setAttribute(Qt::WA_StyledBackground);
    auto *layout = new QVBoxLayout(page);
    layout->addStretch(1);
    auto *title = new QLabel(tr("Kein Gedicht ausgewählt"), page);
    title->setObjectName(QStringLiteral("emptyTitle"));
    title->setAlignment(Qt::AlignCenter);
    auto *text = new QLabel(tr("Wähle links ein Gedicht aus oder lege mit „Neues Gedicht“ ein neues an."), page);
    text->setObjectName(QStringLiteral("emptyText"));
    text->setAlignment(Qt::AlignCenter);
    text->setWordWrap(true);
    layout->addWidget(title);
    layout->addWidget(text);
    layout->addStretch(2);
    return page;
}

QWidget *PoemDetailView::makeEditorPage()
{
    auto *outer = new QWidget(this);
    outer->setObjectName(QStringLiteral("detailPage"));
    outer->setAttribute(Qt::WA_StyledBackground);
    auto *outerLayout = new QHBoxLayout(outer);
    outerLayout->setContentsMargins(0, 0, 0, 0);
    auto *page = new QWidget(outer);
    m_column = page;
    outerLayout->addStretch(0);
    outerLayout->addWidget(page, 1);
    outerLayout->addStretch(0);
    auto *layout = new QVBoxLayout(page);
    // Tight enough that the smallest window still shows eight lines of the poem.
    layout->setContentsMargins(28, 12, 28, 8);
    layout->setSpacing(6);

    m_writerBar = new QWidget(page);
    auto *writerLayout = new QHBoxLayout(m_writerBar);
    writerLayout->setContentsMargins(0, 0, 0, 0);
    auto *writerLabel = new QLabel(tr("Schreibmodus"), m_writerBar);
    writerLabel->setObjectName(QStringLiteral("fieldLabel"));
    auto *leave =
        new QPushButton(ThemeIcon::named(QStringLiteral("view-restore")), tr("Schreibmodus beenden"), m_writerBar);
    leave->setObjectName(QStringLiteral("leaveWriterMode"));
    leave->setToolTip(tr("Zurück zur Bibliothek (Esc)"));
    connect(leave, &QPushButton::clicked, this, &PoemDetailView::leaveWriterModeRequested);
    writerLayout->addWidget(writerLabel);
    writerLayout->addStretch(1);
    writerLayout->addWidget(leave);
    m_writerBar->hide();
    layout->addWidget(m_writerBar);

    m_title = new QLineEdit(page);
    m_title->setObjectName(QStringLiteral("titleField"));
    m_title->setPlaceholderText(tr("Titel"));
    m_title->setFrame(false);
    QFont titleFont = m_title->font();
    titleFont.setPointSizeF(titleFont.pointSizeF() * 1.6);
    titleFont.setWeight(QFont::DemiBold);
    m_title->setFont(titleFont);
    connect(m_title, &QLineEdit::textEdited, this,
            [this](const QString &title) { applyEdit([title](Poem &poem) { PoemEdit::setTitle(poem, title); }); });
    connect(m_title, &QLineEdit::returnPressed, this, &PoemDetailView::focusBody);
    layout->addWidget(m_title);

    auto *meta = new QGridLayout;
    meta->setHorizontalSpacing(10);
    meta->setVerticalSpacing(6);
    meta->setColumnStretch(1, 1);

    m_category = new QComboBox(page);
    m_category->setObjectName(QStringLiteral("categoryField"));
    m_category->setEditable(true);
    m_category->setInsertPolicy(QComboBox::NoInsert);
    m_category->lineEdit()->setPlaceholderText(tr("Ohne Kategorie"));
    m_category->setMinimumContentsLength(14);
    m_category->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    connect(m_category, &QComboBox::activated, this, [this] { commitCategory(); });
    connect(m_category->lineEdit(), &QLineEdit::editingFinished, this, [this] { commitCategory(); });
    m_category->setMinimumWidth(220);
    m_category->setMaximumWidth(340);
    auto *categoryRow = new QHBoxLayout;
    categoryRow->addWidget(m_category, 1);
    categoryRow->addStretch(0);
    meta->addWidget(fieldLabel(tr("Kategorie"), page), 0, 0);
    meta->addLayout(categoryRow, 0, 1);

    m_date = new QDateEdit(page);
    m_date->setObjectName(QStringLiteral("dateField"));
    m_date->setCalendarPopup(true);
    m_date->setDisplayFormat(tr("dd.MM.yyyy"));
    connect(m_date, &QDateEdit::dateChanged, this, [this](const QDate &day) {
        if (m_loading || m_noDate->isChecked())
            return;
        applyEdit([day](Poem &poem) {
            const QTime time = poem.date() ? poem.date()->toLocalTime().time() : QTime(12, 0);
            poem.setDate(QDateTime(day, time).toUTC());
        });
    });
    m_noDate = new QCheckBox(tr("Ohne Datum"), page);
    m_noDate->setObjectName(QStringLiteral("noDateToggle"));
    connect(m_noDate, &QCheckBox::toggled, this, [this](bool noDate) {
        m_date->setEnabled(!noDate);
        if (m_loading)
            return;
        const QDate day = m_date->date();
        applyEdit([noDate, day](Poem &poem) {
            poem.setDate(noDate ? std::nullopt : std::optional<QDateTime>(QDateTime(day, QTime(12, 0)).toUTC()));
        });
    });
    auto *dateRow = new QHBoxLayout;
    dateRow->setSpacing(10);
    dateRow->addWidget(m_date);
    dateRow->addWidget(m_noDate);
    dateRow->addStretch(1);
    meta->addWidget(fieldLabel(tr("Datum"), page), 1, 0);
    meta->addLayout(dateRow, 1, 1);

    m_published = new QCheckBox(tr("Veröffentlicht"), page);
    m_published->setObjectName(QStringLiteral("publishedToggle"));
    connect(m_published, &QCheckBox::toggled, this, [this](bool on) {
        if (!m_loading)
            applyEdit([on](Poem &poem) { poem.setPublished(on); });
    });
    m_podcast = new QCheckBox(tr("Podcast"), page);
    m_podcast->setObjectName(QStringLiteral("podcastToggle"));
    connect(m_podcast, &QCheckBox::toggled, this, [this](bool on) {
        if (!m_loading)
            applyEdit([on](Poem &poem) { poem.setInPodcast(on); });
    });
    auto *flags = new QHBoxLayout;
    flags->setSpacing(18);
    flags->addWidget(m_published);
    flags->addWidget(m_podcast);
    flags->addStretch(1);
    meta->addWidget(fieldLabel(tr("Status"), page), 2, 0);
    meta->addLayout(flags, 2, 1);
    layout->addLayout(meta);
    layout->addWidget(rule(page));

    // The editor pane writes the text itself (formatted and plain in step, one save per edit).
    m_editor = new PoemEditorPane(m_context, page);
    // The library window is light; the paper appearance is the one that belongs on it.
    m_editor->setAppearance(EditorAppearance::paper);
    m_editor->setSaveStatusShown(false);
    connect(m_editor, &PoemEditorPane::saveStatusChanged, this,
            [this](const QString &status) { setSaveStatus(status, status != tr("Gespeichert")); });
    connect(m_editor, &PoemEditorPane::poemChanged, this, [this] { Q_EMIT poemChanged(); });
    connect(m_editor, &PoemEditorPane::duplicateRequested, this, &PoemDetailView::duplicateRequested);
    connect(m_editor, &PoemEditorPane::statusMessage, this, &PoemDetailView::statusMessage);
    connect(m_editor, &PoemEditorPane::writerModeChanged, this, &PoemDetailView::writerModeRequested);
    layout->addWidget(m_editor, 1);

    m_notesSection = new QWidget(page);
    auto *notesLayout = new QVBoxLayout(m_notesSection);
    notesLayout->setContentsMargins(0, 0, 0, 0);
    notesLayout->setSpacing(10);
    notesLayout->addWidget(rule(m_notesSection));
    notesLayout->addWidget(fieldLabel(tr("Notizen"), m_notesSection));
    m_notes = new QPlainTextEdit(m_notesSection);
    m_notes->setObjectName(QStringLiteral("notesField"));
    m_notes->setPlaceholderText(tr("Gedanken, Quellen, Fassungen – nur für dich"));
    m_notes->setFixedHeight(78);
    m_notes->setTabChangesFocus(true);
    connect(m_notes, &QPlainTextEdit::textChanged, this, [this] {
        if (m_loading)
            return;
        const QString notes = m_notes->toPlainText();
        applyEdit([notes](Poem &poem) { poem.setWriterNotes(notes); });
    });
    notesLayout->addWidget(m_notes);
    layout->addWidget(m_notesSection);

    auto *footer = new QHBoxLayout;
    footer->setSpacing(8);
    m_duplicate = new QPushButton(ThemeIcon::named(QStringLiteral("edit-copy")), tr("Duplizieren"), page);
    m_duplicate->setObjectName(QStringLiteral("duplicateButton"));
    connect(m_duplicate, &QPushButton::clicked, this, &PoemDetailView::duplicateRequested);
    m_trash = new QPushButton(ThemeIcon::named(QStringLiteral("user-trash")), tr("In den Papierkorb"), page);
    m_trash->setObjectName(QStringLiteral("trashPoemButton"));
    connect(m_trash, &QPushButton::clicked, this, &PoemDetailView::trashRequested);
    // Commits a category still being typed, so the export shows what the fields show.
    m_exportActions = new PoemExportActions(
        [this] {
            commitPendingEdits();
            return m_poem;
        },
        this);
    connect(m_exportActions, &PoemExportActions::statusMessage, this, &PoemDetailView::statusMessage);
    connect(m_exportActions, &PoemExportActions::fileWritten, this, &PoemDetailView::fileWritten);
    auto *exportButton = new QToolButton(page);
    exportButton->setObjectName(QStringLiteral("exportButton"));
    exportButton->setText(tr("Exportieren"));
    exportButton->setIcon(ThemeIcon::named(QStringLiteral("document-save-as")));
    exportButton->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    exportButton->setPopupMode(QToolButton::InstantPopup);
    exportButton->setMenu(m_exportActions->exportMenu());
    m_importText = new QPushButton(ThemeIcon::named(QStringLiteral("document-import")), tr("Text importieren…"), page);
    m_importText->setObjectName(QStringLiteral("importTextButton"));
    m_importText->setToolTip(tr("Den Text dieses Gedichts aus einer DOCX-, PDF- oder Textdatei übernehmen"));
    connect(m_importText, &QPushButton::clicked, this, &PoemDetailView::textImportRequested);
    auto *versions = new QPushButton(ThemeIcon::named(QStringLiteral("document-open-recent")), tr("Fassungen"), page);
    versions->setObjectName(QStringLiteral("versionsButton"));
    versions->setToolTip(tr("Frühere Fassungen dieses Gedichts vergleichen und zurückholen"));
    connect(versions, &QPushButton::clicked, this, &PoemDetailView::versionsRequested);
    m_saveStatus = new QLabel(page);
    m_saveStatus->setObjectName(QStringLiteral("saveStatus"));
    footer->addWidget(m_duplicate);
    footer->addWidget(m_trash);
    footer->addWidget(exportButton);
    footer->addWidget(m_importText);
    footer->addWidget(versions);
    footer->addStretch(1);
    footer->addWidget(m_saveStatus);
    layout->addLayout(footer);
    return outer;
}

void PoemDetailView::showPoem(const PoemPtr &poem)
{
    m_poem = poem;
    setSaveStatus(QString(), false);
    if (!m_poem) {
        m_pages->setCurrentIndex(0);
        m_editor->setPoem(nullptr);
        return;
    }
    reloadCategories();
    showFields();
    // A read-only archive shows its poems as they are; nothing invites a change it cannot keep.
    const bool readOnly = m_context.store().isReadOnly();
    m_editor->setEditable(!m_poem->isInTrash() && !readOnly);
    for (QWidget *field :
         std::initializer_list<QWidget *>{m_title, m_category, m_noDate, m_published, m_podcast, m_duplicate, m_trash})
        field->setEnabled(!readOnly);
    m_notes->setReadOnly(readOnly);
    m_importText->setEnabled(!m_poem->isInTrash() && !readOnly);
    m_editor->setPoem(m_poem);
    m_pages->setCurrentIndex(1);
}

void PoemDetailView::showFields()
{
    m_loading = true;
    const Poem &poem = *m_poem;
    if (m_title->text() != poem.title().value_or(QString())) {
        m_title->setText(poem.title().value_or(QString()));
        // A title longer than the field shows its beginning, which names the poem.
        if (!m_title->hasFocus())
            m_title->setCursorPosition(0);
    }
    m_category->setEditText(poem.category().value_or(QString()));
    m_noDate->setChecked(!poem.date().has_value());
    m_date->setEnabled(poem.date().has_value() && !m_context.store().isReadOnly());
    m_date->setDate(poem.date() ? poem.date()->toLocalTime().date() : QDate::currentDate());
    m_published->setChecked(poem.isPublished());
    m_podcast->setChecked(poem.inPodcast());
    if (m_notes->toPlainText() != poem.writerNotes().value_or(QString()))
        m_notes->setPlainText(poem.writerNotes().value_or(QString()));
    m_loading = false;
}

void PoemDetailView::refreshFromPoem()
{
    if (!m_poem || m_poem->context() != &m_context)
        return;
    const bool categoryBeingTyped = m_category->lineEdit()->hasFocus();
    const QString typedCategory = m_category->currentText();
    showFields();
    if (categoryBeingTyped) {
        const QSignalBlocker blocker(m_category);
        m_category->setEditText(typedCategory);
    }
    // The editor pane follows saved changes of its poem by itself.
}

void PoemDetailView::reloadCategories()
{
    const QSignalBlocker blocker(m_category);
    const QString current = m_category->currentText();
    m_category->clear();
    QStringList names = AppPreferences::poemCategories();
    if (m_poem && m_poem->category() && !m_poem->category()->trimmed().isEmpty() &&
        !names.contains(m_poem->category()->trimmed()))
        names.append(m_poem->category()->trimmed());
    m_category->addItems(names);
    m_category->setEditText(current);
}

void PoemDetailView::commitCategory()
{
    if (!m_poem || m_loading)
        return;
    const QString typed = m_category->currentText().trimmed();
    const std::optional<QString> category = typed.isEmpty() ? std::nullopt : std::optional<QString>(typed);
    const bool unchanged =
        m_poem->category() == category || (!category && m_poem->category().value_or(QString()).trimmed().isEmpty());
    if (unchanged)
        return;
    applyEdit([category](Poem &poem) { poem.setCategory(category); });
    // A name typed here is offered again next time, in every poem.
    if (!category)
        return;
    const auto adopted = CategoryCatalog::adoptCategories({*category});
    if (!adopted)
        setSaveStatus(adopted.errorMessage(), true);
    else if (*adopted > 0)
        reloadCategories();
}

void PoemDetailView::commitPendingEdits()
{
    commitCategory();
}

void PoemDetailView::applyEdit(const std::function<void(Poem &)> &change)
{
    if (!m_poem || m_loading)
        return;
    // The fields already show what this edit saves.
    m_applying = true;
    const auto saved = PoemEdit::apply(m_context, *m_poem, change, QDateTime::currentDateTimeUtc());
    m_applying = false;
    if (saved) {
        setSaveStatus(tr("Gespeichert"), false);
    } else {
        // The change stays in memory and goes with the next save that succeeds.
        qWarning().noquote() << QStringLiteral("apply/save failed: %1").arg(saved.error().forLog());
        setSaveStatus(tr("Nicht gespeichert: %1").arg(saved.errorMessage()), true);
    }
    Q_EMIT poemChanged();
}

void PoemDetailView::setSaveStatus(const QString &text, bool failed)
{
    m_saveStatus->setText(text);
    m_saveStatus->setProperty("failed", failed);
    m_saveStatus->style()->unpolish(m_saveStatus);
    m_saveStatus->style()->polish(m_saveStatus);
}

QString PoemDetailView::saveStatus() const
{
    return m_saveStatus->text();
}

void PoemDetailView::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    fitFooter(event->size().width());
    // In a narrow column the poem's lines need the room more than the page edges do.
    const int side = event->size().width() < narrowWidth ? 12 : 28;
    m_column->layout()->setContentsMargins(side, 12, side, 8);
    // On a short window the poem's own lines come first: the notes move into the editor's
    // notes pane ("Notizen" in the view menu), as in writer mode.
    const bool compact = height() < compactHeight;
    if (compact == m_compact)
        return;
    m_compact = compact;
    showNotesSection();
}

// A narrow column keeps the buttons found only here; duplicating and trashing stay in the
// window's toolbar right above, so no button is cut off.
void PoemDetailView::fitFooter(int width)
{
    int needed = 2 * 28 + 4 * 8 + m_saveStatus->sizeHint().width();
    const QWidget *exportButton = findChild<QWidget *>(QStringLiteral("exportButton"));
    for (const QWidget *button :
         std::initializer_list<const QWidget *>{m_duplicate, m_trash, exportButton, m_importText})
        needed += button->sizeHint().width();
    const bool roomy = width >= needed;
    m_duplicate->setVisible(roomy);
    m_trash->setVisible(roomy);
}

void PoemDetailView::showNotesSection()
{
    m_notesSection->setVisible(!m_writerMode && !m_compact);
    if (!m_writerMode && !m_compact)
        m_editor->setWriterNotesVisible(false);
}

void PoemDetailView::setWriterMode(bool active)
{
    m_writerBar->setVisible(active);
    m_writerMode = active;
    // In writer mode the notes live in the editor's own notes pane, shown on demand.
    m_editor->setWriterMode(active);
    showNotesSection();
    // A line of verse reads best in a column, not across a whole screen.
    m_column->setMaximumWidth(active ? writerColumnWidth : QWIDGETSIZE_MAX);
}

void PoemDetailView::focusTitle()
{
    m_title->setFocus(Qt::OtherFocusReason);
}

void PoemDetailView::setSearchHighlight(const QString &text)
{
    m_editor->setSearchHighlight(text);
}

void PoemDetailView::focusBody()
{
    m_editor->textView()->setFocus(Qt::OtherFocusReason);
}
