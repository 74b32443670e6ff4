// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QWidget>

class QBoxLayout;

namespace lapsa {

class ElidedLabel;
class PushButton;

/// What stands below the list of Recovery: how much there is, or is selected, and what can be done with it. With large
/// text, the count has a line of its own.
class RecoveryFoot final : public QWidget
{
    Q_OBJECT

public:
    explicit RecoveryFoot(QWidget* parent = nullptr);

    [[nodiscard]] QString count() const;
    void setCount(const QString& text);
    /// The buttons are there only while something is selected.
    void setButtonsShown(bool shown);

signals:
    void putBackClicked();
    void deleteClicked();

protected:
    bool event(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void arrange();

    QBoxLayout* m_lines;
    ElidedLabel* m_count;
    PushButton* m_putBack;
    PushButton* m_delete;
};

} // namespace lapsa
