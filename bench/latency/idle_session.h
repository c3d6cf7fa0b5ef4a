#pragma once

#include <string>

#include "latency/lumaframe_program.h"
#include "latency/overlay_session.h"
#include "latency/samples.h"

namespace latency {

/// What a resident program costs while it waits: wake-ups and processor time of half a minute, and
/// its memory.
void measureIdle(const Program& program, const std::string& when, Samples& samples);

/// Fresh, after 50 captures of the whole screen, and after a recognition of text.
void measureLife(LumaframeProgram& program, BusyDesktop& desktop, OverlaySession& session,
                 const Drag& whole, const Drag& text, Samples& samples);

}  // namespace latency
