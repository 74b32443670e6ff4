// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QAbstractButton>
#include <QVariantAnimation>

namespace lapsa {

/// What all buttons drawn here have in common: a hover that fades in and out, Return as well as Space, and
/// arrow keys that are left to the surroundings. A subclass paints its content.
class HoverButton : public QAbstractButton
{
    Q_OBJECT

public:
    explicit HoverButton(QWidget* parent = nullptr);

    /// 0 at rest, 1 under the pointer, between them on the way.
    [[nodiscard]] double hoverProgress() const;

    /// Whether Return presses the button too; else it is left to whatever the surroundings do with it.
    void setReturnPresses(bool presses) { m_returnPresses = presses; }

    /// A button that shows only a symbol: tooltip and accessible name are the same text.
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
