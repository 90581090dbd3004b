#pragma once

#include "import/CSVDocument.h"
#include "import/CSVImportResult.h"

#include <optional>

// A CSV file read and parsed, not yet applied: the figures of its status line and, when
// it has rows to apply, the document. Holds no archive object, so it may come from a
// worker thread.
struct CSVPreparedImport {
    CSVImportResult result;
    std::optional<CSVDocument> document;
};
