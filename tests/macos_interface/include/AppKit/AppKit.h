#pragma once
#include <Foundation/Foundation.h>
#include <CoreGraphics/CoreGraphics.h>
NS_ASSUME_NONNULL_BEGIN
@class NSApplication, NSWindow, NSPanel, NSView, NSEvent, NSScreen, NSColor, NSColorSpace, NSCursor, NSImage, NSMenu, NSMenuItem, NSFont;
@class NSStatusItem, NSStatusBarButton, NSRunningApplication, NSTrackingArea, NSGraphicsContext, NSPasteboard, NSBitmapImageRep, NSImageSymbolConfiguration, UTType;
@class NSWorkspaceOpenConfiguration, CALayer, NSViewController, NSResponder;
@protocol NSApplicationDelegate, NSWindowDelegate, NSMenuDelegate, NSPasteboardWriting, NSDraggingInfo;

typedef NSString *NSPasteboardType;
typedef NSString *NSPasteboardName;
typedef NSString *NSUserInterfaceItemIdentifier;
typedef NSString *NSSoundName;
typedef NSString *NSImageName;
typedef NSString *NSBitmapImageRepPropertyKey;
typedef NSString *NSAppearanceName;
typedef NSString *NSWindowFrameAutosaveName;
typedef NSInteger NSModalResponse;
typedef NSInteger NSWindowLevel;
typedef CGFloat NSFontWeight;

SUBSET_C_BEGIN
extern NSApplication *_Null_unspecified NSApp;
extern NSNotificationName NSApplicationDidBecomeActiveNotification;
extern NSNotificationName NSApplicationDidResignActiveNotification;
extern NSNotificationName NSApplicationDidFinishLaunchingNotification;
extern NSNotificationName NSApplicationWillTerminateNotification;
extern NSNotificationName NSApplicationDidChangeScreenParametersNotification;
extern NSNotificationName NSWindowWillCloseNotification;
extern NSNotificationName NSWindowDidResignKeyNotification;
extern NSNotificationName NSWindowDidBecomeKeyNotification;
extern NSNotificationName NSWorkspaceDidActivateApplicationNotification;
extern NSNotificationName NSWorkspaceActiveSpaceDidChangeNotification;
extern NSNotificationName NSWorkspaceDidWakeNotification;
extern NSString *const NSWorkspaceApplicationKey;
extern NSPasteboardType const NSPasteboardTypeString;
extern NSPasteboardType const NSPasteboardTypePNG;
extern NSPasteboardType const NSPasteboardTypeTIFF;
extern NSPasteboardType const NSPasteboardTypeFileURL;
extern NSAttributedStringKey const NSFontAttributeName;
extern NSAttributedStringKey const NSForegroundColorAttributeName;
extern NSAttributedStringKey const NSBackgroundColorAttributeName;
extern const NSFontWeight NSFontWeightRegular;
extern const NSFontWeight NSFontWeightMedium;
extern const NSFontWeight NSFontWeightSemibold;
extern const NSFontWeight NSFontWeightBold;
void NSRectFill(NSRect rect);
void NSBeep(void);
SUBSET_C_END

// ---- application
typedef NS_ENUM(NSInteger, NSApplicationActivationPolicy) {
    NSApplicationActivationPolicyRegular, NSApplicationActivationPolicyAccessory, NSApplicationActivationPolicyProhibited
};
typedef NS_OPTIONS(NSUInteger, NSApplicationActivationOptions) { NSApplicationActivateAllWindows = 1 << 0 };
typedef NS_ENUM(NSUInteger, NSApplicationTerminateReply) { NSTerminateCancel = 0, NSTerminateNow = 1, NSTerminateLater = 2 };

@interface NSResponder : NSObject <NSCoding>
- (instancetype)init NS_DESIGNATED_INITIALIZER;
- (nullable instancetype)initWithCoder:(NSCoder *)coder NS_DESIGNATED_INITIALIZER;
@property (nullable, assign) NSResponder *nextResponder;
- (void)mouseDown:(NSEvent *)event;
- (void)rightMouseDown:(NSEvent *)event;
- (void)otherMouseDown:(NSEvent *)event;
- (void)mouseUp:(NSEvent *)event;
- (void)rightMouseUp:(NSEvent *)event;
- (void)mouseMoved:(NSEvent *)event;
- (void)mouseDragged:(NSEvent *)event;
- (void)rightMouseDragged:(NSEvent *)event;
- (void)scrollWheel:(NSEvent *)event;
- (void)mouseEntered:(NSEvent *)event;
- (void)mouseExited:(NSEvent *)event;
- (void)keyDown:(NSEvent *)event;
- (void)keyUp:(NSEvent *)event;
- (void)flagsChanged:(NSEvent *)event;
- (void)cursorUpdate:(NSEvent *)event;
- (BOOL)performKeyEquivalent:(NSEvent *)event;
- (BOOL)tryToPerform:(SEL)action with:(nullable id)object;
@property (readonly) BOOL acceptsFirstResponder;
- (BOOL)becomeFirstResponder;
- (BOOL)resignFirstResponder;
@end
@interface NSResponder (SubsetActions)
- (void)cancelOperation:(nullable id)sender;
@end

@interface NSApplication : NSResponder
@property (class, readonly, strong) __kindof NSApplication *sharedApplication;
@property (nullable, weak) id<NSApplicationDelegate> delegate;
@property (readonly, copy) NSArray<NSWindow *> *windows;
@property (nullable, readonly, weak) NSWindow *keyWindow;
@property (nullable, readonly, weak) NSWindow *mainWindow;
@property (nullable, readonly, strong) NSEvent *currentEvent;
@property (nullable, strong) NSMenu *mainMenu;
@property (null_resettable, strong) NSImage *applicationIconImage;
@property (getter=isActive, readonly) BOOL active;
@property (getter=isHidden, readonly) BOOL hidden;
@property (getter=isRunning, readonly) BOOL running;
- (NSApplicationActivationPolicy)activationPolicy;
- (BOOL)setActivationPolicy:(NSApplicationActivationPolicy)policy;
- (void)activate SINCE(14.0);
- (void)activateIgnoringOtherApps:(BOOL)flag DEPR(10.0, 100000, "use -activate on macOS 14 and later");
- (void)yieldActivationToApplication:(NSRunningApplication *)application SINCE(14.0);
- (void)deactivate;
- (void)hide:(nullable id)sender;
- (void)unhide:(nullable id)sender;
- (void)finishLaunching;
- (void)run;
- (void)stop:(nullable id)sender;
- (void)terminate:(nullable id)sender;
- (void)replyToApplicationShouldTerminate:(BOOL)flag;
- (nullable NSWindow *)windowWithWindowNumber:(NSInteger)number;
- (void)orderFrontStandardAboutPanel:(nullable id)sender;
@end

@protocol NSApplicationDelegate <NSObject>
@optional
- (void)applicationDidFinishLaunching:(NSNotification *)note;
- (void)applicationWillTerminate:(NSNotification *)note;
- (void)applicationDidBecomeActive:(NSNotification *)note;
- (void)applicationDidResignActive:(NSNotification *)note;
- (NSApplicationTerminateReply)applicationShouldTerminate:(NSApplication *)app;
- (BOOL)applicationShouldTerminateAfterLastWindowClosed:(NSApplication *)app;
- (BOOL)applicationShouldHandleReopen:(NSApplication *)app hasVisibleWindows:(BOOL)visible;
- (BOOL)applicationSupportsSecureRestorableState:(NSApplication *)app SINCE(12.0);
- (void)application:(NSApplication *)app openURLs:(NSArray<NSURL *> *)urls;
@end

@interface NSRunningApplication : NSObject
@property (class, readonly, strong) NSRunningApplication *currentApplication;
+ (nullable instancetype)runningApplicationWithProcessIdentifier:(int)pid;
+ (NSArray<NSRunningApplication *> *)runningApplicationsWithBundleIdentifier:(NSString *)identifier;
@property (readonly) int processIdentifier;
@property (nullable, readonly, copy) NSString *localizedName;
@property (nullable, readonly, copy) NSString *bundleIdentifier;
@property (nullable, readonly, copy) NSURL *bundleURL;
@property (readonly, getter=isActive) BOOL active;
@property (readonly, getter=isTerminated) BOOL terminated;
- (BOOL)activateWithOptions:(NSApplicationActivationOptions)options;
- (BOOL)activateFromApplication:(NSRunningApplication *)application options:(NSApplicationActivationOptions)options SINCE(14.0);
- (BOOL)terminate;
@end

@interface NSWorkspace : NSObject
@property (class, readonly, strong) NSWorkspace *sharedWorkspace;
@property (readonly, strong) NSNotificationCenter *notificationCenter;
@property (nullable, readonly, strong) NSRunningApplication *frontmostApplication;
@property (readonly, copy) NSArray<NSRunningApplication *> *runningApplications;
- (BOOL)openURL:(NSURL *)url;
- (void)activateFileViewerSelectingURLs:(NSArray<NSURL *> *)urls;
- (nullable NSURL *)URLForApplicationWithBundleIdentifier:(NSString *)identifier;
@end

// ---- events
typedef NS_ENUM(NSUInteger, NSEventType) {
    NSEventTypeLeftMouseDown = 1, NSEventTypeLeftMouseUp = 2, NSEventTypeRightMouseDown = 3, NSEventTypeRightMouseUp = 4,
    NSEventTypeMouseMoved = 5, NSEventTypeLeftMouseDragged = 6, NSEventTypeRightMouseDragged = 7, NSEventTypeMouseEntered = 8,
    NSEventTypeMouseExited = 9, NSEventTypeKeyDown = 10, NSEventTypeKeyUp = 11, NSEventTypeFlagsChanged = 12,
    NSEventTypeApplicationDefined = 15, NSEventTypeCursorUpdate = 17, NSEventTypeScrollWheel = 22
};
typedef NS_OPTIONS(unsigned long long, NSEventMask) {
    NSEventMaskLeftMouseDown = 1ULL << 1, NSEventMaskLeftMouseUp = 1ULL << 2, NSEventMaskRightMouseDown = 1ULL << 3,
    NSEventMaskRightMouseUp = 1ULL << 4, NSEventMaskMouseMoved = 1ULL << 5, NSEventMaskLeftMouseDragged = 1ULL << 6,
    NSEventMaskKeyDown = 1ULL << 10, NSEventMaskKeyUp = 1ULL << 11, NSEventMaskFlagsChanged = 1ULL << 12,
    NSEventMaskScrollWheel = 1ULL << 22, NSEventMaskAny = ~0ULL
};
typedef NS_OPTIONS(NSUInteger, NSEventModifierFlags) {
    NSEventModifierFlagCapsLock = 1 << 16, NSEventModifierFlagShift = 1 << 17, NSEventModifierFlagControl = 1 << 18,
    NSEventModifierFlagOption = 1 << 19, NSEventModifierFlagCommand = 1 << 20, NSEventModifierFlagNumericPad = 1 << 21,
    NSEventModifierFlagFunction = 1 << 23, NSEventModifierFlagDeviceIndependentFlagsMask = 0xffff0000UL
};
@interface NSEvent : NSObject <NSCopying, NSCoding>
@property (readonly) NSEventType type;
@property (readonly) NSEventModifierFlags modifierFlags;
@property (readonly) NSTimeInterval timestamp;
@property (nullable, readonly, weak) NSWindow *window;
@property (readonly) NSInteger windowNumber;
@property (readonly) NSInteger clickCount;
@property (readonly) NSInteger buttonNumber;
@property (readonly) NSPoint locationInWindow;
@property (readonly) CGFloat scrollingDeltaY;
@property (nullable, readonly, copy) NSString *characters;
@property (nullable, readonly, copy) NSString *charactersIgnoringModifiers;
@property (getter=isARepeat, readonly) BOOL ARepeat;
@property (readonly) unsigned short keyCode;
@property (nullable, readonly) CGEventRef CGEvent NS_RETURNS_INNER_POINTER;
+ (nullable NSEvent *)eventWithCGEvent:(CGEventRef)event;
@property (class, readonly) NSEventModifierFlags modifierFlags;
@property (class, readonly) NSPoint mouseLocation;
@property (class, readonly) NSUInteger pressedMouseButtons;
+ (nullable id)addGlobalMonitorForEventsMatchingMask:(NSEventMask)mask handler:(void (^)(NSEvent *event))block;
+ (nullable id)addLocalMonitorForEventsMatchingMask:(NSEventMask)mask handler:(NSEvent *_Nullable (^)(NSEvent *event))block;
+ (void)removeMonitor:(id)monitor;
@end

// ---- screens, colours, cursors
@interface NSColorSpace : NSObject <NSSecureCoding>
@property (class, readonly, strong) NSColorSpace *sRGBColorSpace;
@property (class, readonly, strong) NSColorSpace *displayP3ColorSpace;
@property (nullable, readonly) CGColorSpaceRef CGColorSpace NS_RETURNS_INNER_POINTER;
- (nullable instancetype)initWithCGColorSpace:(CGColorSpaceRef)space;
@property (nullable, readonly, copy) NSString *localizedName;
@end
typedef NSString *NSDeviceDescriptionKey;
@interface NSScreen : NSObject
@property (class, readonly, copy) NSArray<NSScreen *> *screens;
@property (class, nullable, readonly, strong) NSScreen *mainScreen;
@property (readonly) NSRect frame;
@property (readonly) NSRect visibleFrame;
@property (readonly) CGFloat backingScaleFactor;
@property (nullable, readonly, strong) NSColorSpace *colorSpace;
@property (readonly, copy) NSDictionary<NSDeviceDescriptionKey, id> *deviceDescription;
@property (readonly, copy) NSString *localizedName;
- (NSRect)convertRectToBacking:(NSRect)rect;
- (NSRect)convertRectFromBacking:(NSRect)rect;
@end
@interface NSColor : NSObject <NSCopying, NSSecureCoding>
@property (class, readonly, strong) NSColor *clearColor;
@property (class, readonly, strong) NSColor *blackColor;
@property (class, readonly, strong) NSColor *whiteColor;
@property (class, readonly, strong) NSColor *labelColor;
@property (class, readonly, strong) NSColor *controlAccentColor;
@property (class, readonly, strong) NSColor *windowBackgroundColor;
+ (NSColor *)colorWithSRGBRed:(CGFloat)red green:(CGFloat)green blue:(CGFloat)blue alpha:(CGFloat)alpha;
+ (NSColor *)colorWithWhite:(CGFloat)white alpha:(CGFloat)alpha;
- (NSColor *)colorWithAlphaComponent:(CGFloat)alpha;
@property (readonly) CGColorRef CGColor;
- (void)set;
- (void)setFill;
- (void)setStroke;
@end
@interface NSCursor : NSObject <NSSecureCoding>
@property (class, readonly, strong) NSCursor *arrowCursor;
@property (class, readonly, strong) NSCursor *crosshairCursor;
@property (class, readonly, strong) NSCursor *pointingHandCursor;
@property (class, readonly, strong) NSCursor *currentCursor;
- (instancetype)initWithImage:(NSImage *)image hotSpot:(NSPoint)point NS_DESIGNATED_INITIALIZER;
- (void)set;
- (void)push;
- (void)pop;
+ (void)pop;
+ (void)hide;
+ (void)unhide;
@end

// ---- views and windows
typedef NS_OPTIONS(NSUInteger, NSTrackingAreaOptions) {
    NSTrackingMouseEnteredAndExited = 0x01, NSTrackingMouseMoved = 0x02, NSTrackingCursorUpdate = 0x04,
    NSTrackingActiveWhenFirstResponder = 0x10, NSTrackingActiveInKeyWindow = 0x20, NSTrackingActiveInActiveApp = 0x40,
    NSTrackingActiveAlways = 0x80, NSTrackingAssumeInside = 0x100, NSTrackingInVisibleRect = 0x200, NSTrackingEnabledDuringMouseDrag = 0x400
};
@interface NSTrackingArea : NSObject <NSCopying, NSCoding>
- (instancetype)initWithRect:(NSRect)rect options:(NSTrackingAreaOptions)options owner:(nullable id)owner userInfo:(nullable NSDictionary<id, id> *)info;
@property (readonly) NSRect rect;
@end
typedef NS_OPTIONS(NSUInteger, NSAutoresizingMaskOptions) {
    NSViewNotSizable = 0, NSViewMinXMargin = 1, NSViewWidthSizable = 2, NSViewMaxXMargin = 4, NSViewMinYMargin = 8, NSViewHeightSizable = 16, NSViewMaxYMargin = 32
};
typedef NS_ENUM(NSInteger, NSWindowOrderingMode) { NSWindowAbove = 1, NSWindowBelow = -1, NSWindowOut = 0 };

@interface NSView : NSResponder
- (instancetype)initWithFrame:(NSRect)frame NS_DESIGNATED_INITIALIZER;
- (nullable instancetype)initWithCoder:(NSCoder *)coder NS_DESIGNATED_INITIALIZER;
@property (nullable, readonly, assign) NSWindow *window;
@property (nullable, readonly, assign) NSView *superview;
@property (copy) NSArray<__kindof NSView *> *subviews;
@property NSRect frame;
@property NSRect bounds;
@property (getter=isHidden) BOOL hidden;
@property CGFloat alphaValue;
@property BOOL wantsLayer;
@property (nullable, strong) CALayer *layer;
@property (getter=isFlipped, readonly) BOOL flipped;
@property (getter=isOpaque, readonly) BOOL opaque;
@property BOOL needsDisplay;
@property NSAutoresizingMaskOptions autoresizingMask;
@property (nullable, copy) NSString *toolTip;
@property (readonly, copy) NSArray<NSTrackingArea *> *trackingAreas;
- (void)addSubview:(NSView *)view;
- (void)addSubview:(NSView *)view positioned:(NSWindowOrderingMode)place relativeTo:(nullable NSView *)otherView;
- (void)removeFromSuperview;
- (void)viewDidMoveToWindow;
- (void)viewWillMoveToWindow:(nullable NSWindow *)window;
- (void)setFrameSize:(NSSize)size;
- (void)setFrameOrigin:(NSPoint)origin;
- (void)setNeedsDisplayInRect:(NSRect)rect;
- (void)displayIfNeeded;
- (void)drawRect:(NSRect)dirty;
- (nullable NSView *)hitTest:(NSPoint)point;
- (BOOL)mouse:(NSPoint)point inRect:(NSRect)rect;
- (BOOL)acceptsFirstMouse:(nullable NSEvent *)event;
- (NSPoint)convertPoint:(NSPoint)point fromView:(nullable NSView *)view;
- (NSPoint)convertPoint:(NSPoint)point toView:(nullable NSView *)view;
- (NSRect)convertRect:(NSRect)rect fromView:(nullable NSView *)view;
- (NSRect)convertRect:(NSRect)rect toView:(nullable NSView *)view;
- (NSRect)convertRectToBacking:(NSRect)rect;
- (void)addTrackingArea:(NSTrackingArea *)area;
- (void)removeTrackingArea:(NSTrackingArea *)area;
- (void)updateTrackingAreas;
- (void)addCursorRect:(NSRect)rect cursor:(NSCursor *)cursor;
- (void)discardCursorRects;
- (void)resetCursorRects;
@end

typedef NS_ENUM(NSInteger, NSVisualEffectMaterial) {
    NSVisualEffectMaterialTitlebar = 3, NSVisualEffectMaterialSidebar = 7, NSVisualEffectMaterialWindowBackground = 12,
    NSVisualEffectMaterialUnderWindowBackground = 21
};
typedef NS_ENUM(NSInteger, NSVisualEffectBlendingMode) { NSVisualEffectBlendingModeBehindWindow = 0, NSVisualEffectBlendingModeWithinWindow = 1 };
@interface NSVisualEffectView : NSView
@property NSVisualEffectMaterial material;
@property NSVisualEffectBlendingMode blendingMode;
@end

typedef NS_OPTIONS(NSUInteger, NSWindowStyleMask) {
    NSWindowStyleMaskBorderless = 0, NSWindowStyleMaskTitled = 1 << 0, NSWindowStyleMaskClosable = 1 << 1,
    NSWindowStyleMaskMiniaturizable = 1 << 2, NSWindowStyleMaskResizable = 1 << 3, NSWindowStyleMaskUtilityWindow = 1 << 4,
    NSWindowStyleMaskNonactivatingPanel = 1 << 7, NSWindowStyleMaskHUDWindow = 1 << 13, NSWindowStyleMaskFullSizeContentView = 1 << 15
};
typedef NS_OPTIONS(NSUInteger, NSWindowCollectionBehavior) {
    NSWindowCollectionBehaviorDefault = 0, NSWindowCollectionBehaviorCanJoinAllSpaces = 1 << 0, NSWindowCollectionBehaviorMoveToActiveSpace = 1 << 1,
    NSWindowCollectionBehaviorManaged = 1 << 2, NSWindowCollectionBehaviorTransient = 1 << 3, NSWindowCollectionBehaviorStationary = 1 << 4,
    NSWindowCollectionBehaviorParticipatesInCycle = 1 << 5, NSWindowCollectionBehaviorIgnoresCycle = 1 << 6,
    NSWindowCollectionBehaviorFullScreenAuxiliary = 1 << 8, NSWindowCollectionBehaviorFullScreenNone = 1 << 9,
    NSWindowCollectionBehaviorCanJoinAllApplications SINCE(13.0) = 1 << 18
};
typedef NS_ENUM(NSUInteger, NSBackingStoreType) { NSBackingStoreBuffered = 2 };
typedef NS_ENUM(NSUInteger, NSWindowSharingType) { NSWindowSharingNone = 0, NSWindowSharingReadOnly = 1 };
typedef NS_ENUM(NSInteger, NSWindowTitleVisibility) { NSWindowTitleVisible = 0, NSWindowTitleHidden = 1 };
typedef NS_ENUM(NSInteger, NSWindowAnimationBehavior) { NSWindowAnimationBehaviorDefault = 0, NSWindowAnimationBehaviorNone = 2, NSWindowAnimationBehaviorUtilityWindow = 4 };
// In the SDK the level names are object-like macros over CGWindowLevelForKey results.
enum : NSWindowLevel {
    NSNormalWindowLevel = 0, NSFloatingWindowLevel = 3, NSModalPanelWindowLevel = 8, NSMainMenuWindowLevel = 24,
    NSStatusWindowLevel = 25, NSPopUpMenuWindowLevel = 101, NSScreenSaverWindowLevel = 1000
};
@interface NSWindow : NSResponder
- (instancetype)initWithContentRect:(NSRect)rect styleMask:(NSWindowStyleMask)style backing:(NSBackingStoreType)backing defer:(BOOL)defer NS_DESIGNATED_INITIALIZER;
- (instancetype)initWithContentRect:(NSRect)rect styleMask:(NSWindowStyleMask)style backing:(NSBackingStoreType)backing defer:(BOOL)defer screen:(nullable NSScreen *)screen;
@property (copy) NSString *title;
@property NSWindowTitleVisibility titleVisibility;
@property BOOL titlebarAppearsTransparent;
@property (nullable, strong) __kindof NSView *contentView;
@property (nullable, weak) id<NSWindowDelegate> delegate;
@property (readonly) NSInteger windowNumber;
@property NSWindowStyleMask styleMask;
@property NSWindowLevel level;
@property NSWindowCollectionBehavior collectionBehavior;
@property NSWindowSharingType sharingType;
@property NSWindowAnimationBehavior animationBehavior;
@property (readonly) NSRect frame;
@property CGFloat alphaValue;
@property (getter=isOpaque) BOOL opaque;
@property BOOL hasShadow;
@property (null_resettable, copy) NSColor *backgroundColor;
@property BOOL ignoresMouseEvents;
@property BOOL acceptsMouseMovedEvents;
@property BOOL hidesOnDeactivate;
@property (getter=isReleasedWhenClosed) BOOL releasedWhenClosed;
@property (getter=isMovableByWindowBackground) BOOL movableByWindowBackground;
@property (readonly, getter=isVisible) BOOL visible;
@property (readonly, getter=isKeyWindow) BOOL keyWindow;
@property (readonly) BOOL canBecomeKeyWindow;
@property (readonly) BOOL canBecomeMainWindow;
@property (nullable, readonly, strong) NSScreen *screen;
@property (readonly) CGFloat backingScaleFactor;
@property (nullable, readonly, weak) NSResponder *firstResponder;
@property NSSize minSize;
- (BOOL)makeFirstResponder:(nullable NSResponder *)responder;
- (void)makeKeyAndOrderFront:(nullable id)sender;
- (void)makeKeyWindow;
- (void)orderFront:(nullable id)sender;
- (void)orderFrontRegardless;
- (void)orderOut:(nullable id)sender;
- (void)close;
- (void)center;
- (void)setFrame:(NSRect)frame display:(BOOL)display;
- (void)setFrameOrigin:(NSPoint)point;
- (void)setContentSize:(NSSize)size;
- (NSRect)contentRectForFrameRect:(NSRect)frame;
- (NSRect)convertRectToScreen:(NSRect)rect;
- (NSRect)convertRectFromScreen:(NSRect)rect;
- (NSPoint)convertPointToScreen:(NSPoint)point;
- (NSPoint)convertPointFromScreen:(NSPoint)point;
- (NSPoint)mouseLocationOutsideOfEventStream;
- (void)invalidateCursorRectsForView:(NSView *)view;
- (void)disableCursorRects;
- (void)enableCursorRects;
- (void)displayIfNeeded;
- (void)sendEvent:(NSEvent *)event;
@end
@interface NSWindow (SubsetIdentifier)
@property (nullable, copy) NSUserInterfaceItemIdentifier identifier;
@end
@interface NSPanel : NSWindow
@property (getter=isFloatingPanel) BOOL floatingPanel;
@property BOOL becomesKeyOnlyIfNeeded;
@property BOOL worksWhenModal;
@end
@protocol NSWindowDelegate <NSObject>
@optional
- (BOOL)windowShouldClose:(NSWindow *)sender;
- (void)windowWillClose:(NSNotification *)note;
- (void)windowDidBecomeKey:(NSNotification *)note;
- (void)windowDidResignKey:(NSNotification *)note;
- (void)windowDidChangeScreen:(NSNotification *)note;
@end
SUBSET_C_BEGIN
extern const NSModalResponse NSModalResponseOK;
extern const NSModalResponse NSModalResponseCancel;
SUBSET_C_END
@interface NSSavePanel : NSPanel
@property (nullable, copy) NSURL *directoryURL;
@property (nullable, readonly, copy) NSURL *URL;
@property (null_resettable, copy) NSString *prompt;
@property (null_resettable, copy) NSString *message;
@property BOOL canCreateDirectories;
@property (copy) NSArray<UTType *> *allowedContentTypes SINCE(11.0);
- (NSModalResponse)runModal;
- (void)beginWithCompletionHandler:(void (^)(NSModalResponse result))handler;
@end
@interface NSOpenPanel : NSSavePanel
+ (null_unspecified NSOpenPanel *)openPanel;
@property BOOL canChooseFiles;
@property BOOL canChooseDirectories;
@property BOOL allowsMultipleSelection;
@property (readonly, copy) NSArray<NSURL *> *URLs;
@end

// ---- drawing
typedef NS_ENUM(NSUInteger, NSCompositingOperation) {
    NSCompositingOperationClear = 0, NSCompositingOperationCopy = 1, NSCompositingOperationSourceOver = 2
};
typedef NS_ENUM(NSUInteger, NSImageInterpolation) { NSImageInterpolationDefault = 0, NSImageInterpolationNone = 1, NSImageInterpolationHigh = 3 };
@interface NSGraphicsContext : NSObject
@property (class, nullable, strong) NSGraphicsContext *currentContext;
+ (NSGraphicsContext *)graphicsContextWithCGContext:(CGContextRef)context flipped:(BOOL)flipped;
+ (void)saveGraphicsState;
+ (void)restoreGraphicsState;
- (void)saveGraphicsState;
- (void)restoreGraphicsState;
@property (readonly) CGContextRef CGContext NS_RETURNS_INNER_POINTER;
@property NSCompositingOperation compositingOperation;
@property NSImageInterpolation imageInterpolation;
@property BOOL shouldAntialias;
@end
@interface NSBezierPath : NSObject <NSCopying, NSSecureCoding>
+ (NSBezierPath *)bezierPath;
+ (NSBezierPath *)bezierPathWithRect:(NSRect)rect;
+ (NSBezierPath *)bezierPathWithOvalInRect:(NSRect)rect;
+ (NSBezierPath *)bezierPathWithRoundedRect:(NSRect)rect xRadius:(CGFloat)rx yRadius:(CGFloat)ry;
+ (void)fillRect:(NSRect)rect;
+ (void)strokeRect:(NSRect)rect;
+ (void)strokeLineFromPoint:(NSPoint)from toPoint:(NSPoint)to;
- (void)moveToPoint:(NSPoint)point;
- (void)lineToPoint:(NSPoint)point;
- (void)closePath;
- (void)stroke;
- (void)fill;
- (void)addClip;
- (void)appendBezierPathWithRect:(NSRect)rect;
- (void)setLineDash:(nullable const CGFloat *)pattern count:(NSInteger)count phase:(CGFloat)phase;
@property CGFloat lineWidth;
@end
@interface NSFont : NSObject <NSCopying, NSSecureCoding>
+ (NSFont *)systemFontOfSize:(CGFloat)size;
+ (NSFont *)systemFontOfSize:(CGFloat)size weight:(NSFontWeight)weight;
+ (NSFont *)monospacedDigitSystemFontOfSize:(CGFloat)size weight:(NSFontWeight)weight;
@property (readonly) CGFloat ascender;
@property (readonly) CGFloat pointSize;
@end
@interface NSString (NSStringDrawing)
- (NSSize)sizeWithAttributes:(nullable NSDictionary<NSAttributedStringKey, id> *)attributes;
- (void)drawAtPoint:(NSPoint)point withAttributes:(nullable NSDictionary<NSAttributedStringKey, id> *)attributes;
- (void)drawInRect:(NSRect)rect withAttributes:(nullable NSDictionary<NSAttributedStringKey, id> *)attributes;
@end

// ---- images, pasteboard, sound
@protocol NSPasteboardWriting <NSObject>
- (NSArray<NSPasteboardType> *)writableTypesForPasteboard:(NSPasteboard *)pasteboard;
- (nullable id)pasteboardPropertyListForType:(NSPasteboardType)type;
@end
typedef NS_ENUM(NSUInteger, NSBitmapImageFileType) { NSBitmapImageFileTypeTIFF = 0, NSBitmapImageFileTypeJPEG = 3, NSBitmapImageFileTypePNG = 4 };
@interface NSImageRep : NSObject <NSCopying, NSCoding>
@property NSSize size;
@property NSInteger pixelsWide;
@property NSInteger pixelsHigh;
@end
@interface NSBitmapImageRep : NSImageRep <NSSecureCoding>
- (instancetype)initWithCGImage:(CGImageRef)image;
- (nullable instancetype)initWithData:(NSData *)data;
- (nullable NSData *)representationUsingType:(NSBitmapImageFileType)type properties:(NSDictionary<NSBitmapImageRepPropertyKey, id> *)properties;
@property (nullable, readonly) CGImageRef CGImage NS_RETURNS_INNER_POINTER;
@property (readonly) NSInteger bytesPerRow;
@end
@interface NSImage : NSObject <NSCopying, NSSecureCoding, NSPasteboardWriting>
+ (nullable NSImage *)imageNamed:(NSImageName)name;
+ (nullable instancetype)imageWithSystemSymbolName:(NSString *)name accessibilityDescription:(nullable NSString *)description SINCE(11.0);
- (instancetype)initWithSize:(NSSize)size NS_DESIGNATED_INITIALIZER;
- (instancetype)initWithCGImage:(CGImageRef)image size:(NSSize)size;
- (nullable instancetype)initWithContentsOfURL:(NSURL *)url;
- (nullable instancetype)initWithData:(NSData *)data;
@property NSSize size;
// "template" is a C++ keyword, so property syntax cannot name it from .mm files: use the accessors.
- (BOOL)isTemplate;
- (void)setTemplate:(BOOL)flag;
@property (nullable, readonly, copy) NSData *TIFFRepresentation;
@property (readonly, copy) NSArray<NSImageRep *> *representations;
- (void)addRepresentation:(NSImageRep *)rep;
- (nullable CGImageRef)CGImageForProposedRect:(nullable NSRect *)rect context:(nullable NSGraphicsContext *)context hints:(nullable NSDictionary *)hints;
- (void)drawInRect:(NSRect)rect;
- (void)drawInRect:(NSRect)rect fromRect:(NSRect)from operation:(NSCompositingOperation)operation fraction:(CGFloat)delta;
@end
@interface NSString (SubsetPasteboard) <NSPasteboardWriting>
@end
@interface NSURL (SubsetPasteboard) <NSPasteboardWriting>
@end
@interface NSPasteboardItem : NSObject <NSPasteboardWriting>
- (BOOL)setData:(NSData *)data forType:(NSPasteboardType)type;
- (BOOL)setString:(NSString *)string forType:(NSPasteboardType)type;
@end
@interface NSPasteboard : NSObject
@property (class, readonly, strong) NSPasteboard *generalPasteboard;
@property (readonly) NSInteger changeCount;
@property (nullable, readonly, copy) NSArray<NSPasteboardType> *types;
- (NSInteger)clearContents;
- (BOOL)writeObjects:(NSArray<id<NSPasteboardWriting>> *)objects;
- (NSInteger)declareTypes:(NSArray<NSPasteboardType> *)types owner:(nullable id)owner;
- (BOOL)setData:(nullable NSData *)data forType:(NSPasteboardType)type;
- (BOOL)setString:(NSString *)string forType:(NSPasteboardType)type;
- (nullable NSData *)dataForType:(NSPasteboardType)type;
- (nullable NSString *)stringForType:(NSPasteboardType)type;
@end
@interface NSSound : NSObject <NSCopying, NSSecureCoding>
+ (nullable NSSound *)soundNamed:(NSSoundName)name;
- (nullable instancetype)initWithContentsOfURL:(NSURL *)url byReference:(BOOL)byReference;
- (nullable instancetype)initWithContentsOfFile:(NSString *)path byReference:(BOOL)byReference;
- (BOOL)play;
- (BOOL)stop;
@property (readonly, getter=isPlaying) BOOL playing;
@property float volume;
@end

// ---- status item and menus
typedef NSInteger NSControlStateValue;
static const CGFloat NSVariableStatusItemLength = -1.0;
static const CGFloat NSSquareStatusItemLength = -2.0;
static const NSControlStateValue NSControlStateValueOff = 0;
static const NSControlStateValue NSControlStateValueOn = 1;
static const NSControlStateValue NSControlStateValueMixed = -1;
@interface NSControl : NSView
@property (nullable, weak) id target;
@property (nullable) SEL action;
@property (getter=isEnabled) BOOL enabled;
@property (copy) NSString *stringValue;
- (NSInteger)sendActionOn:(NSEventMask)mask;
@end
@interface NSButton : NSControl
@property (copy) NSString *title;
@property (nullable, strong) NSImage *image;
@property NSControlStateValue state;
@end
@interface NSStatusBarButton : NSButton
@property BOOL appearsDisabled;
@end
@interface NSStatusItem : NSObject
@property CGFloat length;
@property (nullable, strong) NSMenu *menu;
@property (nullable, readonly, strong) NSStatusBarButton *button;
@property (getter=isVisible) BOOL visible;
@property (null_resettable, copy) NSString *autosaveName;
@end
@interface NSStatusBar : NSObject
@property (class, readonly, strong) NSStatusBar *systemStatusBar;
- (NSStatusItem *)statusItemWithLength:(CGFloat)length;
- (void)removeStatusItem:(NSStatusItem *)item;
@property (readonly) CGFloat thickness;
@end
@interface NSMenuItem : NSObject <NSCopying, NSCoding>
+ (NSMenuItem *)separatorItem;
- (instancetype)initWithTitle:(NSString *)title action:(nullable SEL)action keyEquivalent:(NSString *)key NS_DESIGNATED_INITIALIZER;
@property (copy) NSString *title;
@property (nullable, weak) id target;
@property (nullable) SEL action;
@property NSInteger tag;
@property (nullable, strong) id representedObject;
@property NSControlStateValue state;
@property (copy) NSString *keyEquivalent;
@property NSEventModifierFlags keyEquivalentModifierMask;
@property (nullable, strong) NSImage *image;
@property (nullable, strong) NSMenu *submenu;
@property (getter=isEnabled) BOOL enabled;
@property (getter=isHidden) BOOL hidden;
@end
@interface NSMenu : NSObject <NSCopying, NSCoding>
- (instancetype)initWithTitle:(NSString *)title NS_DESIGNATED_INITIALIZER;
- (void)addItem:(NSMenuItem *)item;
- (NSMenuItem *)addItemWithTitle:(NSString *)title action:(nullable SEL)action keyEquivalent:(NSString *)key;
- (void)insertItem:(NSMenuItem *)item atIndex:(NSInteger)index;
- (void)removeItem:(NSMenuItem *)item;
- (void)removeAllItems;
@property (copy) NSArray<NSMenuItem *> *itemArray;
@property (nullable, weak) id<NSMenuDelegate> delegate;
@property BOOL autoenablesItems;
- (nullable NSMenuItem *)itemWithTag:(NSInteger)tag;
@end
@protocol NSMenuDelegate <NSObject>
@optional
- (void)menuNeedsUpdate:(NSMenu *)menu;
- (void)menuWillOpen:(NSMenu *)menu;
- (void)menuDidClose:(NSMenu *)menu;
@end
NS_ASSUME_NONNULL_END
