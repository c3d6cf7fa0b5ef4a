#pragma once
#include <MacTypes.h>
SUBSET_C_BEGIN
NS_ASSUME_NONNULL_BEGIN
typedef unsigned long CFTypeID;
typedef unsigned long CFOptionFlags;
typedef unsigned long CFHashCode;
typedef signed long CFIndex;
typedef double CFTimeInterval;
typedef CFTimeInterval CFAbsoluteTime;

typedef const CF_BRIDGED(id) void *CFTypeRef;
typedef const struct CF_BRIDGED(NSString) __CFString *CFStringRef;
typedef const struct CF_BRIDGED(NSArray) __CFArray *CFArrayRef;
typedef const struct CF_BRIDGED(NSDictionary) __CFDictionary *CFDictionaryRef;
typedef const struct CF_BRIDGED(NSData) __CFData *CFDataRef;
typedef const struct CF_BRIDGED(NSNumber) __CFNumber *CFNumberRef;
typedef const struct CF_BRIDGED(NSURL) __CFURL *CFURLRef;
typedef const struct CF_BRIDGED(id) __CFBoolean *CFBooleanRef;
typedef const struct CF_BRIDGED(id) __CFAllocator *CFAllocatorRef;
typedef struct CF_BRIDGED(NSError) __CFError *CFErrorRef;
typedef struct CF_BRIDGED(id) __CFRunLoop *CFRunLoopRef;
typedef struct CF_BRIDGED(id) __CFRunLoopSource *CFRunLoopSourceRef;
typedef struct CF_BRIDGED(NSMachPort) __CFMachPort *CFMachPortRef;
typedef CFStringRef CFRunLoopMode;
typedef UInt32 CFStringEncoding;

typedef struct { CFIndex location; CFIndex length; } CFRange;

typedef void (*CFMachPortCallBack)(CFMachPortRef _Null_unspecified port, void *_Null_unspecified msg, CFIndex size, void *_Null_unspecified info);

extern const CFAllocatorRef _Null_unspecified kCFAllocatorDefault;
extern const CFBooleanRef kCFBooleanTrue;
extern const CFBooleanRef kCFBooleanFalse;
extern const CFRunLoopMode kCFRunLoopDefaultMode;
extern const CFRunLoopMode kCFRunLoopCommonModes;

CFTypeRef _Null_unspecified CFRetain(CFTypeRef _Null_unspecified cf);
void CFRelease(CFTypeRef _Null_unspecified cf);
CFTypeID CFGetTypeID(CFTypeRef cf);
CFTypeID CFBooleanGetTypeID(void);
Boolean CFNumberIsFloatType(CFNumberRef number);
CFIndex CFGetRetainCount(CFTypeRef cf);

const UInt8 *_Null_unspecified CFDataGetBytePtr(CFDataRef data);
CFIndex CFDataGetLength(CFDataRef data);
CFDataRef _Null_unspecified CFDataCreate(CFAllocatorRef _Null_unspecified allocator, const UInt8 *_Null_unspecified bytes, CFIndex length) CF_RETURNS_RETAINED;
CFIndex CFArrayGetCount(CFArrayRef array);
const void *_Null_unspecified CFArrayGetValueAtIndex(CFArrayRef array, CFIndex index);
Boolean CFStringGetCString(CFStringRef string, char *_Null_unspecified buffer, CFIndex size, CFStringEncoding encoding);
enum { kCFStringEncodingUTF8 = 0x08000100 };

CFRunLoopRef _Null_unspecified CFRunLoopGetCurrent(void);
CFRunLoopRef _Null_unspecified CFRunLoopGetMain(void);
void CFRunLoopRun(void);
void CFRunLoopStop(CFRunLoopRef loop);
void CFRunLoopWakeUp(CFRunLoopRef loop);
void CFRunLoopAddSource(CFRunLoopRef loop, CFRunLoopSourceRef source, CFRunLoopMode mode);
void CFRunLoopRemoveSource(CFRunLoopRef loop, CFRunLoopSourceRef source, CFRunLoopMode mode);
CFRunLoopSourceRef _Null_unspecified CFMachPortCreateRunLoopSource(CFAllocatorRef _Null_unspecified allocator, CFMachPortRef port, CFIndex order) CF_RETURNS_RETAINED;
void CFMachPortInvalidate(CFMachPortRef port);
Boolean CFMachPortIsValid(CFMachPortRef port);

NS_ASSUME_NONNULL_END
SUBSET_C_END
