#!/usr/bin/env python3
"""Makes mistakes in the adapters of src/platform/macos, one at a time, each of which has to be refused.

Usage: mistakes.py [WORD]   only the mistakes whose description holds the word

Refused means that clang says no for one of the architectures, or that the table of overrides does not hold any more.
Every file is read unchanged first: a check that refuses everything proves nothing.
"""

import sys
import tempfile
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

sys.dont_write_bytecode = True
sys.path.insert(0, str(Path(__file__).resolve().parent))
import overrides  # noqa: E402
import typecheck  # noqa: E402

FOLDER = typecheck.ROOT / "src/platform/macos"

# File, what stands there, what is written instead, and what kind of mistake that is.
MISTAKES = [
    # Selectors.
    ("user_defaults_settings_store", "setInteger:static_cast", "setInt:static_cast", "wrong selector"),
    ("cocoa_application", "setActivationPolicy:static_cast", "setPolicy:static_cast", "wrong selector"),
    ("status_item", "statusItemWithLength:", "statusItemWithWidth:", "wrong selector"),
    ("overlay_drawing", "xRadius:cornerRadius", "radius:cornerRadius", "wrong part of a selector"),
    ("screen_capture_kit_capture_service", "excludingWindows:excluded", "excludingApplications:excluded", "selector that does not exist"),
    ("center_user_notifications", "withCompletionHandler:nil", "completionHandler:nil", "wrong part of a selector"),
    ("looping_player_view", "preferredTrackID:", "trackID:", "wrong part of a selector"),
    ("app_service_login_item", "unregisterAndReturnError:", "unregisterWithError:", "wrong selector"),
    ("cocoa_pasteboard", "[NSPasteboard.generalPasteboard clearContents]", "[NSPasteboard clearContents]", "message to the class instead of its object"),
    ("panel_overlay_surface", "[window_->panel makeKeyAndOrderFront:nil]", "[window_->view makeKeyAndOrderFront:nil]", "message to the wrong object"),
    ("cocoa_pointer", "NSCursor.crosshairCursor", "NSCursor.crossCursor", "property that does not exist"),
    # Types of arguments.
    ("cocoa_pasteboard", "writeObjects:@[ object ]", "writeObjects:object", "object for an array of them"),
    ("cocoa_pasteboard", "setString:stringFrom(text)", "setString:text", "C++ string for a string object"),
    ("overlay_view", "fromView:nil];\n    return", "fromView:self.window];\n    return", "window for a view"),
    ("overlay_view", "[self setNeedsDisplayInRect:changed]", "[self setNeedsDisplayInRect:changed.size]", "size for a rectangle"),
    ("overlay_panel", "static_cast<NSBackingStoreType>(configuration.backing)", "configuration.backing", "number for an enumeration"),
    ("screen_capture_kit_capture_service", "NSMutableArray<SCWindow*>* const excluded", "NSMutableArray<SCDisplay*>* const excluded", "array of other elements"),
    ("screen_capture_kit_capture_service", "initWithDesktopIndependentWindow:windowFrom(filter.window)", "initWithDesktopIndependentWindow:filter.window.windowID", "number for a window"),
    ("screen_capture_kit_capture_service", "(__bridge CFStringRef)colorSpaceName;", "(__bridge CFArrayRef)@[ colorSpaceName ];", "array for a string"),
    ("bitmap_image_encoder", "NSBitmapImageFileTypePNG", "NSPasteboardTypePNG", "string for an enumeration"),
    ("point_sized_image", "size:NSMakeSize(pointSize.width, pointSize.height)", "size:pointSize", "size of ours for one of the system's"),
    ("center_user_notifications", "requestWithIdentifier:stringFrom(request.identifier)", "requestWithIdentifier:NSUUID.UUID", "identifier object for its string"),
    ("vision_text_recognizer", "performRequests:@[ request ] error:&error", "performRequests:request error:&error", "request for an array of them"),
    ("vision_text_recognizer", "error:&error", "error:error", "error for its address"),
    ("vision_text_recognizer", "options:@{}", "options:nil", "nothing where something is needed"),
    ("looping_player_view", "CMTimeRangeMake(kCMTimeZero, asset.duration)", "asset.duration", "time for a range"),
    ("looping_player_view", "playerLooperWithPlayer:player templateItem:item", "playerLooperWithPlayer:item templateItem:player", "swapped arguments"),
    ("looping_player_view", "AVQueuePlayer* const player = [[AVQueuePlayer", "AVPlayer* const player = [[AVQueuePlayer", "player that has no queue"),
    ("foundation_file_manager", "URLsForDirectory:NSDownloadsDirectory", "URLsForDirectory:@\"Downloads\"", "string for an enumeration"),
    ("privacy_permissions", "openURL:page", "openURL:stringFrom(url)", "string for a URL"),
    ("event_tap_keyboard_tap", "CFRunLoopAddSource(CFRunLoopGetMain(), source_,", "CFRunLoopAddSource(CFRunLoopGetMain(), port_,", "port for a source"),
    ("event_tap_keyboard_tap", "static_cast<CGEventTapLocation>(tapLocation)", "static_cast<CGEventTapPlacement>(tapLocation)", "value of another enumeration"),
    ("event_tap_keyboard_tap", "CGEventRef handleTapEvent(CGEventTapProxy /*proxy*/, CGEventType type, CGEventRef event,", "CGEventRef handleTapEvent(CGEventTapProxy /*proxy*/, CGEventRef event, CGEventType type,", "callback with swapped parameters"),
    ("carbon_hot_key_service", "sizeof(hotKeyID),\n                      nullptr, &hotKeyID", "sizeof(hotKeyID), &hotKeyID", "argument left out"),
    ("carbon_hot_key_service", "handlePress, 1, &pressed", "handlePress, &pressed, 1", "swapped arguments"),
    ("carbon_hot_key_service", "::OSStatus handlePress(", "void* handlePress(", "callback of another type"),
    ("cocoa_workspace", "application.processIdentifier", "application.bundleIdentifier", "string for a number"),
    ("cocoa_screen", "rectFrom(screen.frame)", "rectFrom(screen.deviceDescription)", "dictionary for a rectangle"),
    ("image_conversion", "CGContextDrawImage(", "CGContextFillRect(", "function with fewer arguments"),
    ("image_conversion", "space.get(), static_cast<CGBitmapInfo>(info)", "static_cast<CGBitmapInfo>(info), space.get()", "swapped arguments"),
    ("main_bundle", "textFrom(bundle.bundlePath)", "textFrom(bundle.bundleURL)", "URL for a string"),
    ("macos_platform", ".exists = {},", ".exists = &hideTitleBar,", "hook of another type"),
    ("macos_platform", ".hotKeys = hotKeys_,", ".hotKeys = keyMonitor_,", "adapter of another port"),
    ("cocoa_windows", "positioned:NSWindowBelow relativeTo:content", "below:content", "selector that does not exist"),
    ("cocoa_windows", "effect.blendingMode = NSVisualEffectBlendingModeBehindWindow", "effect.blendingMode = NSWindowBelow", "value of another enumeration"),
    ("cocoa_windows", "window.titleVisibility = NSWindowTitleHidden", "window.titleVisibility = NSWindowStyleMaskTitled", "value of another enumeration"),
    # Blocks.
    ("screen_capture_kit_capture_service", "^(CGImageRef image, NSError* error)", "^(NSImage* image, NSError* error)", "block with a wrong parameter"),
    ("screen_capture_kit_capture_service", "^(SCShareableContent* content, NSError* error)", "^(SCShareableContent* content)", "block with a parameter too few"),
    ("center_user_notifications", "^(BOOL granted, NSError*)", "^(NSError*, BOOL granted)", "block with swapped parameters"),
    ("local_key_monitor", "handler:^NSEvent*(NSEvent* event)", "handler:^BOOL(NSEvent* event)", "block with a wrong result"),
    ("vision_text_recognizer", "^(VNRequest* finished, NSError*)", "^(VNObservation* finished, NSError*)", "block with a wrong parameter"),
    ("vision_text_recognizer", "__block std::optional<Lines> lines", "std::optional<Lines> lines", "result that a block cannot write"),
    ("looping_player_view", "^(NSArray<AVAssetTrack*>* tracks, NSError* error)", "^(AVAssetTrack* tracks, NSError* error)", "block with a wrong parameter"),
    ("cocoa_displays", "usingBlock:^(NSNotification*)", "usingBlock:^(NSString*)", "block with a wrong parameter"),
    # Bridges and ownership.
    ("cocoa_screen", "(__bridge_transfer NSString*)CGColorSpaceCopyName(space)", "CGColorSpaceCopyName(space)", "missing bridge cast"),
    ("privacy_permissions", "(__bridge CFDictionaryRef)options", "options", "missing bridge cast"),
    ("privacy_permissions", "(__bridge NSString*)kAXTrustedCheckOptionPrompt", "kAXTrustedCheckOptionPrompt", "missing bridge cast"),
    ("screen_capture_kit_capture_service", "return (__bridge SCWindow*)window.backing.get();", "return window.backing.get();", "missing bridge cast"),
    ("cocoa_windows", "(__bridge NSView*)std::bit_cast<void*>(view)", "std::bit_cast<NSView*>(view)", "missing bridge cast"),
    ("looping_player_view", "(__bridge void*)coordinator_->view", "coordinator_->view", "missing bridge cast"),
    ("reopening", "@property(nonatomic, copy) void (^onReopen)(void);", "@property(nonatomic, weak) int (^onReopen)(void);", "property of another type"),
    # Availability.
    ("screen_capture_kit_capture_service", "return stream;", "stream.includeChildWindows = NO;\n    return stream;", "missing availability check"),
    ("screen_capture_kit_capture_service", "return stream;", "if (@available(macOS 14.0, *)) {\n        stream.includeChildWindows = NO;\n    }\n    return stream;", "availability check for too old a version"),
    ("cocoa_application", "[NSApplication.sharedApplication terminate:nil]", "[NSApplication.sharedApplication terminate]", "argument left out"),
    # Constants.
    ("overlay_view", "NSTrackingActiveAlways", "NSTrackingActiveInKeyWindow", "value of another constant"),
    ("overlay_panel", "NSWindowCollectionBehaviorIgnoresCycle", "NSWindowCollectionBehaviorTransient", "value of another constant"),
    ("event_tap_keyboard_tap", "tapLocation == kCGSessionEventTap", "tapLocation == kCGHIDEventTap", "value of another constant"),
    ("center_user_notifications", "UNAuthorizationOptionAlert |", "UNAuthorizationOptionBadge |", "value of another constant"),
    ("carbon_hot_key_service", "== 'BAR1'", "== '1RAB'", "four characters the wrong way round"),
    ("local_key_monitor", "NSEventMaskKeyDown |", "NSEventMaskKeyUp |", "value of another constant"),
    ("app_service_login_item", "LoginItemStatus::enabled) == SMAppServiceStatusEnabled", "LoginItemStatus::enabled) == SMAppServiceStatusNotFound", "value of another constant"),
    # Overrides.
    ("overlay_panel", "- (BOOL)canBecomeKeyWindow {\n    return YES;\n}\n", "", "forgotten override"),
    ("overlay_panel", "- (BOOL)canBecomeMainWindow {", "- (BOOL)canBecomeMain {", "misspelled override"),
    ("overlay_panel", "- (void)cancelOperation:(id)sender {", "- (void)cancelOperation {\n    id sender = nil;", "override without its parameter"),
    ("overlay_panel", "        [super keyDown:event];\n", "        [self.nextResponder keyUp:event];\n", "inherited method not called"),
    ("overlay_view", "- (void)drawRect:(NSRect)dirtyRect {", "- (void)drawRect:(NSSize)dirtyRect {", "override with a parameter of another type"),
    ("overlay_view", "- (void)drawRect:", "- (void)drawRekt:", "misspelled override"),
    ("overlay_view", "- (void)resetCursorRects {\n}\n", "", "forgotten override"),
    ("overlay_view", "    [super updateTrackingAreas];\n", "", "inherited method not called"),
    ("overlay_view", "- (void)mouseExited:(NSEvent*)event {", "- (void)mouseLeft:(NSEvent*)event {", "misspelled override"),
    ("overlay_view", "- (instancetype)initWithCoder:(NSCoder*)coder {\n    base::fatalError(\"init(coder:) has not been implemented\");\n}\n", "", "forgotten override"),
    ("overlay_view", "self = [super initWithFrame:frame];", "self = [super init];", "initialiser that is not the designated one"),
    ("reopening", "- (BOOL)applicationShouldHandleReopen:(NSApplication*)application hasVisibleWindows:", "- (BOOL)applicationShouldReopen:(NSApplication*)application hasVisibleWindows:", "misspelled method of a delegate"),
    ("reopening", "- (BOOL)applicationShouldHandleReopen:", "- (void)applicationShouldHandleReopen:", "method of a delegate with another result"),
    ("reopening", "delegate = delegate_->object;", "delegate = [[NSObject alloc] init];", "object without the protocol"),
    ("user_defaults_settings_store", "change:(NSDictionary<NSKeyValueChangeKey, id>*)change\n", "changes:(NSDictionary<NSKeyValueChangeKey, id>*)change\n", "misspelled override"),
    # Ports.
    ("looping_player_view", "void LoopingPlayerView::setCornerRadius(double radius)", "void LoopingPlayerView::setCornerRadius(int radius)", "method that the port does not have"),
    ("local_key_monitor", "const std::weak_ptr<Monitors> weakThis = weak_from_this();", "const auto held = weak_from_this();\n            const auto& weakThis = held;", "reference in a block"),
    ("local_key_monitor", ".keyCode = event.keyCode,", ".keyCode = event.characters,", "string for a number"),
]


def source(name):
    return FOLDER / f"{name}.mm"


def refusal(text, path, targets=typecheck.TARGETS):
    """Why `text` in place of the file at `path` is refused; nothing when it is not."""
    found = overrides.check({path: text})
    if found:
        return found[0]
    with tempfile.NamedTemporaryFile("w", suffix=".mm") as changed:
        changed.write(text)
        changed.flush()
        for target in reversed(targets):
            clean, words = typecheck.check(changed.name, target)
            if not clean:
                return next((line.split("error: ")[-1] for line in words.splitlines()
                             if "error: " in line), words)
    return None


def unchanged(name):
    why = refusal(source(name).read_text(), source(name), typecheck.TARGETS[:1])
    return f"{name}: refused as it is: {why}" if why else None


def mistaken(mistake):
    name, old, new, what = mistake
    text = source(name).read_text()
    if text.count(old) == 0:
        return f"{name}: {what}: the text to be changed is not there: {old!r}", None
    why = refusal(text.replace(old, new, 1), source(name))
    return (None if why else f"{name}: not refused: {what}"), why


def main():
    chosen = [mistake for mistake in MISTAKES if len(sys.argv) < 2 or sys.argv[1] in mistake[3]]
    with ThreadPoolExecutor() as pool:
        healthy = pool.map(unchanged, sorted({mistake[0] for mistake in chosen}))
        failures = []
        for mistake, (failure, why) in zip(chosen, pool.map(mistaken, chosen)):
            print(f"{mistake[0]}: {mistake[3]}: {why}" if why else failure, flush=True)
            failures += [failure] if failure else []
        print(f"{len(chosen)} mistakes, {len(chosen) - len(failures)} refused")
        failures += [failure for failure in healthy if failure]
    for failure in failures:
        print(failure)
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
