#pragma once
#include <Foundation/Foundation.h>
#include <CoreMedia/CoreMedia.h>
NS_ASSUME_NONNULL_BEGIN
@class AVAssetTrack, AVCompositionTrack, AVMutableCompositionTrack, AVPlayerItem;
typedef NSString *AVMediaType;
typedef NSString *AVLayerVideoGravity;
typedef NSString *AVAudioTimePitchAlgorithm;
SUBSET_C_BEGIN
extern AVMediaType const AVMediaTypeVideo;
extern AVMediaType const AVMediaTypeAudio;
extern AVLayerVideoGravity const AVLayerVideoGravityResizeAspect;
extern AVLayerVideoGravity const AVLayerVideoGravityResizeAspectFill;
extern AVAudioTimePitchAlgorithm const AVAudioTimePitchAlgorithmVarispeed;
extern NSNotificationName const AVPlayerItemDidPlayToEndTimeNotification;
extern NSNotificationName const AVPlayerItemFailedToPlayToEndTimeNotification;
SUBSET_C_END
typedef NS_ENUM(NSInteger, AVKeyValueStatus) {
    AVKeyValueStatusUnknown = 0, AVKeyValueStatusLoading = 1, AVKeyValueStatusLoaded = 2, AVKeyValueStatusFailed = 3, AVKeyValueStatusCancelled = 4
};
@protocol AVAsynchronousKeyValueLoading
- (AVKeyValueStatus)statusOfValueForKey:(NSString *)key error:(NSError *_Nullable *_Nullable)error;
- (void)loadValuesAsynchronouslyForKeys:(NSArray<NSString *> *)keys completionHandler:(nullable void (^)(void))handler;
@end
@interface AVAsset : NSObject <NSCopying, AVAsynchronousKeyValueLoading>
+ (instancetype)assetWithURL:(NSURL *)url;
@property (nonatomic, readonly) CMTime duration;
@property (nonatomic, readonly) NSArray<AVAssetTrack *> *tracks;
- (void)loadTracksWithMediaType:(AVMediaType)type completionHandler:(void (^)(NSArray<AVAssetTrack *> *_Nullable tracks, NSError *_Nullable error))handler SINCE(12.0);
- (NSArray<AVAssetTrack *> *)tracksWithMediaType:(AVMediaType)type DEPR(10.7, 15.0, "use the loading form");
@end
@interface AVURLAsset : AVAsset
- (instancetype)init NS_UNAVAILABLE;
- (instancetype)initWithURL:(NSURL *)url options:(nullable NSDictionary<NSString *, id> *)options NS_DESIGNATED_INITIALIZER;
+ (instancetype)URLAssetWithURL:(NSURL *)url options:(nullable NSDictionary<NSString *, id> *)options;
@property (nonatomic, readonly, copy) NSURL *URL;
@end
@interface AVAssetTrack : NSObject <NSCopying, AVAsynchronousKeyValueLoading>
@property (nonatomic, readonly) CMPersistentTrackID trackID;
@property (nonatomic, readonly) AVMediaType mediaType;
@property (nonatomic, readonly) CMTimeRange timeRange;
@property (nonatomic, readonly) CGSize naturalSize;
@property (nonatomic, readonly) CGAffineTransform preferredTransform;
@property (nonatomic, readonly) float nominalFrameRate;
@end
@interface AVCompositionTrack : AVAssetTrack
@end
@interface AVMutableCompositionTrack : AVCompositionTrack
- (BOOL)insertTimeRange:(CMTimeRange)range ofTrack:(AVAssetTrack *)track atTime:(CMTime)start error:(NSError *_Nullable *_Nullable)error;
@property (nonatomic) CGAffineTransform preferredTransform;
@end
@interface AVComposition : AVAsset <NSMutableCopying>
@end
@interface AVMutableComposition : AVComposition
+ (instancetype)composition;
@property (nonatomic) CGSize naturalSize;
- (nullable AVMutableCompositionTrack *)addMutableTrackWithMediaType:(AVMediaType)type preferredTrackID:(CMPersistentTrackID)preferred;
- (BOOL)insertTimeRange:(CMTimeRange)range ofAsset:(AVAsset *)asset atTime:(CMTime)start error:(NSError *_Nullable *_Nullable)error DEPR(10.7, 15.0, "use the completion form");
- (void)insertTimeRange:(CMTimeRange)range ofAsset:(AVAsset *)asset atTime:(CMTime)start completionHandler:(void (^)(NSError *_Nullable error))handler SINCE(13.0);
- (void)removeTimeRange:(CMTimeRange)range;
@end
typedef NS_ENUM(NSInteger, AVPlayerItemStatus) { AVPlayerItemStatusUnknown = 0, AVPlayerItemStatusReadyToPlay = 1, AVPlayerItemStatusFailed = 2 };
typedef NS_ENUM(NSInteger, AVPlayerActionAtItemEnd) { AVPlayerActionAtItemEndAdvance = 0, AVPlayerActionAtItemEndPause = 1, AVPlayerActionAtItemEndNone = 2 };
@interface AVPlayerItem : NSObject <NSCopying>
- (instancetype)init NS_UNAVAILABLE;
+ (AVPlayerItem *)playerItemWithURL:(NSURL *)url;
+ (AVPlayerItem *)playerItemWithAsset:(AVAsset *)asset;
- (instancetype)initWithURL:(NSURL *)url;
- (instancetype)initWithAsset:(AVAsset *)asset;
@property (readonly) AVPlayerItemStatus status;
@property (readonly, nullable) NSError *error;
@property (readonly) AVAsset *asset;
@property (readonly) CMTime duration;
@property (nonatomic, copy) AVAudioTimePitchAlgorithm audioTimePitchAlgorithm;
@end
@interface AVPlayer : NSObject
- (instancetype)init;
- (instancetype)initWithPlayerItem:(nullable AVPlayerItem *)item;
+ (instancetype)playerWithURL:(NSURL *)url;
+ (instancetype)playerWithPlayerItem:(nullable AVPlayerItem *)item;
@property (readonly, nullable) AVPlayerItem *currentItem;
@property (nonatomic) float rate;
@property (nonatomic, getter=isMuted) BOOL muted;
@property (nonatomic) float volume;
@property (nonatomic) AVPlayerActionAtItemEnd actionAtItemEnd;
@property (nonatomic) BOOL preventsDisplaySleepDuringVideoPlayback;
- (void)play;
- (void)pause;
- (void)seekToTime:(CMTime)time;
- (CMTime)currentTime;
@end
@interface AVQueuePlayer : AVPlayer
+ (instancetype)queuePlayerWithItems:(NSArray<AVPlayerItem *> *)items;
- (instancetype)initWithItems:(NSArray<AVPlayerItem *> *)items;
- (NSArray<AVPlayerItem *> *)items;
- (void)insertItem:(AVPlayerItem *)item afterItem:(nullable AVPlayerItem *)after;
- (void)removeAllItems;
@end
@interface AVPlayerLooper : NSObject
- (instancetype)init NS_UNAVAILABLE;
+ (instancetype)playerLooperWithPlayer:(AVQueuePlayer *)player templateItem:(AVPlayerItem *)item;
+ (instancetype)playerLooperWithPlayer:(AVQueuePlayer *)player templateItem:(AVPlayerItem *)item timeRange:(CMTimeRange)range;
- (void)disableLooping;
@property (readonly, nullable) NSError *error;
@property (readonly) NSInteger loopCount;
@end
NS_ASSUME_NONNULL_END
