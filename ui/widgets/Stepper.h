// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QSpinBox>
#include <QTimer>

namespace lapsa {

/// Two halves that step a number down and up; the number itself is shown elsewhere. The arrow, Page, Home and End keys
/// work too, and a half that is held down repeats.
class Stepper final : public QSpinBox
{
    Q_OBJECT
    /// The step of a screen reader's increase and decrease. The toolkit's default is a tenth of the range.
    Q_PROPERTY(int stepSize READ singleStep)

public:
    /// `name` is the accessible name.
    explicit Stepper(const QString& name, QWidget* parent = nullptr);

    /// Draws the control fainter because its value has no effect at the moment. It can still be used.
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
    /// -1 or 1 for the half at a position, 0 outside.
    [[nodiscard]] int halfAt(const QPoint& position) const;
    void paintHalf(QPainter& painter, int half) const;
    void stepHeld();

    QTimer m_repeat;
    int m_hovered = 0;
    int m_held = 0;
    bool m_dimmed = false;
};

} // namespace lapsa
