#pragma once

#include "archive/Poem.h"
#include "export/ExportFormat.h"

#include <QObject>

#include <functional>
#include <map>
#include <optional>

class QAction;
class QMenu;
class QWidget;

// Export, print and print preview of the poem shown in the detail pane. The menu and the
// actions are shared by the pane's export button and the window's "Datei" menu. Outcomes
// go to statusMessage as one line; the archive is only read.
class PoemExportActions : public QObject {
    Q_OBJECT

public:
    using PoemSource = std::function<PoemPtr()>;
    PoemExportActions(PoemSource currentPoem, QWidget *window);

    QMenu *exportMenu() const { return m_menu; }
    QAction *exportAction(ExportFormat format) const { return m_exportActions.at(format); }
    QAction *printAction() const { return m_print; }
    QAction *previewAction() const { return m_preview; }
    void setEnabled(bool enabled);

    // The export without the save dialog.
    void exportTo(ExportFormat format, const QString &path);
    void exportPoem(ExportFormat format);
    void print();
    void showPreview();

Q_SIGNALS:
    void statusMessage(const QString &message);
    void fileWritten(const QString &path);

private:
    struct PrintablePoem {
        QString pdfPath;
        QString title;
    };
    // The shown poem as a temporary PDF; a failure is reported with failureText ("…: %1").
    std::optional<PrintablePoem> printablePoem(const QString &failureText);
    QString askForDestination(const Poem &poem, ExportFormat format) const;

    PoemSource m_currentPoem;
    QWidget *m_window;
    QMenu *m_menu;
    std::map<ExportFormat, QAction *> m_exportActions;
    QAction *m_print;
    QAction *m_preview;
};
