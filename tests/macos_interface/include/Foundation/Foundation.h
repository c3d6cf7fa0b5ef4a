#pragma once
#include <objc/NSObject.h>
#include <CoreFoundation/CoreFoundation.h>
#include <CoreFoundation/CFCGTypes.h>
#include <dispatch/dispatch.h>

typedef double NSTimeInterval;
typedef CGPoint NSPoint;
typedef CGSize NSSize;
typedef CGRect NSRect;
typedef uint16_t unichar;
typedef struct _NSZone NSZone;
enum : NSInteger { NSNotFound = 0x7fffffffffffffff };

@class NSString, NSArray<__covariant T>, NSDictionary<__covariant K, __covariant V>, NSNumber, NSData, NSURL, NSError, NSDate, NSSet<__covariant T>;
@class NSOperationQueue, NSRunLoop, NSTimer, NSLocale, NSTimeZone, NSItemProvider, NSUndoManager, NSIndexSet, NSThread, NSBundle;

struct _NSRange { NSUInteger location; NSUInteger length; };
typedef struct _NSRange NSRange;
static inline NSRange NSMakeRange(NSUInteger loc, NSUInteger len) { NSRange r; r.location = loc; r.length = len; return r; }
static inline NSPoint NSMakePoint(CGFloat x, CGFloat y) { NSPoint p; p.x = x; p.y = y; return p; }
static inline NSSize NSMakeSize(CGFloat w, CGFloat h) { NSSize s; s.width = w; s.height = h; return s; }
static inline NSRect NSMakeRect(CGFloat x, CGFloat y, CGFloat w, CGFloat h) { NSRect r; r.origin = NSMakePoint(x, y); r.size = NSMakeSize(w, h); return r; }
static inline CGRect NSRectToCGRect(NSRect r) { return r; }
static inline NSRect NSRectFromCGRect(CGRect r) { return r; }
static inline CGFloat NSWidth(NSRect r) { return r.size.width; }
static inline CGFloat NSHeight(NSRect r) { return r.size.height; }
static inline CGFloat NSMinX(NSRect r) { return r.origin.x; }
static inline CGFloat NSMinY(NSRect r) { return r.origin.y; }
static inline CGFloat NSMaxX(NSRect r) { return r.origin.x + r.size.width; }
static inline CGFloat NSMaxY(NSRect r) { return r.origin.y + r.size.height; }

NS_ASSUME_NONNULL_BEGIN
SUBSET_C_BEGIN
extern const NSRect NSZeroRect;
extern const NSPoint NSZeroPoint;
extern const NSSize NSZeroSize;
BOOL NSPointInRect(NSPoint point, NSRect rect);
BOOL NSIntersectsRect(NSRect a, NSRect b);
BOOL NSEqualRects(NSRect a, NSRect b);
BOOL NSIsEmptyRect(NSRect rect);
NSRect NSInsetRect(NSRect rect, CGFloat dx, CGFloat dy);
NSRect NSIntersectionRect(NSRect a, NSRect b);
NSRect NSUnionRect(NSRect a, NSRect b);
NSRect NSIntegralRect(NSRect rect);
NSRect NSOffsetRect(NSRect rect, CGFloat dx, CGFloat dy);
NSString *NSStringFromClass(Class cls);
NSString *NSStringFromSelector(SEL sel);
NSString *NSStringFromRect(NSRect rect);
NSString *NSHomeDirectory(void);
NSString *NSTemporaryDirectory(void);
void NSLog(NSString *format, ...) NS_FORMAT_FUNCTION(1, 2);
SUBSET_C_END

typedef CF_ENUM(NSInteger, NSComparisonResult) { NSOrderedAscending = -1, NSOrderedSame, NSOrderedDescending };

@protocol NSCopying
- (id)copyWithZone:(nullable NSZone *)zone;
@end
@protocol NSMutableCopying
- (id)mutableCopyWithZone:(nullable NSZone *)zone;
@end
@class NSCoder;
@protocol NSCoding
@end
@protocol NSSecureCoding <NSCoding>
@end
typedef struct {
    unsigned long state;
    id __unsafe_unretained _Nullable *_Nullable itemsPtr;
    unsigned long *_Nullable mutationsPtr;
    unsigned long extra[5];
} NSFastEnumerationState;
@protocol NSFastEnumeration
- (NSUInteger)countByEnumeratingWithState:(NSFastEnumerationState *)state objects:(id __unsafe_unretained _Nullable [_Nonnull])buffer count:(NSUInteger)len;
@end

typedef NSString *NSErrorDomain;
typedef NSString *NSErrorUserInfoKey;
typedef NSString *NSExceptionName;
typedef NSString *NSNotificationName;
typedef NSString *NSRunLoopMode;
typedef NSString *NSKeyValueChangeKey;
typedef NSString *NSURLResourceKey;

@interface NSObject (SubsetThreads)
- (void)performSelectorOnMainThread:(SEL)selector withObject:(nullable id)arg waitUntilDone:(BOOL)wait;
- (void)performSelector:(SEL)selector withObject:(nullable id)arg afterDelay:(NSTimeInterval)delay;
+ (void)cancelPreviousPerformRequestsWithTarget:(id)target;
@end
typedef NS_OPTIONS(NSUInteger, NSKeyValueObservingOptions) { NSKeyValueObservingOptionNew = 1, NSKeyValueObservingOptionOld = 2, NSKeyValueObservingOptionInitial = 4 };
@interface NSObject (SubsetObserving)
- (void)observeValueForKeyPath:(nullable NSString *)keyPath ofObject:(nullable id)object change:(nullable NSDictionary<NSKeyValueChangeKey, id> *)change context:(nullable void *)context;
- (void)addObserver:(NSObject *)observer forKeyPath:(NSString *)keyPath options:(NSKeyValueObservingOptions)options context:(nullable void *)context;
- (void)removeObserver:(NSObject *)observer forKeyPath:(NSString *)keyPath;
- (void)removeObserver:(NSObject *)observer forKeyPath:(NSString *)keyPath context:(nullable void *)context;
@end

@interface NSCoder : NSObject
@end

typedef NSUInteger NSStringEncoding;
enum { NSASCIIStringEncoding = 1, NSUTF8StringEncoding = 4 };
@interface NSString : NSObject <NSCopying, NSMutableCopying, NSSecureCoding>
@property (readonly) NSUInteger length;
- (unichar)characterAtIndex:(NSUInteger)index;
- (instancetype)init NS_DESIGNATED_INITIALIZER;
@end
@interface NSString (Subset)
- (NSString *)substringFromIndex:(NSUInteger)from;
- (NSString *)substringWithRange:(NSRange)range;
- (BOOL)isEqualToString:(NSString *)string;
- (BOOL)hasPrefix:(NSString *)string;
- (BOOL)hasSuffix:(NSString *)string;
- (BOOL)containsString:(NSString *)string;
- (NSRange)rangeOfString:(NSString *)string;
- (NSString *)stringByAppendingString:(NSString *)string;
- (NSString *)stringByAppendingFormat:(NSString *)format, ... NS_FORMAT_FUNCTION(1, 2);
@property (readonly, copy) NSString *uppercaseString;
@property (readonly, copy) NSString *lowercaseString;
@property (readonly) NSInteger integerValue;
@property (nullable, readonly) const char *UTF8String NS_RETURNS_INNER_POINTER;
- (NSUInteger)lengthOfBytesUsingEncoding:(NSStringEncoding)encoding;
- (nullable NSData *)dataUsingEncoding:(NSStringEncoding)encoding;
- (nullable instancetype)initWithBytes:(const void *)bytes length:(NSUInteger)length encoding:(NSStringEncoding)encoding;
- (nullable instancetype)initWithData:(NSData *)data encoding:(NSStringEncoding)encoding;
- (nullable instancetype)initWithUTF8String:(const char *)bytes;
- (instancetype)initWithFormat:(NSString *)format, ... NS_FORMAT_FUNCTION(1, 2);
+ (instancetype)string;
+ (nullable instancetype)stringWithUTF8String:(const char *)bytes;
+ (instancetype)stringWithFormat:(NSString *)format, ... NS_FORMAT_FUNCTION(1, 2);
- (BOOL)writeToURL:(NSURL *)url atomically:(BOOL)atomically encoding:(NSStringEncoding)encoding error:(NSError **)error;
- (NSArray<NSString *> *)componentsSeparatedByString:(NSString *)separator;
- (NSString *)stringByAppendingPathComponent:(NSString *)part;
@property (readonly, copy) NSString *lastPathComponent;
@property (readonly, copy) NSString *pathExtension;
@property (readonly, copy) NSString *stringByDeletingPathExtension;
@property (readonly, copy) NSString *stringByExpandingTildeInPath;
@end
@interface NSMutableString : NSString
- (void)appendString:(NSString *)string;
@end
@interface NSAttributedString : NSObject <NSCopying, NSMutableCopying, NSSecureCoding>
@property (readonly, copy) NSString *string;
@end
typedef NSString *NSAttributedStringKey;

@interface NSArray<__covariant ObjectType> : NSObject <NSCopying, NSMutableCopying, NSSecureCoding, NSFastEnumeration>
@property (readonly) NSUInteger count;
- (ObjectType)objectAtIndex:(NSUInteger)index;
- (instancetype)init NS_DESIGNATED_INITIALIZER;
- (instancetype)initWithObjects:(const ObjectType _Nonnull [_Nullable])objects count:(NSUInteger)count NS_DESIGNATED_INITIALIZER;
@end
@interface NSArray<ObjectType> (Subset)
- (ObjectType)objectAtIndexedSubscript:(NSUInteger)index;
- (BOOL)containsObject:(ObjectType)object;
- (NSUInteger)indexOfObject:(ObjectType)object;
@property (nullable, nonatomic, readonly) ObjectType firstObject;
@property (nullable, nonatomic, readonly) ObjectType lastObject;
- (NSArray<ObjectType> *)arrayByAddingObject:(ObjectType)object;
- (NSString *)componentsJoinedByString:(NSString *)separator;
- (void)enumerateObjectsUsingBlock:(void(NS_NOESCAPE ^)(ObjectType object, NSUInteger index, BOOL *stop))block;
+ (instancetype)array;
+ (instancetype)arrayWithObject:(ObjectType)object;
+ (instancetype)arrayWithObjects:(const ObjectType _Nonnull [_Nonnull])objects count:(NSUInteger)count;
+ (instancetype)arrayWithArray:(NSArray<ObjectType> *)array;
@end
@interface NSMutableArray<ObjectType> : NSArray<ObjectType>
- (void)addObject:(ObjectType)object;
- (void)removeObjectAtIndex:(NSUInteger)index;
- (void)removeObject:(ObjectType)object;
- (void)removeAllObjects;
- (void)setObject:(ObjectType)object atIndexedSubscript:(NSUInteger)index;
+ (instancetype)arrayWithCapacity:(NSUInteger)count;
@end
@interface NSSet<__covariant ObjectType> : NSObject <NSCopying, NSMutableCopying, NSSecureCoding, NSFastEnumeration>
@property (readonly) NSUInteger count;
- (BOOL)containsObject:(ObjectType)object;
+ (instancetype)setWithArray:(NSArray<ObjectType> *)array;
+ (instancetype)setWithObject:(ObjectType)object;
@end
@interface NSDictionary<__covariant KeyType, __covariant ObjectType> : NSObject <NSCopying, NSMutableCopying, NSSecureCoding, NSFastEnumeration>
@property (readonly) NSUInteger count;
- (nullable ObjectType)objectForKey:(KeyType)key;
@end
@interface NSDictionary<KeyType, ObjectType> (Subset)
@property (readonly, copy) NSArray<KeyType> *allKeys;
- (nullable ObjectType)objectForKeyedSubscript:(KeyType)key;
+ (instancetype)dictionary;
+ (instancetype)dictionaryWithObject:(ObjectType)object forKey:(KeyType <NSCopying>)key;
+ (instancetype)dictionaryWithObjects:(const ObjectType _Nonnull [_Nullable])objects forKeys:(const KeyType <NSCopying> _Nonnull [_Nullable])keys count:(NSUInteger)count;
@end
@interface NSMutableDictionary<KeyType, ObjectType> : NSDictionary<KeyType, ObjectType>
- (void)setObject:(ObjectType)object forKey:(KeyType <NSCopying>)key;
- (void)removeObjectForKey:(KeyType)key;
- (void)setObject:(nullable ObjectType)object forKeyedSubscript:(KeyType <NSCopying>)key;
@end

@interface NSValue : NSObject <NSCopying, NSSecureCoding>
+ (NSValue *)valueWithRect:(NSRect)rect;
@property (readonly) NSRect rectValue;
@end
@interface NSNumber : NSValue
@property (readonly) BOOL boolValue;
@property (readonly) int intValue;
@property (readonly) unsigned int unsignedIntValue;
@property (readonly) double doubleValue;
@property (readonly) float floatValue;
@property (readonly) NSInteger integerValue;
@property (readonly) NSUInteger unsignedIntegerValue;
@property (readonly) long long longLongValue;
@property (readonly, copy) NSString *stringValue;
+ (NSNumber *)numberWithChar:(char)value;
+ (NSNumber *)numberWithBool:(BOOL)value;
+ (NSNumber *)numberWithInt:(int)value;
+ (NSNumber *)numberWithUnsignedInt:(unsigned int)value;
+ (NSNumber *)numberWithLong:(long)value;
+ (NSNumber *)numberWithUnsignedLong:(unsigned long)value;
+ (NSNumber *)numberWithLongLong:(long long)value;
+ (NSNumber *)numberWithUnsignedLongLong:(unsigned long long)value;
+ (NSNumber *)numberWithFloat:(float)value;
+ (NSNumber *)numberWithDouble:(double)value;
+ (NSNumber *)numberWithInteger:(NSInteger)value;
+ (NSNumber *)numberWithUnsignedInteger:(NSUInteger)value;
@end

typedef NS_OPTIONS(NSUInteger, NSDataWritingOptions) { NSDataWritingAtomic = 1 << 0, NSDataWritingWithoutOverwriting = 1 << 1 };
@interface NSData : NSObject <NSCopying, NSMutableCopying, NSSecureCoding>
@property (readonly) NSUInteger length;
@property (readonly) const void *bytes NS_RETURNS_INNER_POINTER;
+ (instancetype)dataWithBytes:(nullable const void *)bytes length:(NSUInteger)length;
+ (instancetype)dataWithBytesNoCopy:(void *)bytes length:(NSUInteger)length freeWhenDone:(BOOL)free;
+ (nullable instancetype)dataWithContentsOfFile:(NSString *)path;
+ (nullable instancetype)dataWithContentsOfURL:(NSURL *)url;
- (BOOL)writeToURL:(NSURL *)url atomically:(BOOL)atomically;
- (BOOL)writeToURL:(NSURL *)url options:(NSDataWritingOptions)options error:(NSError **)error;
@end

@interface NSURL : NSObject <NSSecureCoding, NSCopying>
+ (NSURL *)fileURLWithPath:(NSString *)path;
+ (NSURL *)fileURLWithPath:(NSString *)path isDirectory:(BOOL)isDirectory;
+ (nullable instancetype)URLWithString:(NSString *)string;
@property (nullable, readonly, copy) NSString *absoluteString;
@property (nullable, readonly, copy) NSString *path;
@property (nullable, readonly, copy) NSString *lastPathComponent;
@property (nullable, readonly, copy) NSString *pathExtension;
@property (nullable, readonly, copy) NSString *scheme;
@property (readonly, getter=isFileURL) BOOL fileURL;
@property (readonly) const char *fileSystemRepresentation NS_RETURNS_INNER_POINTER;
- (nullable NSURL *)URLByAppendingPathComponent:(NSString *)part;
- (BOOL)startAccessingSecurityScopedResource;
- (void)stopAccessingSecurityScopedResource;
@end

@interface NSError : NSObject <NSCopying, NSSecureCoding>
@property (readonly, copy) NSErrorDomain domain;
@property (readonly) NSInteger code;
@property (readonly, copy) NSDictionary<NSErrorUserInfoKey, id> *userInfo;
@property (readonly, copy) NSString *localizedDescription;
@property (nullable, readonly, copy) NSString *localizedFailureReason;
+ (instancetype)errorWithDomain:(NSErrorDomain)domain code:(NSInteger)code userInfo:(nullable NSDictionary<NSErrorUserInfoKey, id> *)info;
@end
SUBSET_C_BEGIN
extern NSErrorUserInfoKey const NSLocalizedDescriptionKey;
SUBSET_C_END

@interface NSException : NSObject <NSCopying, NSSecureCoding>
@property (readonly, copy) NSExceptionName name;
@property (nullable, readonly, copy) NSString *reason;
@end

@interface NSBundle : NSObject
@property (class, readonly, strong) NSBundle *mainBundle;
+ (nullable instancetype)bundleWithIdentifier:(NSString *)identifier;
+ (nullable instancetype)bundleWithURL:(NSURL *)url;
@property (nullable, readonly, copy) NSString *bundleIdentifier;
@property (readonly, copy) NSURL *bundleURL;
@property (readonly, copy) NSString *bundlePath;
@property (nullable, readonly, copy) NSURL *resourceURL;
@property (nullable, readonly, copy) NSURL *executableURL;
@property (nullable, readonly, copy) NSDictionary<NSString *, id> *infoDictionary;
- (nullable id)objectForInfoDictionaryKey:(NSString *)key;
- (nullable NSURL *)URLForResource:(nullable NSString *)name withExtension:(nullable NSString *)ext;
- (nullable NSString *)pathForResource:(nullable NSString *)name ofType:(nullable NSString *)ext;
@end

@interface NSUserDefaults : NSObject
@property (class, readonly, strong) NSUserDefaults *standardUserDefaults;
- (nullable instancetype)initWithSuiteName:(nullable NSString *)suite NS_DESIGNATED_INITIALIZER;
- (void)registerDefaults:(NSDictionary<NSString *, id> *)values;
- (nullable id)objectForKey:(NSString *)key;
- (nullable NSString *)stringForKey:(NSString *)key;
- (nullable NSArray<NSString *> *)stringArrayForKey:(NSString *)key;
- (NSInteger)integerForKey:(NSString *)key;
- (double)doubleForKey:(NSString *)key;
- (BOOL)boolForKey:(NSString *)key;
- (void)setObject:(nullable id)value forKey:(NSString *)key;
- (void)setInteger:(NSInteger)value forKey:(NSString *)key;
- (void)setDouble:(double)value forKey:(NSString *)key;
- (void)setBool:(BOOL)value forKey:(NSString *)key;
- (void)removeObjectForKey:(NSString *)key;
@end

@interface NSNotification : NSObject <NSCopying, NSCoding>
@property (readonly, copy) NSNotificationName name;
@property (nullable, readonly, strong) id object;
@property (nullable, readonly, copy) NSDictionary *userInfo;
@end
@interface NSNotificationCenter : NSObject
@property (class, readonly, strong) NSNotificationCenter *defaultCenter;
- (void)addObserver:(id)observer selector:(SEL)selector name:(nullable NSNotificationName)name object:(nullable id)object;
- (id<NSObject>)addObserverForName:(nullable NSNotificationName)name object:(nullable id)object queue:(nullable NSOperationQueue *)queue usingBlock:(void (^)(NSNotification *note))block;
- (void)postNotificationName:(NSNotificationName)name object:(nullable id)object;
- (void)postNotificationName:(NSNotificationName)name object:(nullable id)object userInfo:(nullable NSDictionary *)info;
- (void)removeObserver:(id)observer;
- (void)removeObserver:(id)observer name:(nullable NSNotificationName)name object:(nullable id)object;
@end

@interface NSOperationQueue : NSObject
@property (class, readonly, strong) NSOperationQueue *mainQueue;
- (void)addOperationWithBlock:(void (^)(void))block;
@end

typedef NS_ENUM(NSUInteger, NSSearchPathDirectory) {
    NSLibraryDirectory = 5, NSDocumentDirectory = 9, NSDesktopDirectory = 12, NSCachesDirectory = 13, NSApplicationSupportDirectory = 14,
    NSDownloadsDirectory = 15, NSMoviesDirectory = 17, NSMusicDirectory = 18, NSPicturesDirectory = 19
};
typedef NS_OPTIONS(NSUInteger, NSSearchPathDomainMask) { NSUserDomainMask = 1, NSLocalDomainMask = 2, NSSystemDomainMask = 8 };
typedef NSString *NSFileAttributeKey;
@interface NSFileManager : NSObject
@property (class, readonly, strong) NSFileManager *defaultManager;
- (NSArray<NSURL *> *)URLsForDirectory:(NSSearchPathDirectory)directory inDomains:(NSSearchPathDomainMask)domains;
- (BOOL)fileExistsAtPath:(NSString *)path;
- (BOOL)fileExistsAtPath:(NSString *)path isDirectory:(nullable BOOL *)isDirectory;
- (BOOL)isReadableFileAtPath:(NSString *)path;
- (BOOL)isWritableFileAtPath:(NSString *)path;
- (BOOL)createDirectoryAtURL:(NSURL *)url withIntermediateDirectories:(BOOL)intermediates attributes:(nullable NSDictionary<NSFileAttributeKey, id> *)attributes error:(NSError **)error;
- (BOOL)removeItemAtURL:(NSURL *)url error:(NSError **)error;
@end

@interface NSDate : NSObject <NSCopying, NSSecureCoding>
@property (readonly) NSTimeInterval timeIntervalSinceReferenceDate;
@property (readonly) NSTimeInterval timeIntervalSinceNow;
@property (readonly) NSTimeInterval timeIntervalSince1970;
+ (instancetype)date;
+ (instancetype)dateWithTimeIntervalSinceNow:(NSTimeInterval)seconds;
@property (class, readonly, copy) NSDate *distantFuture;
@property (class, readonly, copy) NSDate *distantPast;
@end
@interface NSLocale : NSObject <NSCopying, NSSecureCoding>
@property (class, readonly, copy) NSLocale *currentLocale;
@property (class, readonly, copy) NSArray<NSString *> *preferredLanguages;
+ (instancetype)localeWithLocaleIdentifier:(NSString *)identifier;
@property (readonly, copy) NSString *localeIdentifier;
- (nullable NSString *)localizedStringForLanguageCode:(NSString *)code;
@end
@interface NSFormatter : NSObject <NSCopying, NSCoding>
@end
typedef NS_ENUM(NSUInteger, NSDateFormatterStyle) {
    NSDateFormatterNoStyle = 0, NSDateFormatterShortStyle = 1, NSDateFormatterMediumStyle = 2, NSDateFormatterLongStyle = 3, NSDateFormatterFullStyle = 4
};
@interface NSDateFormatter : NSFormatter
- (NSString *)stringFromDate:(NSDate *)date;
@property (null_resettable, copy) NSString *dateFormat;
@property NSDateFormatterStyle dateStyle;
@property NSDateFormatterStyle timeStyle;
@property (null_resettable, copy) NSLocale *locale;
@end

@interface NSUUID : NSObject <NSCopying, NSSecureCoding>
+ (instancetype)UUID;
@property (readonly, copy) NSString *UUIDString;
@end

typedef struct { NSInteger majorVersion; NSInteger minorVersion; NSInteger patchVersion; } NSOperatingSystemVersion;
typedef NS_OPTIONS(uint64_t, NSActivityOptions) {
    NSActivityIdleDisplaySleepDisabled = 1ULL << 40,
    NSActivityIdleSystemSleepDisabled = 1ULL << 20,
    NSActivityUserInitiated = 0x00FFFFFFULL | NSActivityIdleSystemSleepDisabled,
    NSActivityUserInitiatedAllowingIdleSystemSleep = NSActivityUserInitiated & ~NSActivityIdleSystemSleepDisabled,
    NSActivityBackground = 0x000000FFULL
};
@interface NSProcessInfo : NSObject
@property (class, readonly, strong) NSProcessInfo *processInfo;
@property (readonly, copy) NSArray<NSString *> *arguments;
@property (readonly, copy) NSDictionary<NSString *, NSString *> *environment;
@property (readonly, copy) NSString *processName;
@property (readonly) int processIdentifier;
@property (readonly) NSOperatingSystemVersion operatingSystemVersion;
@property (readonly, copy) NSString *operatingSystemVersionString;
- (BOOL)isOperatingSystemAtLeastVersion:(NSOperatingSystemVersion)version;
- (id<NSObject>)beginActivityWithOptions:(NSActivityOptions)options reason:(NSString *)reason;
- (void)endActivity:(id<NSObject>)activity;
- (void)disableSuddenTermination;
- (void)enableSuddenTermination;
@end

SUBSET_C_BEGIN
extern NSRunLoopMode const NSDefaultRunLoopMode;
extern NSRunLoopMode const NSRunLoopCommonModes;
SUBSET_C_END
@interface NSRunLoop : NSObject
@property (class, readonly, strong) NSRunLoop *currentRunLoop;
@property (class, readonly, strong) NSRunLoop *mainRunLoop;
- (CFRunLoopRef)getCFRunLoop;
- (void)addTimer:(NSTimer *)timer forMode:(NSRunLoopMode)mode;
- (BOOL)runMode:(NSRunLoopMode)mode beforeDate:(NSDate *)limit;
- (void)runUntilDate:(NSDate *)limit;
@end
@interface NSTimer : NSObject
+ (NSTimer *)timerWithTimeInterval:(NSTimeInterval)interval repeats:(BOOL)repeats block:(void (^)(NSTimer *timer))block;
+ (NSTimer *)scheduledTimerWithTimeInterval:(NSTimeInterval)interval repeats:(BOOL)repeats block:(void (^)(NSTimer *timer))block;
- (void)invalidate;
@property (readonly, getter=isValid) BOOL valid;
@end
@interface NSThread : NSObject
@property (class, readonly) BOOL isMainThread;
@property (class, readonly, strong) NSThread *mainThread;
@property (readonly) BOOL isMainThread;
@end
@interface NSItemProvider : NSObject <NSCopying>
- (nullable instancetype)initWithContentsOfURL:(null_unspecified NSURL *)url;
@property (copy, readonly, atomic) NSArray<NSString *> *registeredTypeIdentifiers;
- (BOOL)hasItemConformingToTypeIdentifier:(NSString *)identifier;
@end
@interface NSUndoManager : NSObject
@end

static inline CFTypeRef _Nullable CFBridgingRetain(id _Nullable object) CF_RETURNS_RETAINED { return (__bridge_retained CFTypeRef)object; }
static inline id _Nullable CFBridgingRelease(CFTypeRef __attribute__((cf_consumed)) _Nullable object) { return (__bridge_transfer id)object; }
NS_ASSUME_NONNULL_END
