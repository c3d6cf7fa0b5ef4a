#include "platform/macos/status_item.h"

#import <AppKit/AppKit.h>

#include <QMenu>

#include "platform/macos/foundation_text.h"
#include "platform/macos/platform_constants.h"

namespace platform::macos {

struct StatusItem::Item {
    NSStatusItem* item;
};

StatusItem::StatusItem(QMenu& menu) {
    NSStatusItem* const item =
        [NSStatusBar.systemStatusBar statusItemWithLength:NSVariableStatusItemLength];
    NSImage* const symbol = [NSImage imageWithSystemSymbolName:stringFrom(menuBarSymbol)
                                      accessibilityDescription:@"Lumaframe"];
    item.button.image = symbol;
    if (symbol == nil) {
        item.button.title = @"Lumaframe";
    }
    item.menu = menu.toNSMenu();
    item_ = std::make_unique<Item>(Item{item});
}

StatusItem::~StatusItem() {
    [NSStatusBar.systemStatusBar removeStatusItem:item_->item];
}

}  // namespace platform::macos
