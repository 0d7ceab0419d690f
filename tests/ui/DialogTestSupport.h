#pragma once

// What the tests of the small dialogs share besides the started program: clicks on list
// entries as an operator makes them.

#include "UiTestSupport.h"

#include <QListWidget>
#include <QTest>

namespace vornhale::test {

/// Clicks entry `row` of `list` with the mouse, as a selection that counts must be made.
inline void clickEntry(QListWidget* list, int row)
{
    QListWidgetItem* item = list->item(row);
    list->scrollToItem(item);
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->visualItemRect(item).center());
}

} // namespace vornhale::test
