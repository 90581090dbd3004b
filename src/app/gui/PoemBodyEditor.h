#pragma once

#include <QWidget>

class Poem;

// The editor of a poem's text inside the detail view. The detail view loads a poem into
// it and, on bodyChanged(), saves whatever applyTo() writes; which fields that touches
// (the plain text, the formatted text) is the editor's business.
class PoemBodyEditor : public QWidget {
    Q_OBJECT

public:
    using QWidget::QWidget;

    // Shows the poem's text without reporting a change.
    virtual void showPoem(const Poem &poem) = 0;
    // Takes over a change made elsewhere, unless the text shown is already the poem's.
    virtual void refreshFromPoem(const Poem &poem) = 0;
    virtual void applyTo(Poem &poem) const = 0;
    virtual void clear() = 0;
    virtual void focusText() = 0;

Q_SIGNALS:
    void bodyChanged();
};
