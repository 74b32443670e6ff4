// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QWidget>

class QVBoxLayout;

namespace lapsa {

/// A heading with a button at the end of its line, and a column of cards below.
class ListSection final : public QWidget
{
    Q_OBJECT

public:
    /// Takes the button.
    ListSection(const QString& heading, QWidget* button, QWidget* parent = nullptr);

    /// Where the cards go.
    [[nodiscard]] QVBoxLayout& column() { return *m_column; }

private:
    QVBoxLayout* m_column;
};

} // namespace lapsa
