// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QWidget>

namespace lapsa {

struct ChooserWay;
class ElidedLabel;
class SymbolButton;

/// The top row of a chooser: the buttons for the way, and where it is.
class ChooserPathRow final : public QWidget
{
    Q_OBJECT

public:
    explicit ChooserPathRow(QWidget* parent = nullptr);

    void showWay(const ChooserWay& way);

signals:
    void back();
    void forward();
    void up();

private:
    [[nodiscard]] SymbolButton* makeButton(const QString& symbol, const QString& help, void (ChooserPathRow::*asked)());

    SymbolButton* m_back;
    SymbolButton* m_forward;
    SymbolButton* m_up;
    ElidedLabel* m_path;
};

} // namespace lapsa
