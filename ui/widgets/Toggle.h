// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "TextStyle.h"

#include <QCheckBox>
#include <QVariantAnimation>

namespace lapsa {

/// A check box drawn as a text with a switch at the end of the line. A click anywhere on the line toggles it.
class Toggle final : public QCheckBox
{
    Q_OBJECT

public:
    explicit Toggle(const QString& text, QWidget* parent = nullptr);

    void setTextStyle(const TextStyle& style);
    /// With a mode other than ElideNone the text stays on one line and is elided; otherwise it wraps.
    void setElideMode(Qt::TextElideMode mode);
    /// Sets the text. Unlike with setText(), an `&` in it is shown as it is.
    void setLabel(const QString& text);
    /// Shows a state that was set elsewhere, without the signal switched().
    void showChecked(bool on);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

    [[nodiscard]] bool hasHeightForWidth() const override { return m_elideMode == Qt::ElideNone; }

    [[nodiscard]] int heightForWidth(int width) const override;

signals:
    /// The user toggled it, by pointer, key or screen reader (which does not click).
    void switched(bool on);

protected:
    void paintEvent(QPaintEvent* event) override;
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    [[nodiscard]] bool hitButton(const QPoint& position) const override;

private:
    [[nodiscard]] QRect switchRect() const;
    void paintSwitch(QPainter& painter) const;
    void paintLabel(QPainter& painter) const;

    QString m_label;
    TextStyle m_style = bodyText;
    Qt::TextElideMode m_elideMode = Qt::ElideNone;
    bool m_showing = false;
    QVariantAnimation m_position;
};

} // namespace lapsa
