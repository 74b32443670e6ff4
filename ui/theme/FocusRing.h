// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QPointer>
#include <QWidget>

namespace lapsa {

/// Sets the corner radius of a widget's focus ring, measured at the widget's edge.
void setFocusRadius(QWidget& widget, int radius);

/// The widget shows by itself which of its parts has the focus: it gets no ring.
void drawFocusByItself(QWidget& widget);

/// The ring around a window's focused control, drawn outside the control and on top of everything. Shown from the first
/// focus change by keyboard until the window closes; for text fields, always.
class FocusRing final : public QWidget
{
    Q_OBJECT

public:
    /// `window` becomes its parent.
    explicit FocusRing(QWidget& window);

    /// How far the ring extends beyond the control.
    static constexpr int reach = 4;

    bool eventFilter(QObject* watched, QEvent* event) override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void follow(QWidget* target);
    void place();
    [[nodiscard]] QRect visiblePart() const;

    QPointer<QWidget> m_target;
};

} // namespace lapsa
