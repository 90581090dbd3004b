#pragma once

#include "archive/Result.h"

#include <QCoreApplication>
#include <QImage>
#include <QRectF>
#include <QString>

class QIODevice;

// Lays a title and a plain body out on A4 pages with the footer logo, the page geometry
// of every PDF the program writes, and writes the file atomically.
class StatisticsPdfWriter {
    Q_DECLARE_TR_FUNCTIONS(StatisticsPdfWriter)

public:
    static constexpr qreal pageWidth = 595.2;
    static constexpr qreal pageHeight = 841.8;
    static QRectF textRect() { return {64, 90, pageWidth - 128, pageHeight - 154}; }

    static Result<void> write(const QString &path, const QString &title, const QString &body, const QImage &logo = {});
    // Returns the number of pages written.
    static Result<int> write(QIODevice &device, const QString &title, const QString &body, const QImage &logo = {});
};
