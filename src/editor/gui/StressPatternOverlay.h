#pragma once

#include "verse/VerseLine.h"

#include <QWidget>

class QTextEdit;

// Lies over the text's viewport and writes one line's stresses, 'x' and 'X', above its words.
class StressPatternOverlay : public QWidget {
    Q_OBJECT

public:
    explicit StressPatternOverlay(QTextEdit *view);

    // lineStart: the document position where the line begins. Null hides it.
    void showLine(const VerseLine *line, int lineStart);
    bool isShowingLine() const { return m_hasLine; }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QTextEdit *m_view;
    VerseLine m_line;
    int m_lineStart = 0;
    bool m_hasLine = false;
};
