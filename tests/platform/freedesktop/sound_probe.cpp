// Plays a sound three times as fast as it can and says how long the calls took, in microseconds;
// then waits the given milliseconds and ends. Its arguments: the sounds, the helper, the wait.
#include <chrono>
#include <cstdlib>
#include <iostream>
#include <thread>

#include "platform/freedesktop/theme_sound_player.h"

int main(int argc, char** argv) {
    if (argc != 4) {
        return 2;
    }
    platform::freedesktop::ThemeSoundPlayer player({}, argv[1], argv[2]);
    const auto sound = player.soundInFallbackFile("Hero");
    if (!sound) {
        return 3;
    }
    const auto start = std::chrono::steady_clock::now();
    for (int count = 0; count < 3; ++count) {
        player.play(*sound);
    }
    const auto taken = std::chrono::steady_clock::now() - start;
    std::cout << std::chrono::duration_cast<std::chrono::microseconds>(taken).count() << std::endl;
    std::this_thread::sleep_for(std::chrono::milliseconds(std::atoi(argv[3])));
    return 0;
}
