// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QSpinBox>
#include <QTimer>

namespace lapsa {

/// Steps a number down or up with the two halves of one control; the number itself is shown elsewhere. The keyboard's
/// arrows, Page, Home and End keys step it too, and a held half repeats.
class Stepper final : public QSpinBox
{
    Q_OBJECT
    /// What the toolkit asks for when a screen reader wants one step; without it that is a tenth of the range.
    Q_PROPERTY(int stepSize READ singleStep)

public:
    /// `name` is what a screen reader calls it.
    explicit Stepper(const QString& name, QWidget* parent = nullptr);

    /// Steps back, because what it sets does not hold now; it works all the same.
    void setDimmed(bool dimmed);

    [[nodiscard]] bool dimmed() const { return m_dimmed; }

    [[nodiscard]] QSize sizeHint() const override;

    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

    /// The halves, in this widget's coordinates.
    [[nodiscard]] QRect decrementRect() const;
    [[nodiscard]] QRect incrementRect() const;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    bool event(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    /// -1 or 1 for the half at a place, 0 outside.
    [[nodiscard]] int halfAt(const QPoint& position) const;
    void paintHalf(QPainter& painter, int half) const;
    void stepHeld();

    QTimer m_repeat;
    int m_hovered = 0;
    int m_held = 0;
    bool m_dimmed = false;
};

} // namespace lapsa
