#include "platform/macos/looping_player_view.h"

#import <AVFoundation/AVFoundation.h>
#import <AVKit/AVKit.h>
#import <QuartzCore/QuartzCore.h>

#include <bit>
#include <functional>
#include <optional>
#include <string>
#include <utility>

#include "platform/macos/foundation_error.h"
#include "platform/macos/foundation_text.h"
#include "platform/macos/main_thread.h"
#include "platform/macos/main_thread_completion.h"
#include "platform/macos/platform_constants.h"

namespace platform::macos {

namespace {

static_assert(playerControlsStyle == AVPlayerViewControlsStyleNone);

using MaybeError = std::optional<base::Error>;
using ItemCompletion = std::function<void(AVPlayerItem*, MaybeError)>;

/// A copy of the picture without the sound. On the loading queue.
void composeItem(AVAsset* asset, AVAssetTrack* track, const ItemCompletion& finish) {
    AVMutableComposition* const composition = [AVMutableComposition composition];
    AVMutableCompositionTrack* const copy =
        [composition addMutableTrackWithMediaType:AVMediaTypeVideo
                                 preferredTrackID:kCMPersistentTrackID_Invalid];
    NSError* error = nil;
    if (copy != nil && ![copy insertTimeRange:CMTimeRangeMake(kCMTimeZero, asset.duration)
                                      ofTrack:track
                                       atTime:kCMTimeZero
                                        error:&error]) {
        finish(nil, describedError(error).value_or(localizedError(nil)));
        return;
    }
    AVPlayerItem* const item = [[AVPlayerItem alloc] initWithAsset:composition];
    item.audioTimePitchAlgorithm = AVAudioTimePitchAlgorithmVarispeed;
    finish(item, std::nullopt);
}

// NOLINTBEGIN(performance-unnecessary-value-param): a block keeps a value, but of a reference only
// where it leads.
/// On the loading queue, like the last block.
void loadTracks(AVAsset* asset, ItemCompletion finish) {
    [asset loadTracksWithMediaType:AVMediaTypeVideo
                 completionHandler:^(NSArray<AVAssetTrack*>* tracks, NSError* error) {
                   AVAssetTrack* const track = tracks.firstObject;
                   if (error != nil) {
                       finish(nil, describedError(error));
                   } else if (track == nil) {
                       finish(nil, base::Error{base::ErrorKind::notFound,
                                               "The file has no video track."});
                   } else {
                       composeItem(asset, track, finish);
                   }
                 }];
}

void loadItem(AVAsset* asset, ItemCompletion finish) {
    [asset loadValuesAsynchronouslyForKeys:@[ @"duration" ]
                         completionHandler:^{
                           NSError* error = nil;
                           if ([asset statusOfValueForKey:@"duration"
                                                    error:&error] != AVKeyValueStatusLoaded) {
                               finish(nil, describedError(error).value_or(localizedError(nil)));
                               return;
                           }
                           loadTracks(asset, finish);
                         }];
}
// NOLINTEND(performance-unnecessary-value-param)

}  // namespace

/// Keeps the looper, and with it the player, for as long as the view is there.
/// Main thread.
struct LoopingPlayerView::Coordinator {
    AVAsset* asset = nil;
    AVPlayerView* view = nil;
    AVPlayerLooper* looper = nil;

    void start(AVPlayerItem* item) {
        AVQueuePlayer* const player = [[AVQueuePlayer alloc] initWithPlayerItem:item];
        looper = [AVPlayerLooper playerLooperWithPlayer:player templateItem:item];
        view.player = player;
        player.volume = 0;
        [player play];
    }
};

LoopingPlayerView::LoopingPlayerView(const std::string& path)
    : coordinator_(std::make_unique<Coordinator>()) {
    AVPlayerView* const view = [[AVPlayerView alloc] initWithFrame:NSMakeRect(0, 0, 0, 0)];
    view.controlsStyle = static_cast<AVPlayerViewControlsStyle>(playerControlsStyle);
    view.videoGravity = AVLayerVideoGravityResizeAspectFill;
    coordinator_->view = view;
    coordinator_->asset = [AVAsset assetWithURL:[NSURL fileURLWithPath:stringFrom(path)]];
}

LoopingPlayerView::~LoopingPlayerView() = default;

std::uintptr_t LoopingPlayerView::handle() const {
    return std::bit_cast<std::uintptr_t>((__bridge void*)coordinator_->view);
}

void LoopingPlayerView::setCornerRadius(double radius) {
    coordinator_->view.wantsLayer = YES;
    CALayer* const layer = coordinator_->view.layer;
    layer.cornerRadius = radius;
    layer.cornerCurve = kCACornerCurveContinuous;
    layer.masksToBounds = YES;
}

void LoopingPlayerView::play(Completion completion) {
    const MainThreadCompletion<AVPlayerItem*, MaybeError> finish(
        runOnMainThread, alive_.guard([this, completion = std::move(completion)](
                                          AVPlayerItem* item, const MaybeError& error) {
            if (error) {
                completion(*error);
                return;
            }
            coordinator_->start(item);
            completion(base::Nothing{});
        }));
    loadItem(coordinator_->asset, finish);
}

base::Result<ui::Film> BundleFilms::open(const std::string& videoName) {
    NSURL* const url = [NSBundle.mainBundle URLForResource:stringFrom(videoName)
                                             withExtension:@"mp4"];
    if (url == nil) {
        return base::Error{base::ErrorKind::notFound,
                           "The bundle has no film " + videoName + ".mp4."};
    }
    return ui::Film(std::make_unique<LoopingPlayerView>(textFrom(url.path)));
}

}  // namespace platform::macos
