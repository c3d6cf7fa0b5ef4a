#include "desktop/accessible.h"

#include <sstream>
#include <stdexcept>

namespace desktop {

std::vector<Accessible> parseAccessibles(std::string_view text) {
    std::vector<Accessible> list;
    std::istringstream lines{std::string(text)};
    for (std::string line; std::getline(lines, line);) {
        std::istringstream fields(line);
        Accessible object;
        char tab = '\0';
        fields >> object.depth >> std::noskipws >> tab;
        std::getline(fields, object.role, '\t');
        fields >> std::skipws >> object.x >> object.y >> object.width >> object.height >>
            object.states >> std::noskipws >> tab;
        std::getline(fields, object.name, '\t');
        if (!fields) {
            throw std::runtime_error("No description of an accessible object: " + line);
        }
        std::getline(fields, object.description);
        list.push_back(object);
    }
    return list;
}

}  // namespace desktop
