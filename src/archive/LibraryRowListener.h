#pragma once

#include <QtGlobal>

// What a view of the library rows hears while LibraryBrowser takes over changed poems:
// each step is announced before and confirmed after the rows change, as item models
// need it. A move names the destination as the row the poem goes before, counted before
// it leaves its place.
class LibraryRowListener {
public:
    virtual ~LibraryRowListener() = default;

    virtual void rowsAboutToBeReset() {}
    virtual void rowsReset() {}
    virtual void rowAboutToBeInserted(qsizetype) {}
    virtual void rowInserted() {}
    virtual void rowAboutToBeRemoved(qsizetype) {}
    virtual void rowRemoved() {}
    virtual void rowAboutToBeMoved(qsizetype, qsizetype) {}
    virtual void rowMoved() {}
    virtual void rowChanged(qsizetype) {}
};
