// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "SheetWorld.h"

#include "FileRowView.h"
#include "ItemTimeView.h"
#include "PushButton.h"
#include "RowIconButton.h"
#include "TextLabel.h"

#include <QTest>

#include <algorithm>

namespace lapsa::test {

using namespace Qt::StringLiterals;

SheetWorld::SheetWorld(std::int64_t minutes)
    : item(addItem(u"a.txt"_s, minutes))
{}

void SheetWorld::open()
{
    QTest::mouseClick(row(0).findChildren<RowIconButton*>().first(), Qt::LeftButton);
    settle();
}

ItemTimeView* SheetWorld::sheet() const
{
    const auto sheets = panel.findChildren<ItemTimeView*>();
    const auto seen = std::ranges::find_if(sheets, [](const ItemTimeView* view) { return view->isVisible(); });
    return seen != sheets.end() ? *seen : nullptr;
}

void SheetWorld::press(const QString& button) const
{
    QTest::mouseClick(&named<PushButton>(*sheet(), button), Qt::LeftButton);
}

QString SheetWorld::choice() const
{
    return sheet()->findChildren<TextLabel*>().at(1)->text();
}

std::chrono::microseconds SheetWorld::remaining() const
{
    return PanelWorld::item(item.path).expiresAt - time.now();
}

} // namespace lapsa::test
