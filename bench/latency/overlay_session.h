#pragma once

#include <string>
#include <vector>

#include "latency/busy_desktop.h"
#include "latency/clipboard_watch.h"
#include "latency/file_watch.h"
#include "latency/input_burst.h"
#include "latency/lumaframe_program.h"
#include "latency/program.h"
#include "latency/samples.h"
#include "latency/screen_watch.h"

namespace latency {

/// The region that is dragged: native pixels, from the top left.
struct Drag {
    /// Part of the names of the quantities.
    std::string label;
    desktop::Place from;
    desktop::Place to;
};

/// Takes one program through its overlay and puts down how long each step took.
class OverlaySession {
  public:
    OverlaySession(BusyDesktop& desktop, Samples& samples);

    /// Opens the overlay and closes it again; `label` says which opening it was ("first"). False
    /// when it did not come.
    bool open(Program& program, const std::string& label);
    /// Opens it, drags and releases. With `Motions::measured` the processor time of a motion is
    /// taken too, for which the pointer moves at the pace of a hand.
    enum class Motions { few, measured };
    bool capture(Program& program, const Drag& drag, Motions motions);
    /// Opens the overlay, turns to the choice of a window and clicks on the one at `place`.
    bool captureWindow(LumaframeProgram& program, desktop::Place place);
    /// As `capture`, but nothing is put down: waits until the picture was delivered.
    bool captureQuickly(Program& program, const Drag& drag);
    /// Selects text to be recognised; does not wait for it.
    bool recognize(LumaframeProgram& program, const Drag& drag);

  private:
    /// The processor time of the program, the X server and the compositor from its making on.
    class Spending {
      public:
        Spending(Program& program, BusyDesktop& desktop);
        void put(Samples& samples, const std::string& program, const std::string& quantity,
                 int times) const;

      private:
        struct Watched {
            std::string who;
            pid_t process;
            double before = 0;
        };
        std::vector<Watched> watched_;
    };

    bool waitForOverlay(Program& program);
    bool selectWhenMapped(Program& program, const Drag& drag);
    void measureFirstDrag(Program& program, const Drag& drag);
    void measureMotions(Program& program, const Drag& drag);
    void measureRelease(Program& program, const std::string& label);
    void dismiss();
    [[nodiscard]] std::vector<Watch*> watches(Program& program);

    BusyDesktop& desktop_;
    Samples& samples_;
    InputBurst input_;
    ScreenWatch screen_;
    ClipboardWatch clipboard_;
    FileWatch files_;
};

}  // namespace latency
