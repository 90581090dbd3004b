#include "import/gui/ImportReviewWindow.h"

#include "archive/ArchiveContext.h"
#include "archive/MessageText.h"
#include "import/PoemSnapshot.h"
#include "import/gui/ChoiceColumnDelegate.h"
#include "import/gui/ImportProposalTableModel.h"
#include "import/gui/PoemPickerDialog.h"
#include "import/gui/ProposalFilterProxyModel.h"

#include <QActionGroup>
#include <QButtonGroup>
#include <QCheckBox>
#include <QDoubleSpinBox>
#include <QFontMetrics>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QMenu>
#include <QProgressBar>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QShortcut>
#include <QStackedWidget>
#include <QTableView>
#include <QToolButton>
#include <QVBoxLayout>

namespace {

constexpr int minimumTimeoutSeconds = 1;
constexpr int maximumTimeoutSeconds = 120;

QLabel *hintLabel(const QString &text, QWidget *parent)
{
    auto *label = new QLabel(text, parent);
    label->setWordWrap(true);
    label->setForegroundRole(QPalette::PlaceholderText);
    QFont font = label->font();
    font.setPointSizeF(font.pointSizeF() * 0.9);
    label->setFont(font);
    return label;
}

QDoubleSpinBox *scoreBox(double value, QWidget *parent)
{
    auto *box = new QDoubleSpinBox(parent);
    box->setRange(0.0, 1.0);
    box->setSingleStep(0.01);
    box->setDecimals(2);
    box->setValue(value);
    return box;
}

// A stepper as the options table describes it: the value lives in the label.
QWidget *timeoutStepper(QLabel *label, int &seconds, const std::function<QString(int)> &text, QWidget *parent)
{
    auto *row = new QWidget(parent);
    auto *layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    auto *less = new QToolButton(row);
    auto *more = new QToolButton(row);
    less->setText(QStringLiteral("−"));
    more->setText(QStringLiteral("+"));
    less->setAutoRepeat(true);
    more->setAutoRepeat(true);
    label->setText(text(seconds));
    layout->addWidget(label);
    layout->addWidget(less);
    layout->addWidget(more);
    layout->addStretch();
    const auto step = [label, &seconds, text, less, more](int delta) {
        seconds = std::clamp(seconds + delta, minimumTimeoutSeconds, maximumTimeoutSeconds);
        label->setText(text(seconds));
        less->setEnabled(seconds > minimumTimeoutSeconds);
        more->setEnabled(seconds < maximumTimeoutSeconds);
    };
    QObject::connect(less, &QToolButton::clicked, row, [step] { step(-1); });
    QObject::connect(more, &QToolButton::clicked, row, [step] { step(+1); });
    return row;
}

// The options' three columns are wider than a small screen; they scroll, the buttons stay.
QScrollArea *scrollingSideways(QWidget *content)
{
    auto *scroll = new QScrollArea(content->parentWidget());
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setWidgetResizable(true);
    scroll->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll->setWidget(content);
    scroll->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    scroll->setFixedHeight(content->sizeHint().height() + scroll->horizontalScrollBar()->sizeHint().height());
    return scroll;
}

} // namespace

ImportReviewWindow::ImportReviewWindow(ArchiveContext &context, const FolderScanOutcome &scan, QWidget *parent)
    : QDialog(parent), m_context(context), m_folder(scan.folder), m_imagesOnly(scan.imagesOnly),
      m_unreadableFiles(scan.unreadableFiles)
{
    setWindowTitle(m_imagesOnly ? tr("Bildimport prüfen") : tr("Textimport prüfen"));
    resize(980, m_imagesOnly ? 620 : 760);
    setSizeGripEnabled(true);

    m_model = new ImportProposalTableModel(
        scan.proposals, [this](const QString &uri) { return poemTitle(uri); }, this);
    m_filtered = new ProposalFilterProxyModel(this);
    m_filtered->setSourceModel(m_model);
    m_filtered->setSortRole(ImportProposalTableModel::sortRole);
    m_filtered->setSortLocaleAware(true);
    m_filtered->setSortCaseSensitivity(Qt::CaseInsensitive);

    auto *layout = new QVBoxLayout(this);
    layout->setSpacing(10);
    layout->addWidget(makeHeader(scan));
    layout->addWidget(makeFilterBar());
    layout->addWidget(makeList(), 1);
    if (!m_imagesOnly)
        layout->addWidget(scrollingSideways(makeOptions()));
    layout->addWidget(makeFooter());

    connect(m_filtered, &QAbstractItemModel::rowsInserted, this, &ImportReviewWindow::updateVisibleCount);
    connect(m_filtered, &QAbstractItemModel::rowsRemoved, this, &ImportReviewWindow::updateVisibleCount);
    connect(m_filtered, &QAbstractItemModel::modelReset, this, &ImportReviewWindow::updateVisibleCount);
    connect(m_filtered, &QAbstractItemModel::layoutChanged, this, &ImportReviewWindow::updateVisibleCount);
    updateVisibleCount();
    setImportAvailable(false);
}

ImportReviewWindow::~ImportReviewWindow() = default;

QString ImportReviewWindow::headerText(int scannedFilesCount, qsizetype proposalCount)
{
    return tr("Scan: %1 | Vorschläge: %2").arg(scannedFilesCount).arg(proposalCount);
}

QWidget *ImportReviewWindow::makeHeader(const FolderScanOutcome &scan)
{
    auto *header = new QWidget(this);
    auto *layout = new QVBoxLayout(header);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(2);
    auto *title = new QLabel(windowTitle(), header);
    QFont titleFont = title->font();
    titleFont.setBold(true);
    titleFont.setPointSizeF(titleFont.pointSizeF() * 1.3);
    title->setFont(titleFont);
    auto *counts = new QLabel(headerText(scan.scannedFilesCount, scan.proposals.size()), header);
    counts->setObjectName(QStringLiteral("reviewHeader"));
    auto *folder = hintLabel(scan.folder, header);
    folder->setTextInteractionFlags(Qt::TextSelectableByMouse);
    layout->addWidget(title);
    layout->addWidget(counts);
    layout->addWidget(folder);
    return header;
}

QWidget *ImportReviewWindow::makeFilterBar()
{
    auto *bar = new QWidget(this);
    auto *layout = new QHBoxLayout(bar);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    m_filterButtons = new QButtonGroup(bar);
    m_filterButtons->setExclusive(true);
    for (const ProposalFilter filter : allProposalFilters) {
        auto *button = new QToolButton(bar);
        button->setText(displayTitle(filter));
        button->setCheckable(true);
        button->setChecked(filter == m_filtered->filter());
        button->setToolButtonStyle(Qt::ToolButtonTextOnly);
        button->setMinimumWidth(96);
        m_filterButtons->addButton(button, int(filter));
        layout->addWidget(button);
    }
    connect(m_filterButtons, &QButtonGroup::idClicked, this,
            [this](int id) { setFilter(static_cast<ProposalFilter>(id)); });
    layout->addSpacing(16);
    m_visibleCount = hintLabel(QString(), bar);
    m_visibleCount->setWordWrap(false);
    layout->addWidget(m_visibleCount);
    layout->addStretch();
    return bar;
}

QWidget *ImportReviewWindow::makeList()
{
    m_listStack = new QStackedWidget(this);
    m_table = new QTableView(m_listStack);
    m_table->setModel(m_filtered);
    m_table->setItemDelegateForColumn(ImportProposalTableModel::choiceColumn, new ChoiceColumnDelegate(m_table));
    m_table->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_table->setSelectionMode(QAbstractItemView::SingleSelection);
    m_table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_table->setAlternatingRowColors(true);
    m_table->setShowGrid(false);
    m_table->setWordWrap(false);
    m_table->setTextElideMode(Qt::ElideMiddle);
    m_table->setContextMenuPolicy(Qt::CustomContextMenu);
    m_table->verticalHeader()->hide();
    m_table->verticalHeader()->setDefaultSectionSize(m_table->fontMetrics().height() + 16);
    QHeaderView *columns = m_table->horizontalHeader();
    columns->setSectionResizeMode(ImportProposalTableModel::fileColumn, QHeaderView::Stretch);
    columns->setSectionResizeMode(ImportProposalTableModel::suggestionColumn, QHeaderView::Stretch);
    // Wide enough for "100 %" in any row: sizing to the rows in view cut scores off after a filter.
    const QFontMetrics digits(m_table->font());
    const int scoreWidth = std::max(
        digits.horizontalAdvance(ImportProposalTableModel::scoreText(1.0)),
        QFontMetrics(columns->font())
            .horizontalAdvance(m_model->headerData(ImportProposalTableModel::scoreColumn, Qt::Horizontal).toString()));
    columns->setSectionResizeMode(ImportProposalTableModel::scoreColumn, QHeaderView::Fixed);
    columns->resizeSection(ImportProposalTableModel::scoreColumn, scoreWidth + 32);
    columns->setSectionResizeMode(ImportProposalTableModel::choiceColumn, QHeaderView::Interactive);
    columns->resizeSection(ImportProposalTableModel::choiceColumn, 300);
    columns->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    // Sorted by a click on a header; until then in the order the matcher gave.
    columns->setSortIndicator(-1, Qt::AscendingOrder);
    m_table->setSortingEnabled(true);

    connect(m_table, &QTableView::clicked, this, [this](const QModelIndex &index) {
        if (index.column() == ImportProposalTableModel::choiceColumn)
            showChoiceMenu(index);
    });
    connect(m_table, &QTableView::doubleClicked, this, &ImportReviewWindow::showChoiceMenu);
    connect(m_table, &QWidget::customContextMenuRequested, this,
            [this](const QPoint &point) { showChoiceMenu(m_table->indexAt(point)); });
    for (const QKeySequence &key :
         {QKeySequence(Qt::Key_Return), QKeySequence(Qt::Key_Enter), QKeySequence(Qt::Key_Space)}) {
        auto *shortcut = new QShortcut(key, m_table, nullptr, nullptr, Qt::WidgetShortcut);
        connect(shortcut, &QShortcut::activated, this, [this] { showChoiceMenu(m_table->currentIndex()); });
    }

    auto *empty = new QLabel(tr("Keine Vorschläge in dieser Ansicht."), m_listStack);
    empty->setAlignment(Qt::AlignCenter);
    empty->setForegroundRole(QPalette::PlaceholderText);
    m_listStack->addWidget(m_table);
    m_listStack->addWidget(empty);
    return m_listStack;
}

QGroupBox *ImportReviewWindow::makeOptions()
{
    auto *box = new QGroupBox(tr("Importoptionen"), this);
    m_optionsBox = box;
    box->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Maximum);
    auto *columns = new QHBoxLayout(box);
    columns->setSpacing(24);

    // Nested layouts would take the columns' wide spacing.
    auto *general = new QVBoxLayout;
    general->setSpacing(6);
    m_importDOCX = new QCheckBox(ImportReviewOptions::importDOCXLabel(), box);
    m_importPDF = new QCheckBox(ImportReviewOptions::importPDFLabel(), box);
    m_onlyIfEmpty = new QCheckBox(ImportReviewOptions::onlyIfPoemTextEmptyLabel(), box);
    m_docxThenPdf = new QCheckBox(ImportReviewOptions::docxThenPdfOnlyForStillEmptyLabel(), box);
    m_importDOCX->setChecked(m_options.importDOCX);
    m_importPDF->setChecked(m_options.importPDF);
    m_onlyIfEmpty->setChecked(m_options.onlyIfPoemTextEmpty);
    m_docxThenPdf->setChecked(m_options.docxThenPdfOnlyForStillEmpty);
    m_onlyIfEmpty->setToolTip(tr("Ein Gedicht, das schon Text hat, wird übersprungen."));
    m_docxThenPdf->setToolTip(tr("Zwei Durchgänge: PDF nur für Gedichte, die nach dem DOCX-Durchgang noch leer sind."));
    general->addWidget(m_importDOCX);
    general->addWidget(m_importPDF);
    general->addWidget(m_onlyIfEmpty);
    general->addWidget(m_docxThenPdf);
    general->addStretch();

    auto *pdf = new QVBoxLayout;
    pdf->setSpacing(6);
    auto *form = new QFormLayout;
    form->setVerticalSpacing(6);
    form->setFieldGrowthPolicy(QFormLayout::FieldsStayAtSizeHint);
    m_minScore = scoreBox(m_options.minScoreForPDF, box);
    m_minMargin = scoreBox(m_options.minMarginForPDF, box);
    auto *minScoreLabel = new QLabel(ImportReviewOptions::minScoreForPDFLabel(), box);
    auto *minMarginLabel = new QLabel(ImportReviewOptions::minMarginForPDFLabel(), box);
    form->addRow(minScoreLabel, m_minScore);
    form->addRow(minMarginLabel, m_minMargin);
    auto *hint = hintLabel(ImportReviewOptions::pdfRuleHint(), box);
    hint->setWordWrap(false); // a wrapped label would make the whole box tall
    pdf->addLayout(form);
    pdf->addWidget(hint);
    pdf->addStretch();
    m_pdfControls = {m_docxThenPdf, m_minScore, m_minMargin, minScoreLabel, minMarginLabel, hint};

    auto *timeouts = new QVBoxLayout;
    timeouts->setSpacing(6);
    m_timeoutDOCXLabel = new QLabel(box);
    m_timeoutPDFLabel = new QLabel(box);
    timeouts->addWidget(
        timeoutStepper(m_timeoutDOCXLabel, m_options.timeoutDOCX, &ImportReviewOptions::timeoutDOCXText, box));
    timeouts->addWidget(
        timeoutStepper(m_timeoutPDFLabel, m_options.timeoutPDF, &ImportReviewOptions::timeoutPDFText, box));
    timeouts->addStretch();

    columns->addLayout(general);
    columns->addLayout(pdf);
    columns->addLayout(timeouts);
    columns->addStretch();

    connect(m_importPDF, &QCheckBox::toggled, this, &ImportReviewWindow::updatePdfControls);
    updatePdfControls();
    return box;
}

QWidget *ImportReviewWindow::makeFooter()
{
    auto *footer = new QWidget(this);
    auto *layout = new QHBoxLayout(footer);
    layout->setContentsMargins(0, 0, 0, 0);
    auto *texts = new QVBoxLayout;
    m_sharedChoices = new QLabel(footer);
    m_sharedChoices->setObjectName(QStringLiteral("sharedChoiceWarning"));
    m_sharedChoices->setWordWrap(true);
    texts->addWidget(m_sharedChoices);
    const auto showSharedChoices = [this] {
        const int shared = m_model->sharedChoiceCount();
        m_sharedChoices->setText(
            shared == 1
                ? tr("Ein Gedicht ist mehr als einer Datei zugeordnet; übernommen wird nur ein Text.")
                : tr("%1 Gedichte sind mehr als einer Datei zugeordnet; übernommen wird je nur ein Text.").arg(shared));
        m_sharedChoices->setVisible(shared > 0);
    };
    connect(m_model, &ImportProposalTableModel::sharedChoicesChanged, this, showSharedChoices);
    showSharedChoices();
    m_status = new QLabel(footer);
    // A run's summary is one long line; wrapped, it cannot widen the window past the screen.
    m_status->setWordWrap(true);
    m_status->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    m_progress = hintLabel(QString(), footer);
    m_progress->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    m_progressBar = new QProgressBar(footer);
    m_progressBar->setTextVisible(true);
    m_progressBar->setFormat(tr("%v von %m"));
    m_progressBar->hide();
    texts->addWidget(m_status);
    texts->addWidget(m_progressBar);
    texts->addWidget(m_progress);
    layout->addLayout(texts, 1);
    m_cancelButton = new QPushButton(tr("Abbrechen"), footer);
    m_cancelButton->setAutoDefault(false);
    m_cancelButton->setToolTip(tr("Hält nach der Datei an, die gerade gelesen wird; Übernommenes bleibt."));
    m_cancelButton->hide();
    layout->addWidget(m_cancelButton);
    connect(m_cancelButton, &QPushButton::clicked, this, [this] {
        m_cancelButton->setEnabled(false);
        Q_EMIT cancelRequested();
    });
    m_closeButton = new QPushButton(tr("Schließen"), footer);
    m_importButton = new QPushButton(m_imagesOnly ? tr("Bilder anhängen") : tr("Importieren"), footer);
    m_importButton->setDefault(false);
    m_importButton->setAutoDefault(false);
    m_closeButton->setAutoDefault(false);
    layout->addWidget(m_closeButton);
    layout->addWidget(m_importButton);
    connect(m_closeButton, &QPushButton::clicked, this, &QDialog::reject);
    connect(m_importButton, &QPushButton::clicked, this, &ImportReviewWindow::importRequested);
    return footer;
}

const QList<ImportProposal> &ImportReviewWindow::proposals() const
{
    return m_model->proposals();
}

ImportReviewOptions ImportReviewWindow::options() const
{
    ImportReviewOptions options = m_options;
    if (m_imagesOnly)
        return options;
    options.importDOCX = m_importDOCX->isChecked();
    options.importPDF = m_importPDF->isChecked();
    options.onlyIfPoemTextEmpty = m_onlyIfEmpty->isChecked();
    options.docxThenPdfOnlyForStillEmpty = m_docxThenPdf->isChecked();
    options.minScoreForPDF = m_minScore->value();
    options.minMarginForPDF = m_minMargin->value();
    return options;
}

ProposalFilter ImportReviewWindow::filter() const
{
    return m_filtered->filter();
}

void ImportReviewWindow::setFilter(ProposalFilter filter)
{
    m_filtered->setFilter(filter);
    if (QAbstractButton *button = m_filterButtons->button(int(filter)))
        button->setChecked(true);
    updateVisibleCount();
}

QList<qsizetype> ImportReviewWindow::visibleProposalIndices() const
{
    QList<qsizetype> indices;
    for (int row = 0; row < m_filtered->rowCount(); ++row)
        indices.append(m_filtered->mapToSource(m_filtered->index(row, 0)).row());
    return indices;
}

void ImportReviewWindow::updateVisibleCount()
{
    const int shown = m_filtered->rowCount();
    m_visibleCount->setText((shown == 1 ? tr("%1 Datei angezeigt") : tr("%1 Dateien angezeigt")).arg(shown));
    m_listStack->setCurrentIndex(shown == 0 ? 1 : 0);
}

void ImportReviewWindow::updatePdfControls()
{
    const bool pdf = m_importPDF->isChecked() && !m_importing;
    for (QWidget *control : std::as_const(m_pdfControls))
        control->setEnabled(pdf);
}

std::optional<QString> ImportReviewWindow::poemTitle(const QString &poemObjectURI) const
{
    const QUuid id = QUuid::fromString(poemObjectURI);
    if (id.isNull())
        return std::nullopt;
    const PoemPtr poem = m_context.poemWithID(id);
    if (!poem)
        return std::nullopt;
    const QString title = poem->title().value_or(QString());
    return title.trimmed().isEmpty() ? tr("(ohne Titel)") : title;
}

QMenu *ImportReviewWindow::choiceMenu(qsizetype proposalIndex, QWidget *parent)
{
    auto *menu = new QMenu(parent);
    if (proposalIndex < 0 || proposalIndex >= proposals().size())
        return menu;
    const ImportProposal &proposal = proposals().at(proposalIndex);
    auto *choices = new QActionGroup(menu);
    choices->setExclusive(true);
    const auto addChoice = [&](const QString &text, std::optional<QString> uri) {
        QAction *action = menu->addAction(text);
        action->setCheckable(true);
        choices->addAction(action);
        action->setChecked(proposal.chosenPoemObjectURI == uri);
        connect(action, &QAction::triggered, this, [this, proposalIndex, uri] { choose(proposalIndex, uri); });
        return action;
    };
    addChoice(ImportProposalTableModel::noChoiceText(), std::nullopt);
    menu->addSeparator();
    if (proposal.chosenPoemObjectURI && !proposal.chosenCandidateTitle())
        addChoice(m_model->choiceTitle(proposal), proposal.chosenPoemObjectURI);
    for (const MatchCandidate &candidate : proposal.candidates)
        addChoice(tr("%1 — %2").arg(candidate.poemTitle, ImportProposalTableModel::scoreText(candidate.score)),
                  candidate.poemObjectURI);
    if (proposal.candidates.isEmpty()) {
        QAction *none = menu->addAction(tr("Keine Kandidaten gefunden"));
        none->setEnabled(false);
    }
    menu->addSeparator();
    QAction *all = menu->addAction(tr("Aus allen Gedichten wählen…"));
    connect(all, &QAction::triggered, this, [this, proposalIndex] { pickFromAllPoems(proposalIndex); });
    return menu;
}

void ImportReviewWindow::showChoiceMenu(const QModelIndex &proxyIndex)
{
    if (!proxyIndex.isValid() || m_importing)
        return;
    const qsizetype proposalIndex = m_filtered->mapToSource(proxyIndex).row();
    const QModelIndex choiceCell = proxyIndex.siblingAtColumn(ImportProposalTableModel::choiceColumn);
    const QRect cell = m_table->visualRect(choiceCell);
    QMenu *menu = choiceMenu(proposalIndex, this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->setMinimumWidth(cell.width());
    menu->popup(m_table->viewport()->mapToGlobal(cell.bottomLeft()));
}

void ImportReviewWindow::choose(qsizetype proposalIndex, std::optional<QString> poemObjectURI)
{
    m_model->setChoice(proposalIndex, std::move(poemObjectURI));
}

bool ImportReviewWindow::pickFromAllPoems(qsizetype proposalIndex)
{
    m_activeProposalIndex = proposalIndex;
    PoemPickerDialog picker(livePoemSnapshot(m_context), this);
    const bool picked = picker.exec() == QDialog::Accepted && picker.pickedPoemObjectURI();
    if (picked)
        choose(proposalIndex, picker.pickedPoemObjectURI());
    m_activeProposalIndex.reset();
    return picked;
}

void ImportReviewWindow::setImportAvailable(bool available)
{
    m_importAvailable = available;
    m_importButton->setEnabled(available && !m_importing);
}

void ImportReviewWindow::setImporting(bool importing)
{
    m_importing = importing;
    m_importButton->setEnabled(m_importAvailable && !importing);
    m_closeButton->setEnabled(!importing);
    m_cancelButton->setVisible(importing);
    m_cancelButton->setEnabled(importing);
    if (importing) {
        m_progressBar->setRange(0, 0);
        m_progressBar->show();
    }
    m_table->setEnabled(!importing);
    m_filterButtons->buttons().constFirst()->parentWidget()->setEnabled(!importing);
    // The run reads the options once; changing them meanwhile would only mislead.
    if (m_optionsBox)
        m_optionsBox->setEnabled(!importing);
}

void ImportReviewWindow::setStatusText(const QString &text)
{
    m_status->setText(MessageText::shortened(text));
    m_status->setToolTip(MessageText::isShortened(text) ? MessageText::shortened(text, MessageText::tooltipLimit)
                                                        : QString());
}

void ImportReviewWindow::setProgressText(const QString &text)
{
    m_progress->setText(MessageText::shortened(text));
}

void ImportReviewWindow::setProgress(const QString &text, int done, int total)
{
    setProgressText(text);
    m_progressBar->setRange(0, std::max(total, 1));
    m_progressBar->setValue(done);
    m_progressBar->show();
}

void ImportReviewWindow::reject()
{
    if (m_importing)
        return;
    QDialog::reject();
}
