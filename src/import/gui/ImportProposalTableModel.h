#pragma once

#include "import/ImportProposal.h"

#include <QAbstractTableModel>

#include <functional>
#include <optional>

// The review's proposals as table rows. The model owns the list; the review changes only
// the choices, through setChoice.
class ImportProposalTableModel : public QAbstractTableModel {
    Q_OBJECT

public:
    enum Column { fileColumn, suggestionColumn, scoreColumn, choiceColumn, columnTotal };
    static constexpr int proposalIndexRole = Qt::UserRole + 1;
    // What a click on a column header sorts by: scores as numbers, texts as shown.
    static constexpr int sortRole = Qt::UserRole + 2;

    // Titles of chosen poems that are not among a proposal's candidates.
    using TitleLookup = std::function<std::optional<QString>(const QString &poemObjectURI)>;

    ImportProposalTableModel(QList<ImportProposal> proposals, TitleLookup lookup, QObject *parent = nullptr);

    const QList<ImportProposal> &proposals() const { return m_proposals; }
    void setChoice(qsizetype proposalIndex, std::optional<QString> poemObjectURI);
    QString choiceTitle(const ImportProposal &proposal) const;
    // Poems that more than one file is chosen for: only the last file's text would remain.
    int sharedChoiceCount() const;
    bool sharesItsChoice(const ImportProposal &proposal) const;

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

    static QString noChoiceText();
    static QString scoreText(double score);
    static QString sharedChoiceText();

Q_SIGNALS:
    void sharedChoicesChanged();

private:
    void countChoice(const std::optional<QString> &poemObjectURI, int delta);

    QList<ImportProposal> m_proposals;
    TitleLookup m_lookup;
    QHash<QString, int> m_choiceCounts;
};
