#include "journeys/left_on_disk.h"

#include <regex>
#include <vector>

namespace journeys {

namespace {

namespace fs = std::filesystem;

enum class Stay { forGood, forAMoment };

/// What may be, by its path from the directory of the desktop.
struct Guest {
    std::regex pattern;
    Stay stay;
};

Guest guest(const char* pattern, Stay stay) {
    return {std::regex(pattern, std::regex::optimize), stay};
}

const std::vector<Guest>& guests() {
    static const std::vector<Guest> all{
        // Pictures and texts in a folder that the person has made, and a text before it has its
        // place.
        guest(R"(home/([^./][^/]*/)+Screenshot \d{4}-\d\d-\d\d at \d\d\.\d\d\.\d\d\.png)",
              Stay::forGood),
        guest(R"(home/([^./][^/]*/)+[^./][^/]*\.txt)", Stay::forGood),
        guest(R"(home/([^./][^/]*/)+\.lumaframe-\d+-\d+)", Stay::forAMoment),
        // Settings.
        guest(R"(home/\.config/lumaframe)", Stay::forGood),
        guest(R"(home/\.config/lumaframe/settings\.json(\.corrupt-[^/]+)?)", Stay::forGood),
        // The autostart entry.
        guest(R"(home/\.config/autostart)", Stay::forGood),
        guest(R"(home/\.config/autostart/app\.lumaframe\.Lumaframe\.desktop)", Stay::forGood),
        guest(R"(home/\.config/(lumaframe|autostart)/\.lumaframe-\d+-\d+)", Stay::forAMoment),
        // The libraries' own: for fonts a cache, for sounds an empty folder where it looks for a
        // server and a key for who answers, for windows what its dialog for folders was used for,
        // and an empty folder where the session has none for the run time.
        guest(R"(home/\.cache/fontconfig(/[^/]+)?)", Stay::forGood),
        guest("runtime/pulse", Stay::forGood),
        guest(R"(home/\.config/QtProject\.conf)", Stay::forGood),
        guest(R"(home/\.config/QtProject\.conf\.lock)", Stay::forAMoment),
        guest(R"(home/\.config/pulse(/cookie)?)", Stay::forGood),
        guest("tmp/runtime-[^/]+", Stay::forGood),
    };
    return all;
}

const Guest* guestAt(const std::string& path) {
    for (const Guest& guest : guests()) {
        if (std::regex_match(path, guest.pattern)) {
            return &guest;
        }
    }
    return nullptr;
}

}  // namespace

LeftOnDisk::LeftOnDisk(const desktop::Desktop& desktop)
    : desktop_(desktop), places_(desktop.directory()) {}

desktop::Environment LeftOnDisk::environment() const {
    return places_.hasTemporaryDirectory()
               ? desktop::Environment{}
               : desktop::Environment{{"TMPDIR", desktop_.directory() / "tmp"}};
}

void LeftOnDisk::begin() {
    if (watch_) {
        touched_.merge(watch_->touched());
    }
    auto roots = places_.directories();
    roots.push_back(desktop_.home());
    roots.push_back(desktop_.directory() / "runtime");
    watch_.emplace(roots);
}

std::set<std::string> LeftOnDisk::strangers(Ending ending) {
    if (watch_) {
        touched_.merge(watch_->touched());
    }
    std::set<std::string> found;
    for (const fs::path& path : touched_) {
        if (expected_.contains(path)) {
            continue;
        }
        const std::string name = path.lexically_relative(desktop_.directory());
        const Guest* const guest = guestAt(name);
        const bool mayStay =
            guest != nullptr && (guest->stay == Stay::forGood || ending == Ending::killed);
        if (guest == nullptr || (!mayStay && fs::exists(fs::symlink_status(path)))) {
            found.insert(name);
        }
    }
    return found;
}

}  // namespace journeys
