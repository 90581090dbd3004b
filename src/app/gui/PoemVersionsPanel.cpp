#include "app/gui/PoemVersionsPanel.h"

#include "archive/ArchiveContext.h"
#include "archive/PoemStore.h"
#include "archive/PoemVersions.h"
#include "archive/VerseDiff.h"
#include "editor/EditingSession.h"

#include <QAction>
#include <QButtonGroup>
#include <QHBoxLayout>
#include <QInputDialog>
#include <QKeyEvent>
#include <QLabel>
#include <QListWidget>
#include <QLocale>
#include <QPushButton>
#include <QRadioButton>
#include <QTextBrowser>
#include <QToolButton>
#include <QVBoxLayout>

namespace {

QString wordHtml(const VerseDiff::Word &word)
{
    const QString text = word.text.toHtmlEscaped();
    switch (word.change) {
    case VerseDiff::Change::added:
        return QStringLiteral("<span style=\"background-color:#d7efd2;color:#1f5a1f\">%1</span>").arg(text);
    case VerseDiff::Change::removed:
        return QStringLiteral("<s style=\"color:#a0342c\">%1</s>").arg(text);
    case VerseDiff::Change::kept:
        break;
    }
    return text;
}

QString comparisonHtml(const VerseDiff &diff)
{
    if (!diff.hasChanges())
        return QStringLiteral("<p><i>%1</i></p>").arg(PoemVersionsPanel::tr("Keine Änderungen gegenüber jetzt."));
    QStringList lines;
    for (const VerseDiff::Block &block : diff.foldedBlocks()) {
        if (const auto *folded = std::get_if<VerseDiff::FoldedStanzas>(&block)) {
            lines.append(QStringLiteral("<p style=\"color:#777\"><i>%1</i></p>")
                             .arg(PoemVersionsPanel::tr("… %n unveränderte Strophen", nullptr, folded->count)));
            continue;
        }
        QStringList words;
        for (const VerseDiff::Word &word : std::get<VerseDiff::Line>(block).words)
            words.append(wordHtml(word));
        lines.append(QStringLiteral("<p style=\"margin:0\">%1</p>")
                         .arg(words.isEmpty() ? QStringLiteral("&nbsp;") : words.join(QLatin1Char(' '))));
    }
    return lines.join(QString());
}

QString itemText(const PoemVersion &version)
{
    const QString when = QLocale().toString(version.createdAt.toLocalTime(), QLocale::ShortFormat);
    return QStringLiteral("%1 · %2\n%3")
        .arg(when, version.label(),
             PoemVersionsPanel::tr("+%1 / −%2 Wörter").arg(version.wordsAdded).arg(version.wordsRemoved));
}

} // namespace

PoemVersionsPanel::PoemVersionsPanel(ArchiveContext &context, QWidget *parent)
    : QWidget(parent), m_context(context), m_session(new EditingSession(context, this))
{
    setObjectName(QStringLiteral("versionsPanel"));
    connect(m_session, &EditingSession::recordingFailed, this, [this](const QString &message) {
        Q_EMIT statusMessage(tr("Fassung konnte nicht gesichert werden: %1").arg(message));
    });

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(10, 10, 10, 10);
    layout->setSpacing(8);
    auto *header = new QHBoxLayout;
    auto *title = new QLabel(tr("Fassungen"), this);
    title->setObjectName(QStringLiteral("settingsSection"));
    auto *close = new QToolButton(this);
    close->setObjectName(QStringLiteral("closeVersionsButton"));
    close->setText(QStringLiteral("×"));
    close->setToolTip(tr("Schließen (Esc)"));
    connect(close, &QToolButton::clicked, this, &QWidget::hide);
    header->addWidget(title, 1);
    header->addWidget(close);
    layout->addLayout(header);

    m_empty = new QLabel(tr("Noch keine Fassungen. Eine Fassung entsteht, wenn du ein anderes Gedicht wählst, "
                            "zehn Minuten nicht schreibst oder „Fassung sichern…“ wählst."),
                         this);
    m_empty->setObjectName(QStringLiteral("hintText"));
    m_empty->setAlignment(Qt::AlignTop | Qt::AlignLeft);
    m_empty->setWordWrap(true);
    layout->addWidget(m_empty);

    m_list = new QListWidget(this);
    m_list->setObjectName(QStringLiteral("versionList"));
    m_list->setAccessibleName(tr("Fassungen"));
    m_list->setWordWrap(true);
    m_list->setSpacing(3);
    connect(m_list, &QListWidget::currentRowChanged, this, &PoemVersionsPanel::showSelected);
    layout->addWidget(m_list, 2);

    auto *modes = new QHBoxLayout;
    m_compare = new QRadioButton(tr("Vergleich mit jetzt"), this);
    m_compare->setObjectName(QStringLiteral("versionCompareMode"));
    m_whole = new QRadioButton(tr("Fassung"), this);
    m_whole->setObjectName(QStringLiteral("versionTextMode"));
    m_compare->setChecked(true);
    auto *group = new QButtonGroup(this);
    group->addButton(m_compare);
    group->addButton(m_whole);
    connect(m_compare, &QRadioButton::toggled, this, &PoemVersionsPanel::showSelected);
    modes->addWidget(m_compare);
    modes->addWidget(m_whole);
    modes->addStretch(1);
    layout->addLayout(modes);

    m_view = new QTextBrowser(this);
    m_view->setObjectName(QStringLiteral("versionView"));
    m_view->setAccessibleName(tr("Vergleich"));
    layout->addWidget(m_view, 3);

    m_restore = new QPushButton(tr("Diese Fassung wiederherstellen"), this);
    m_restore->setObjectName(QStringLiteral("restoreVersionButton"));
    connect(m_restore, &QPushButton::clicked, this, &PoemVersionsPanel::restoreSelected);
    m_copy = new QPushButton(tr("Als neues Gedicht"), this);
    m_copy->setObjectName(QStringLiteral("copyVersionButton"));
    connect(m_copy, &QPushButton::clicked, this, &PoemVersionsPanel::copySelected);
    // Stacked, so the long German labels fit the narrow column.
    layout->addWidget(m_restore);
    layout->addWidget(m_copy);

    m_showAction = new QAction(tr("Fassungen"), this);
    m_showAction->setObjectName(QStringLiteral("showVersionsAction"));
    m_showAction->setShortcut(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_V));
    connect(m_showAction, &QAction::triggered, this, [this] {
        show();
        m_list->setFocus();
    });
    m_saveAction = new QAction(tr("Fassung sichern…"), this);
    m_saveAction->setObjectName(QStringLiteral("saveVersionAction"));
    m_saveAction->setShortcut(QKeySequence::Save);
    connect(m_saveAction, &QAction::triggered, this, &PoemVersionsPanel::saveByHand);

    // Typing saves on every keystroke; the list follows a moment later, not on each one.
    m_reloadLater.setSingleShot(true);
    m_reloadLater.setInterval(400);
    connect(&m_reloadLater, &QTimer::timeout, this, &PoemVersionsPanel::reload);
    connect(&m_context, &ArchiveContext::contextDidChange, this, [this] {
        if (isVisible())
            m_reloadLater.start();
    });
    setPoem(nullptr);
    installEventFilter(this);
    for (QWidget *child : findChildren<QWidget *>())
        child->installEventFilter(this);
}

PoemVersionsPanel::~PoemVersionsPanel() = default;

void PoemVersionsPanel::setPoem(const PoemPtr &poem)
{
    // The session of the poem before ends first, so its version is in the list of that poem.
    m_session->begin(poem);
    m_poem = poem;
    const bool writable = !m_context.store().isReadOnly();
    m_showAction->setEnabled(poem != nullptr);
    m_saveAction->setEnabled(poem != nullptr && writable);
    if (isVisible())
        reload();
}

void PoemVersionsPanel::endSession()
{
    m_session->end();
}

void PoemVersionsPanel::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    reload();
    Q_EMIT shownChanged(true);
}

void PoemVersionsPanel::hideEvent(QHideEvent *event)
{
    QWidget::hideEvent(event);
    Q_EMIT shownChanged(false);
}

bool PoemVersionsPanel::eventFilter(QObject *watched, QEvent *event)
{
    // The window's own Escape (leaving the writer mode) would take the key first.
    const bool escape = (event->type() == QEvent::ShortcutOverride || event->type() == QEvent::KeyPress) &&
                        static_cast<QKeyEvent *>(event)->key() == Qt::Key_Escape;
    if (!escape)
        return QWidget::eventFilter(watched, event);
    event->accept();
    if (event->type() == QEvent::KeyPress)
        hide();
    return true;
}

void PoemVersionsPanel::reload()
{
    const qint64 selected = selectedVersion() ? selectedVersion()->number : 0;
    m_versions.clear();
    if (m_poem) {
        auto versions = PoemVersions::list(m_context, *m_poem);
        if (!versions)
            Q_EMIT statusMessage(versions.errorMessage());
        else
            m_versions = std::move(versions.value());
    }
    const QSignalBlocker blocker(m_list);
    m_list->clear();
    int row = m_versions.empty() ? -1 : 0;
    for (size_t i = 0; i < m_versions.size(); ++i) {
        m_list->addItem(itemText(m_versions[i]));
        if (m_versions[i].number == selected)
            row = int(i);
    }
    m_list->setCurrentRow(row);
    m_empty->setVisible(m_versions.empty());
    for (QWidget *part : std::initializer_list<QWidget *>{m_list, m_compare, m_whole, m_view, m_restore, m_copy})
        part->setVisible(!m_versions.empty());
    showSelected();
}

const PoemVersion *PoemVersionsPanel::selectedVersion() const
{
    const int row = m_list->currentRow();
    return row >= 0 && size_t(row) < m_versions.size() ? &m_versions[size_t(row)] : nullptr;
}

void PoemVersionsPanel::updateButtons()
{
    const bool writable = !m_context.store().isReadOnly();
    m_restore->setEnabled(selectedVersion() && m_poem && writable);
    m_copy->setEnabled(selectedVersion() && writable);
}

void PoemVersionsPanel::showSelected()
{
    updateButtons();
    const PoemVersion *summary = selectedVersion();
    if (!summary || !m_poem) {
        m_view->clear();
        return;
    }
    const auto version = PoemVersions::version(m_context, *m_poem, summary->number);
    if (!version) {
        m_view->setPlainText(version.errorMessage());
        return;
    }
    const QString text = version->values.text.value_or(QString());
    if (m_whole->isChecked()) {
        m_view->setPlainText(text);
        return;
    }
    m_view->setHtml(comparisonHtml(VerseDiff::compare(text, m_poem->text().value_or(QString()))));
}

void PoemVersionsPanel::restoreSelected()
{
    const PoemVersion *version = selectedVersion();
    if (!version || !m_poem)
        return;
    const qint64 number = version->number;
    Q_EMIT aboutToChangePoem();
    if (auto restored = PoemVersions::restore(m_context, *m_poem, number); !restored) {
        Q_EMIT statusMessage(tr("Fassung konnte nicht wiederhergestellt werden: %1").arg(restored.errorMessage()));
        return;
    }
    Q_EMIT statusMessage(PoemVersions::restoredText());
    reload();
}

void PoemVersionsPanel::copySelected()
{
    const PoemVersion *summary = selectedVersion();
    if (!summary || !m_poem)
        return;
    const auto version = PoemVersions::version(m_context, *m_poem, summary->number);
    if (!version) {
        Q_EMIT statusMessage(version.errorMessage());
        return;
    }
    const auto copy = PoemVersions::copyAsNewPoem(m_context, *version);
    if (!copy) {
        Q_EMIT statusMessage(tr("Gedicht konnte nicht angelegt werden: %1").arg(copy.errorMessage()));
        return;
    }
    Q_EMIT poemCreated(*copy);
}

void PoemVersionsPanel::saveByHand()
{
    if (!m_poem)
        return;
    bool ok = false;
    const QString name = QInputDialog::getText(window(), tr("Fassung sichern"),
                                               tr("Name der Fassung (freiwillig), z. B. „an Verlag geschickt“:"),
                                               QLineEdit::Normal, QString(), &ok);
    if (!ok)
        return;
    Q_EMIT aboutToChangePoem();
    if (auto saved = PoemVersions::saveByHand(m_context, *m_poem, name); !saved) {
        Q_EMIT statusMessage(tr("Fassung konnte nicht gesichert werden: %1").arg(saved.errorMessage()));
        return;
    }
    Q_EMIT statusMessage(PoemVersions::savedText());
    if (isVisible())
        reload();
}
