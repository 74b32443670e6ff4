// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QWidget>

class QVBoxLayout;

namespace lapsa {

/// A raised surface that holds rows, with hairlines between them.
class Card final : public QWidget
{
    Q_OBJECT

public:
    explicit Card(QWidget* parent = nullptr);

    /// Takes ownership of the row. A hidden row takes no space and has no hairline.
    void addRow(QWidget* row);
    /// Adds a row with a text at its start and a control at its end.
    void addRow(const QString& label, QWidget* control);
    void insertRow(int index, QWidget* row);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QVBoxLayout* m_rows;
};

/// A heading with a card under it.
class FormSection final : public QWidget
{
    Q_OBJECT

public:
    explicit FormSection(const QString& heading, QWidget* parent = nullptr);

    [[nodiscard]] Card& card() { return *m_card; }

private:
    Card* m_card;
};

} // namespace lapsa
