// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QWidget>

class QButtonGroup;

namespace lapsa {

/// A choice of one among few texts, all in sight. The keyboard reaches the chosen one and moves the choice with the
/// arrow keys; a screen reader finds radio buttons.
class SegmentedControl final : public QWidget
{
    Q_OBJECT

public:
    /// `name` is what a screen reader calls the whole.
    SegmentedControl(const QString& name, const QStringList& texts, QWidget* parent = nullptr);

    [[nodiscard]] int chosen() const;
    /// Shows a choice made elsewhere; nothing is emitted.
    void setChosen(int index);

signals:
    /// The user chose: by the pointer, a key or a screen reader, which does not click.
    void chosenByUser(int index);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QButtonGroup* m_group;
    bool m_showing = false;
};

} // namespace lapsa
