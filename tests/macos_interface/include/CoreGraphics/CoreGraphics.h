#pragma once
#include <CoreFoundation/CoreFoundation.h>
#include <CoreFoundation/CFCGTypes.h>
SUBSET_C_BEGIN
NS_ASSUME_NONNULL_BEGIN
typedef struct CF_BRIDGED(id) CGImage *CGImageRef;
typedef struct CF_BRIDGED(id) CGColorSpace *CGColorSpaceRef;
typedef struct CF_BRIDGED(id) CGContext *CGContextRef;
typedef struct CF_BRIDGED(id) CGDataProvider *CGDataProviderRef;
typedef struct CF_BRIDGED(id) CGColor *CGColorRef;
typedef struct CF_BRIDGED(id) __CGEvent *CGEventRef;
typedef struct CF_BRIDGED(id) __CGEventSource *CGEventSourceRef;
typedef uint32_t CGDirectDisplayID;
typedef uint32_t CGWindowID;
typedef int32_t CGWindowLevel;

// geometry
extern const CGPoint CGPointZero;
extern const CGSize CGSizeZero;
extern const CGRect CGRectZero;
extern const CGRect CGRectNull;
extern const CGRect CGRectInfinite;
static inline CGPoint CGPointMake(CGFloat x, CGFloat y) { CGPoint p = {x, y}; return p; }
static inline CGSize CGSizeMake(CGFloat w, CGFloat h) { CGSize s = {w, h}; return s; }
static inline CGRect CGRectMake(CGFloat x, CGFloat y, CGFloat w, CGFloat h) { CGRect r = {{x, y}, {w, h}}; return r; }
CGFloat CGRectGetMinX(CGRect rect);
CGFloat CGRectGetMidX(CGRect rect);
CGFloat CGRectGetMaxX(CGRect rect);
CGFloat CGRectGetMinY(CGRect rect);
CGFloat CGRectGetMidY(CGRect rect);
CGFloat CGRectGetMaxY(CGRect rect);
CGFloat CGRectGetWidth(CGRect rect);
CGFloat CGRectGetHeight(CGRect rect);
bool CGRectEqualToRect(CGRect a, CGRect b);
bool CGRectIsEmpty(CGRect rect);
bool CGRectIsNull(CGRect rect);
CGRect CGRectStandardize(CGRect rect);
CGRect CGRectInset(CGRect rect, CGFloat dx, CGFloat dy);
CGRect CGRectOffset(CGRect rect, CGFloat dx, CGFloat dy);
CGRect CGRectIntegral(CGRect rect);
CGRect CGRectUnion(CGRect a, CGRect b);
CGRect CGRectIntersection(CGRect a, CGRect b);
bool CGRectContainsPoint(CGRect rect, CGPoint point);
bool CGRectContainsRect(CGRect a, CGRect b);
bool CGRectIntersectsRect(CGRect a, CGRect b);

// colour spaces
extern const CFStringRef kCGColorSpaceSRGB;
extern const CFStringRef kCGColorSpaceDisplayP3;
extern const CFStringRef kCGColorSpaceGenericRGBLinear;
CGColorSpaceRef _Nullable CGColorSpaceCreateDeviceRGB(void) CF_RETURNS_RETAINED;
CGColorSpaceRef _Nullable CGColorSpaceCreateWithName(CFStringRef name) CF_RETURNS_RETAINED;
CGColorSpaceRef _Nullable CGColorSpaceCreateWithICCData(CFTypeRef _Nullable data) CF_RETURNS_RETAINED;
CFStringRef _Nullable CGColorSpaceCopyName(CGColorSpaceRef space) CF_RETURNS_RETAINED;
CFDataRef _Nullable CGColorSpaceCopyICCData(CGColorSpaceRef space) CF_RETURNS_RETAINED;
CGColorSpaceRef _Nullable CGColorSpaceRetain(CGColorSpaceRef _Nullable space);
void CGColorSpaceRelease(CGColorSpaceRef _Nullable space);

// images
typedef CF_ENUM(uint32_t, CGImageAlphaInfo) {
    kCGImageAlphaNone = 0, kCGImageAlphaPremultipliedLast, kCGImageAlphaPremultipliedFirst, kCGImageAlphaLast,
    kCGImageAlphaFirst, kCGImageAlphaNoneSkipLast, kCGImageAlphaNoneSkipFirst, kCGImageAlphaOnly
};
typedef CF_OPTIONS(uint32_t, CGBitmapInfo) {
    kCGBitmapAlphaInfoMask = 0x1F,
    kCGBitmapByteOrderMask = 0x7000,
    kCGBitmapByteOrderDefault = 0,
    kCGBitmapByteOrder32Little = 2 << 12,
    kCGBitmapByteOrder32Big = 4 << 12
};
typedef CF_ENUM(int32_t, CGInterpolationQuality) {
    kCGInterpolationDefault = 0, kCGInterpolationNone = 1, kCGInterpolationLow = 2, kCGInterpolationMedium = 4, kCGInterpolationHigh = 3
};
typedef CF_ENUM(int32_t, CGBlendMode) {
    kCGBlendModeNormal = 0, kCGBlendModeClear = 16, kCGBlendModeCopy = 17
};
typedef CF_ENUM(int32_t, CGColorRenderingIntent) {
    kCGRenderingIntentDefault = 0
};
size_t CGImageGetWidth(CGImageRef image);
size_t CGImageGetHeight(CGImageRef image);
size_t CGImageGetBitsPerComponent(CGImageRef image);
size_t CGImageGetBitsPerPixel(CGImageRef image);
size_t CGImageGetBytesPerRow(CGImageRef image);
CGColorSpaceRef _Nullable CGImageGetColorSpace(CGImageRef image);
CGImageAlphaInfo CGImageGetAlphaInfo(CGImageRef image);
CGBitmapInfo CGImageGetBitmapInfo(CGImageRef image);
CGDataProviderRef _Nullable CGImageGetDataProvider(CGImageRef image);
CGImageRef _Nullable CGImageRetain(CGImageRef _Nullable image);
void CGImageRelease(CGImageRef _Nullable image);
CGImageRef _Nullable CGImageCreateWithImageInRect(CGImageRef image, CGRect rect) CF_RETURNS_RETAINED;
CGImageRef _Nullable CGImageCreateCopyWithColorSpace(CGImageRef image, CGColorSpaceRef space) CF_RETURNS_RETAINED;
CGImageRef _Nullable CGImageCreate(size_t width, size_t height, size_t bitsPerComponent, size_t bitsPerPixel, size_t bytesPerRow,
                                   CGColorSpaceRef space, CGBitmapInfo bitmapInfo, CGDataProviderRef provider,
                                   const CGFloat *_Nullable decode, bool shouldInterpolate, CGColorRenderingIntent intent) CF_RETURNS_RETAINED;
typedef void (*CGDataProviderReleaseDataCallback)(void *_Nullable info, const void *data, size_t size);
CGDataProviderRef _Nullable CGDataProviderCreateWithData(void *_Nullable info, const void *data, size_t size, CGDataProviderReleaseDataCallback _Nullable releaseData) CF_RETURNS_RETAINED;
CGDataProviderRef _Nullable CGDataProviderCreateWithCFData(CFDataRef data) CF_RETURNS_RETAINED;
CFDataRef _Nullable CGDataProviderCopyData(CGDataProviderRef provider) CF_RETURNS_RETAINED;
void CGDataProviderRelease(CGDataProviderRef _Nullable provider);

// contexts
CGContextRef _Nullable CGBitmapContextCreate(void *_Nullable data, size_t width, size_t height, size_t bitsPerComponent,
                                             size_t bytesPerRow, CGColorSpaceRef _Nullable space, uint32_t bitmapInfo) CF_RETURNS_RETAINED;
void *_Nullable CGBitmapContextGetData(CGContextRef context);
size_t CGBitmapContextGetBytesPerRow(CGContextRef context);
CGImageRef _Nullable CGBitmapContextCreateImage(CGContextRef context) CF_RETURNS_RETAINED;
void CGContextRelease(CGContextRef _Nullable context);
void CGContextDrawImage(CGContextRef context, CGRect rect, CGImageRef image);
void CGContextSaveGState(CGContextRef context);
void CGContextRestoreGState(CGContextRef context);
void CGContextTranslateCTM(CGContextRef context, CGFloat tx, CGFloat ty);
void CGContextScaleCTM(CGContextRef context, CGFloat sx, CGFloat sy);
void CGContextFillRect(CGContextRef context, CGRect rect);
void CGContextClearRect(CGContextRef context, CGRect rect);
void CGContextClipToRect(CGContextRef context, CGRect rect);
void CGContextSetBlendMode(CGContextRef context, CGBlendMode mode);
void CGContextSetInterpolationQuality(CGContextRef context, CGInterpolationQuality quality);
void CGContextSetRGBFillColor(CGContextRef context, CGFloat red, CGFloat green, CGFloat blue, CGFloat alpha);

// displays and windows
typedef CF_ENUM(int32_t, CGError) {
    kCGErrorSuccess = 0, kCGErrorFailure = 1000, kCGErrorIllegalArgument = 1001, kCGErrorCannotComplete = 1004
};
CGDirectDisplayID CGMainDisplayID(void);
CGError CGGetActiveDisplayList(uint32_t max, CGDirectDisplayID *_Nullable displays, uint32_t *_Nullable count);
CGRect CGDisplayBounds(CGDirectDisplayID display);
CGColorSpaceRef CGDisplayCopyColorSpace(CGDirectDisplayID display) CF_RETURNS_RETAINED;
typedef CF_OPTIONS(uint32_t, CGWindowListOption) {
    kCGWindowListOptionAll = 0,
    kCGWindowListOptionOnScreenOnly = 1 << 0,
    kCGWindowListExcludeDesktopElements = 1 << 4
};
enum { kCGNullWindowID = 0 };
CFArrayRef _Nullable CGWindowListCopyWindowInfo(CGWindowListOption option, CGWindowID relativeTo) CF_RETURNS_RETAINED;
extern const CFStringRef kCGWindowNumber;
extern const CFStringRef kCGWindowLayer;
extern const CFStringRef kCGWindowBounds;
extern const CFStringRef kCGWindowOwnerPID;
extern const CFStringRef kCGWindowOwnerName;
bool CGRectMakeWithDictionaryRepresentation(CFDictionaryRef dictionary, CGRect *rect);
typedef CF_ENUM(int32_t, CGWindowLevelKey) {
    kCGMinimumWindowLevelKey = 1, kCGNormalWindowLevelKey = 4, kCGFloatingWindowLevelKey = 5, kCGMainMenuWindowLevelKey = 8,
    kCGStatusWindowLevelKey = 9, kCGPopUpMenuWindowLevelKey = 11, kCGScreenSaverWindowLevelKey = 13, kCGMaximumWindowLevelKey = 14,
    kCGOverlayWindowLevelKey = 15, kCGCursorWindowLevelKey = 19
};
CGWindowLevel CGWindowLevelForKey(CGWindowLevelKey key);
bool CGPreflightScreenCaptureAccess(void) SINCE(10.15);
bool CGRequestScreenCaptureAccess(void) SINCE(10.15);

// events
typedef uint64_t CGEventMask;
typedef uint16_t CGKeyCode;
typedef struct __CGEventTapProxy *CGEventTapProxy;
typedef CF_ENUM(uint32_t, CGEventType) {
    kCGEventNull = 0, kCGEventLeftMouseDown = 1, kCGEventLeftMouseUp = 2, kCGEventRightMouseDown = 3, kCGEventRightMouseUp = 4,
    kCGEventMouseMoved = 5, kCGEventLeftMouseDragged = 6, kCGEventRightMouseDragged = 7, kCGEventKeyDown = 10, kCGEventKeyUp = 11,
    kCGEventFlagsChanged = 12, kCGEventScrollWheel = 22,
    kCGEventTapDisabledByTimeout = 0xFFFFFFFE, kCGEventTapDisabledByUserInput = 0xFFFFFFFF
};
typedef CF_OPTIONS(uint64_t, CGEventFlags) {
    kCGEventFlagMaskAlphaShift = 0x10000, kCGEventFlagMaskShift = 0x20000, kCGEventFlagMaskControl = 0x40000,
    kCGEventFlagMaskAlternate = 0x80000, kCGEventFlagMaskCommand = 0x100000
};
typedef CF_ENUM(uint32_t, CGEventField) {
    kCGKeyboardEventAutorepeat = 8, kCGKeyboardEventKeycode = 9, kCGEventSourceUserData = 42
};
typedef CF_ENUM(uint32_t, CGEventTapLocation) { kCGHIDEventTap = 0, kCGSessionEventTap, kCGAnnotatedSessionEventTap };
typedef CF_ENUM(uint32_t, CGEventTapPlacement) { kCGHeadInsertEventTap = 0, kCGTailAppendEventTap };
typedef CF_ENUM(uint32_t, CGEventTapOptions) { kCGEventTapOptionDefault = 0, kCGEventTapOptionListenOnly = 1 };
#define CGEventMaskBit(type) ((CGEventMask)1 << (type))
typedef CGEventRef _Nullable (*CGEventTapCallBack)(CGEventTapProxy proxy, CGEventType type, CGEventRef event, void *_Nullable info);
CFMachPortRef _Nullable CGEventTapCreate(CGEventTapLocation tap, CGEventTapPlacement place, CGEventTapOptions options,
                                         CGEventMask mask, CGEventTapCallBack callback, void *_Nullable info) CF_RETURNS_RETAINED;
void CGEventTapEnable(CFMachPortRef tap, bool enable);
bool CGEventTapIsEnabled(CFMachPortRef tap);
CGEventRef _Nullable CGEventCreate(CGEventSourceRef _Nullable source) CF_RETURNS_RETAINED;
CGEventType CGEventGetType(CGEventRef _Nullable event);
CGPoint CGEventGetLocation(CGEventRef _Nullable event);
CGEventFlags CGEventGetFlags(CGEventRef _Nullable event);
int64_t CGEventGetIntegerValueField(CGEventRef _Nullable event, CGEventField field);
bool CGPreflightListenEventAccess(void) SINCE(10.15);
bool CGRequestListenEventAccess(void) SINCE(10.15);
NS_ASSUME_NONNULL_END
SUBSET_C_END
