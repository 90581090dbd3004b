#pragma once

#include "archive/Poem.h"
#include "archive/PoemVersion.h"

#include <QTimer>
#include <QWidget>

#include <vector>

class ArchiveContext;
class EditingSession;
class QAction;
class QLabel;
class QListWidget;
class QPushButton;
class QRadioButton;
class QTextBrowser;

// "Fassungen": the kept versions of the poem on screen, newest first, and for the chosen one
// what changed since, word by word, or the version itself. It also owns the editing session
// of that poem, which keeps a version whenever the session ends, shown or not.
class PoemVersionsPanel : public QWidget {
    Q_OBJECT

public:
    explicit PoemVersionsPanel(ArchiveContext &context, QWidget *parent = nullptr);
    ~PoemVersionsPanel() override;

    // The poem now in the detail pane; ends the editing session of the one before.
    void setPoem(const PoemPtr &poem);
    // The window closes: the session ends now.
    void endSession();

    QAction *showAction() const { return m_showAction; }
    QAction *saveAction() const { return m_saveAction; }

Q_SIGNALS:
    void statusMessage(const QString &message);
    void poemCreated(const PoemPtr &poem);
    // Before a version replaces the poem: edits still being typed are saved first.
    void aboutToChangePoem();
    void shownChanged(bool shown);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    void reload();
    void showSelected();
    void restoreSelected();
    void copySelected();
    void saveByHand();
    const PoemVersion *selectedVersion() const;
    void updateButtons();

    ArchiveContext &m_context;
    EditingSession *m_session;
    PoemPtr m_poem;
    std::vector<PoemVersion> m_versions;
    QLabel *m_empty;
    QListWidget *m_list;
    QRadioButton *m_compare;
    QRadioButton *m_whole;
    QTextBrowser *m_view;
    QPushButton *m_restore;
    QPushButton *m_copy;
    QAction *m_showAction;
    QAction *m_saveAction;
    QTimer m_reloadLater;
};
