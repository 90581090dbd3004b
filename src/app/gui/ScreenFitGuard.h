#pragma once

#include <QObject>
#include <QRect>

// A window that opens larger than the screen hides its own buttons. When a main window or
// dialog is first shown, this fits it into the screen's free area (its content scrolls or
// shrinks; the window never grows past the screen). Installed once on the application.
class ScreenFitGuard : public QObject {
    Q_OBJECT

public:
    explicit ScreenFitGuard(QObject *parent = nullptr);

    // Room the window manager's title bar and borders take around a window.
    static QSize decorationAllowance();
    // Where a window asked for at `wanted` goes within `available`: as large as asked
    // but no larger than the free area (less the decorations), never below `minimum`,
    // and moved inside the area when it would stick out.
    static QRect fittedGeometry(const QRect &wanted, const QSize &minimum, const QRect &available);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
};
