// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QWidget>

class QVBoxLayout;

namespace lapsa {

/// A quiet raised ground with rows on it, a hairline between each two.
class Card final : public QWidget
{
    Q_OBJECT

public:
    explicit Card(QWidget* parent = nullptr);

    /// Takes the row. A hidden one takes no room and no hairline.
    void addRow(QWidget* row);
    /// A text at the start of the line and its control at the end.
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
