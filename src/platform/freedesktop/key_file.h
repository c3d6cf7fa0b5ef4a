#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace platform::freedesktop {

/// The text format of `.desktop` files and theme indexes: groups of `key=value` lines.
///
/// Lines that are neither are skipped; of a key that is given twice the first counts, as in the
/// Desktop Entry Specification's readers. Values are as written, without their outer blanks.
class KeyFile {
  public:
    static KeyFile parse(std::string_view text);

    [[nodiscard]] std::optional<std::string> value(const std::string& group,
                                                   const std::string& key) const;
    /// The parts of a list separated by commas or semicolons; no empty ones.
    [[nodiscard]] std::vector<std::string> list(const std::string& group,
                                                const std::string& key) const;

  private:
    std::map<std::string, std::map<std::string, std::string>> groups_;
};

}  // namespace platform::freedesktop
