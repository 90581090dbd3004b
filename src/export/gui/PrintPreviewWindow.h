#pragma once

#include <QDialog>

class QPdfDocument;
class QPdfView;

// The poem's PDF as it will print, with "Drucken" and "In Vorschau öffnen".
class PrintPreviewWindow : public QDialog {
    Q_OBJECT

public:
    PrintPreviewWindow(const QString &pdfPath, const QString &title, QWidget *parent = nullptr);

    bool isLoaded() const;
    QPdfView *view() const { return m_view; }

Q_SIGNALS:
    void statusMessage(const QString &message);

private:
    void print();
    void openInViewer();

    QString m_pdfPath;
    QString m_title;
    QPdfDocument *m_document = nullptr;
    QPdfView *m_view = nullptr;
};
