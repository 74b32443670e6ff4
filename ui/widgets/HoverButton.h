// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QAbstractButton>
#include <QVariantAnimation>

namespace lapsa {

/// The base of all buttons drawn here: a hover effect that fades in and out, Return as well as Space, and arrow keys
/// that go to the parent. A subclass paints its content.
class HoverButton : public QAbstractButton
{
    Q_OBJECT

public:
    explicit HoverButton(QWidget* parent = nullptr);

    /// 0 at rest, 1 under the pointer, in between during the animation.
    [[nodiscard]] double hoverProgress() const;

    /// Whether Return presses the button too; otherwise the key goes to the parent.
    void setReturnPresses(bool presses) { m_returnPresses = presses; }

    /// For a button with only a symbol: sets the tooltip and the accessible name to the same text.
    void setHelp(const QString& help);

protected:
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    QVariantAnimation m_hover;
    bool m_returnPresses = true;
};

} // namespace lapsa
