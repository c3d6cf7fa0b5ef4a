#pragma once

#include <cstdint>

/// The numbers that the adapters hand to the system, by name. Each adapter proves against the
/// system's own symbols that its numbers are theirs; the tests of other systems hold them against
/// the figures themselves, and against those that its decisions pass.
/// What a port already names (levels, policies, statuses, modifier masks) is not repeated here.
namespace platform::macos {

// The panel of the overlay: NSWindowStyleMask, NSBackingStoreType, NSWindowLevel,
// NSWindowCollectionBehavior, NSTrackingAreaOptions.
/// Non-activating panel, full-size content view; no title bar, no border.
inline constexpr std::uint32_t panelStyleMask = 0x8080;
inline constexpr std::uint32_t panelBacking = 2;
/// The level of the screen saver.
inline constexpr int panelLevel = 1000;
/// On all spaces, ignored by window cycling, beside full-screen windows.
inline constexpr std::uint32_t panelCollectionBehavior = 0x141;
/// Mouse entered and exited, mouse moved, active always, in the visible rectangle.
inline constexpr std::uint32_t panelTrackingOptions = 0x283;

/// What the recorder of shortcuts listens for: key-down and changed modifiers (NSEventMask).
inline constexpr std::uint64_t recorderEventMask = 5120;

// The tap while the overlay is up: CGEventTapLocation, CGEventTapPlacement, CGEventTapOptions,
// CGEventMask.
inline constexpr std::uint32_t tapLocation = 1;
inline constexpr std::uint32_t tapPlacement = 0;
inline constexpr std::uint32_t tapOptions = 0;
/// Key-down and nothing else.
inline constexpr std::uint64_t tapEventMask = 1024;

// Hot keys: four-character codes, the first character in the most significant byte.
/// 'BAR1'.
inline constexpr std::uint32_t hotKeySignature = 0x42415231;
/// 'keyb', hot key pressed; its parameter '----' of the type 'hkid'.
inline constexpr std::uint32_t hotKeyEventClass = 0x6B657962;
inline constexpr std::uint32_t hotKeyEventKind = 5;
inline constexpr std::uint32_t hotKeyParameterName = 0x2D2D2D2D;
inline constexpr std::uint32_t hotKeyParameterType = 0x686B6964;
inline constexpr std::uint32_t hotKeyOptions = 0;

/// 'BGRA', 32 bits a pixel (kCVPixelFormatType_32BGRA).
inline constexpr std::uint32_t capturePixelFormat = 0x42475241;

/// Alerts and sounds (UNAuthorizationOptions).
inline constexpr std::uint32_t notificationOptions = 6;

/// Accurate (VNRequestTextRecognitionLevel).
inline constexpr int recognitionLevel = 0;

/// What lies under a window's background (NSVisualEffectMaterial).
inline constexpr int windowMaterial = 21;

/// No controls (AVPlayerViewControlsStyle).
inline constexpr int playerControlsStyle = 0;

/// The icon in the menu bar, a symbol of the system's.
inline constexpr const char* menuBarSymbol = "inset.filled.rectangle.and.pointer.arrow";

}  // namespace platform::macos
