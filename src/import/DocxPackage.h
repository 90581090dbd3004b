#pragma once

#include "archive/Result.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QString>

#include <memory>

struct zip;

// Read access to the parts of a DOCX (a ZIP package). Every part is read with a size cap,
// so a small file that inflates to gigabytes stops at the cap instead of filling memory.
class DocxPackage {
    Q_DECLARE_TR_FUNCTIONS(DocxPackage)

public:
    static constexpr qint64 maximumPartSize = 32 * 1024 * 1024;

    static Result<DocxPackage> open(const QString &path);

    bool contains(const QString &partName) const;
    Result<QByteArray> read(const QString &partName, qint64 maximumSize = maximumPartSize) const;

private:
    struct Closer {
        void operator()(zip *archive) const;
    };
    explicit DocxPackage(zip *archive) : m_archive(archive) {}

    std::unique_ptr<zip, Closer> m_archive;
};
