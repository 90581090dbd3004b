#pragma once

#include <QByteArray>
#include <QString>

// One picture embedded in a DOCX body; sizes in EMU (12700 per point).
struct ExportImage {
    QString relationshipId;
    QString fileName;
    QByteArray data; // PNG
    qint64 widthEmu = 0;
    qint64 heightEmu = 0;
};
