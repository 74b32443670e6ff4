// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QWidget>

class QVBoxLayout;

namespace lapsa {

class TextLabel;

/// A heading with a button at the end of its line, and a column of cards below.
class ListSection final : public QWidget
{
    Q_OBJECT

public:
    /// Takes ownership of the button.
    ListSection(const QString& heading, QWidget* button, QWidget* parent = nullptr);

    /// How far the button extends above the heading, in logical pixels.
    [[nodiscard]] int overhang() const;

    /// The layout for the cards.
    [[nodiscard]] QVBoxLayout& column() { return *m_column; }

private:
    TextLabel* m_heading;
    QWidget* m_button;
    QVBoxLayout* m_column;
};

} // namespace lapsa
