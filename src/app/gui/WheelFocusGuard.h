#pragma once

#include <QObject>

// Scrolling through a window must not change the controls that pass under the pointer:
// combo boxes, spin boxes and sliders take the wheel only once they have the focus, and
// until then the wheel scrolls whatever holds them. Installed once on the application.
class WheelFocusGuard : public QObject {
    Q_OBJECT

public:
    explicit WheelFocusGuard(QObject *parent = nullptr);

    // Whether a widget of this kind would change its value under the wheel.
    static bool takesWheelAsInput(const QObject *object);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
};
