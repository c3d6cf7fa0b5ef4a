#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "app/default_settings.h"
#include "app/settings_keys.h"
#include "app/settings_store.h"
#include "capture/confirmation.h"
#include "capture/image_delivery.h"
#include "capture/screen_capture.h"
#include "capture/text_recognition.h"
#include "doubles/doubles.h"

/// The road from a finished selection to the user, over fakes, with the settings of a fresh store.
class CaptureFixture : public testing::Test {
  protected:
    CaptureFixture() {
        app::registerDefaultSettings(settings);
        service.recordInto(calls);
        encoder.recordInto(calls);
        pasteboard.recordInto(calls);
        fileManager.recordInto(calls);
        soundPlayer.recordInto(calls);
        notifications.recordInto(calls);
        recognizer.recordInto(calls);
        log.recordInto(calls);
    }

    /// A picture with something in it, to be told apart from others by its size.
    static base::Image picture(int width, int height) {
        return base::Image::fromPixels(
            width, height,
            std::vector<std::uint8_t>(static_cast<std::size_t>(width * height) * 4, 0x7F),
            base::AlphaChannel::none);
    }
    capture::Delivery delivery(base::CaptureMode mode = base::CaptureMode::screenshot) {
        const base::Image pixels = picture(4, 2);
        return {std::make_shared<capture::CapturedImage>(pixels, base::Size{2, 1}, encoder), mode,
                pixels};
    }
    [[nodiscard]] std::string fileText(const std::string& path) const {
        const auto file = fileManager.files.find(path);
        return file == fileManager.files.end()
                   ? "no file"
                   : std::string(file->second.begin(), file->second.end());
    }

    doubles::CallLog calls;
    doubles::FakeLog log;
    doubles::ManualMainQueue queue;
    doubles::ManualClock clock;
    doubles::MemorySettingsBackend backend;
    app::SettingsStore settings{backend};
    doubles::FakeCaptureService service;
    doubles::FakeImageEncoder encoder;
    doubles::FakePasteboard pasteboard;
    doubles::FakeFileManager fileManager;
    doubles::FakeSoundPlayer soundPlayer;
    doubles::FakeUserNotifications notifications;
    doubles::FakeTextRecognizer recognizer;
    capture::Confirmation confirmation{
        {.soundPlayer = soundPlayer, .notifications = notifications, .log = log}};
    capture::TextRecognition textRecognition{{.recognizer = recognizer,
                                              .pasteboard = pasteboard,
                                              .fileManager = fileManager,
                                              .confirmation = confirmation,
                                              .settings = settings,
                                              .mainQueue = queue,
                                              .clock = clock,
                                              .log = log}};
    capture::ImageDelivery imageDelivery{{.pasteboard = pasteboard,
                                          .fileManager = fileManager,
                                          .confirmation = confirmation,
                                          .textRecognition = textRecognition,
                                          .settings = settings,
                                          .mainQueue = queue,
                                          .clock = clock,
                                          .log = log}};
    capture::ScreenCapture screenCapture{{.service = service,
                                          .encoder = encoder,
                                          .delivery = imageDelivery,
                                          .settings = settings,
                                          .mainQueue = queue,
                                          .log = log,
                                          .mainBundleIdentifier = "app.lumaframe.Lumaframe"}};
};
