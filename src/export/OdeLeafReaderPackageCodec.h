#pragma once

#include "archive/Result.h"
#include "export/OdeLeafReaderPackage.h"

#include <QByteArray>
#include <QCoreApplication>

// The package's bytes in the archive's JSON encoding, the backups' one, and back.
class OdeLeafReaderPackageCodec {
    Q_DECLARE_TR_FUNCTIONS(OdeLeafReaderPackageCodec)

public:
    static QByteArray encode(const OdeLeafReaderPackage &package);
    static Result<OdeLeafReaderPackage> decode(const QByteArray &bytes);
};
