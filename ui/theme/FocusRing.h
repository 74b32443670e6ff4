// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QPointer>
#include <QWidget>

namespace lapsa {

/// The corner radius of a widget's focus ring, measured at the widget's edge.
void setFocusRadius(QWidget& widget, int radius);

/// The ring around whatever has the keyboard's focus in a window, drawn outside the control and over everything else.
/// It shows once the focus is moved by the keyboard, until the window closes, and for text fields always.
class FocusRing final : public QWidget
{
    Q_OBJECT

public:
    /// Lives in `window` from now on.
    explicit FocusRing(QWidget& window);

    /// How far the ring reaches beyond the control.
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
