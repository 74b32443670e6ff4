// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QWidget>

class QButtonGroup;

namespace lapsa {

/// A choice of one from a few visible texts. Tab reaches the chosen one, the arrow keys change the choice, and a
/// screen reader finds radio buttons.
class SegmentedControl final : public QWidget
{
    Q_OBJECT

public:
    /// `name` is the accessible name of the group.
    SegmentedControl(const QString& name, const QStringList& texts, QWidget* parent = nullptr);

    [[nodiscard]] int chosen() const;
    /// Shows a choice made elsewhere, without a signal.
    void setChosen(int index);

signals:
    /// The user chose, by pointer, key or screen reader (which does not click).
    void chosenByUser(int index);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QButtonGroup* m_group;
    bool m_showing = false;
};

} // namespace lapsa
