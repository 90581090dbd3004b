#pragma once

#include "import/CSVPreparedImport.h"

#include <QObject>

class ArchiveContext;
class QAction;
class QThread;
class QWidget;

// "CSV-Datei importieren" in the library window: asks for the spreadsheet export, imports
// it and reports the outcome as one status line; the imported poems reach the views
// through the context's change notice. The file is read and parsed on a worker thread:
// the window takes input meanwhile.
class CSVImportActions : public QObject {
    Q_OBJECT

public:
    CSVImportActions(ArchiveContext &context, QWidget *window);
    ~CSVImportActions() override;

    bool isReading() const { return m_reader != nullptr; }
    // Where the file dialog opens: the remembered folder, else Documents where there is one.
    static QString startFolder();

    QAction *importAction() const { return m_import; }

public Q_SLOTS:
    void chooseFileAndImport();
    void importFile(const QString &path);

Q_SIGNALS:
    void statusChanged(const QString &text);
    void busyChanged(bool busy);

protected:
    // Empty when the user cancelled; replaced where no one clicks.
    virtual QString chooseFile(const QString &folder);

private:
    void setBusy(bool busy);
    void finishImport(const CSVPreparedImport &prepared);

    ArchiveContext &m_context;
    QWidget *m_window;
    QAction *m_import;
    QThread *m_reader = nullptr;
};
