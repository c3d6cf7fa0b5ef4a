#pragma once

#include "latency/line_watch.h"
#include "latency/program.h"

namespace latency {

/// This project's own program, with its shortcut.
class LumaframeProgram final : public Program {
  public:
    explicit LumaframeProgram(std::filesystem::path executable)
        : executable_(std::move(executable)) {}

    [[nodiscard]] std::string name() const override { return "lumaframe"; }
    std::optional<double> start(BusyDesktop& desktop) override;
    void stop() override;
    [[nodiscard]] Residence residence() const override { return Residence::resident; }
    double trigger(InputBurst& input, Purpose purpose) override;
    /// The end of the whole handling, the grab of the keyboard included: the line that says so.
    [[nodiscard]] std::optional<double> readyAt() override;
    [[nodiscard]] Watch* watch() override { return lines_.get(); }
    [[nodiscard]] Delivery delivery() const override { return Delivery::atRelease; }
    [[nodiscard]] pid_t process() const override { return process_ ? process_->pid() : 0; }

    /// As `trigger`, for the recognition of text.
    double triggerRecognition(InputBurst& input);
    /// When the text of the last recognition was delivered, or was found to be none.
    [[nodiscard]] bool isRecognized();

  private:
    void closeSettingsWindow(desktop::Desktop& desktop);

    std::filesystem::path executable_;
    std::unique_ptr<LineWatch> lines_;
    std::unique_ptr<desktop::Process> process_;
};

}  // namespace latency
