// The functions of libxcb that the list of windows is made with, in the place of the library's own.
#include "made_up_server.h"

#include <xcb/res.h>
#include <xcb/xcb.h>

#include <array>
#include <cstdlib>
#include <cstring>
#include <map>
#include <string>
#include <vector>

namespace {

fuzz::Input source{nullptr, 0};
/// What a request was about, by its sequence number.
std::vector<xcb_window_t> asked;

struct Server {
    xcb_setup_t setup{};
    xcb_screen_t screen{};
    Server() {
        setup.roots_len = 1;
        setup.resource_id_base = 0x200000;
        setup.resource_id_mask = 0x1fffff;
        screen.root = fuzz::rootWindow;
    }
} server;

unsigned note(xcb_window_t window) {
    asked.push_back(window);
    return static_cast<unsigned>(asked.size() - 1);
}

xcb_window_t anyWindow() {
    // Some of them do not exist.
    const unsigned number = source.byte() % (fuzz::mostWindows + 4);
    return number == 0 ? fuzz::rootWindow : number;
}

/// A reply with room for `extra` bytes behind it, as the library allocates it.
template <typename Reply>
Reply* reply(std::size_t extra = 0) {
    void* const memory = std::calloc(1, sizeof(Reply) + extra);
    static_cast<Reply*>(memory)->response_type = 1;
    return static_cast<Reply*>(memory);
}

std::map<std::string, xcb_atom_t> atoms;

xcb_atom_t anyAtom() {
    const unsigned number = source.byte();
    return number < atoms.size() ? 100 + number : number;
}

std::uint32_t anyNumber() {
    // Small ones mean something, the largest ones overflow.
    const std::uint8_t first = source.byte();
    return first < 200 ? first : static_cast<std::uint32_t>(source.number());
}

/// The contents of a property.
struct Contents {
    xcb_atom_t type = XCB_ATOM_NONE;
    std::uint8_t format = 0;
    std::vector<std::uint8_t> bytes;

    void add(std::uint32_t number) {
        std::array<std::uint8_t, 4> four{};
        std::memcpy(four.data(), &number, four.size());
        bytes.insert(bytes.end(), four.begin(), four.end());
    }
};

Contents anyContents() {
    Contents contents;
    const unsigned kind = source.byte() % 8;
    const unsigned count = source.byte() % 24;
    if (kind == 0) {
        return contents;
    }
    if (kind <= 2) {
        const auto utf8 = atoms.find("UTF8_STRING");
        contents = {kind == 1 || utf8 == atoms.end() ? XCB_ATOM_STRING : utf8->second, 8, {}};
    } else {
        constexpr std::array<xcb_atom_t, 3> types{XCB_ATOM_CARDINAL, XCB_ATOM_WINDOW,
                                                  XCB_ATOM_ATOM};
        contents = {kind < 6 ? types[kind - 3] : anyAtom(), 32, {}};
        if (kind == 7) {
            contents.format = source.byte() % 2 == 0 ? 8 : 16;
        }
    }
    for (unsigned index = 0; index < count; ++index) {
        switch (contents.format == 32 ? contents.type : XCB_ATOM_STRING) {
            case XCB_ATOM_STRING:
                contents.bytes.insert(contents.bytes.end(), {source.byte(), source.byte()});
                break;
            case XCB_ATOM_WINDOW:
                contents.add(anyWindow());
                break;
            case XCB_ATOM_ATOM:
                contents.add(anyAtom());
                break;
            default:
                contents.add(anyNumber());
                break;
        }
    }
    return contents;
}

}  // namespace

namespace fuzz {

void answerFrom(const Input& input) {
    source = input;
    asked.clear();
}

}  // namespace fuzz

extern "C" {

xcb_connection_t* xcb_connect(const char* /*name*/, int* screen) {
    *screen = 0;
    return reinterpret_cast<xcb_connection_t*>(&server);
}
void xcb_disconnect(xcb_connection_t* /*connection*/) {}
int xcb_connection_has_error(xcb_connection_t* /*connection*/) {
    return 0;
}
const xcb_setup_t* xcb_get_setup(xcb_connection_t* /*connection*/) {
    return &server.setup;
}
xcb_screen_iterator_t xcb_setup_roots_iterator(const xcb_setup_t* /*setup*/) {
    return {&server.screen, 1, 0};
}
const xcb_query_extension_reply_t* xcb_get_extension_data(xcb_connection_t* /*connection*/,
                                                          xcb_extension_t* /*extension*/) {
    static const xcb_query_extension_reply_t present{.response_type = 1,
                                                     .pad0 = 0,
                                                     .sequence = 0,
                                                     .length = 0,
                                                     .present = 1,
                                                     .major_opcode = 200,
                                                     .first_event = 100,
                                                     .first_error = 100};
    return &present;
}

xcb_intern_atom_cookie_t xcb_intern_atom(xcb_connection_t* /*connection*/,
                                         std::uint8_t /*onlyIfExists*/, std::uint16_t length,
                                         const char* name) {
    const auto number = static_cast<xcb_atom_t>(100 + atoms.size());
    return {atoms.emplace(std::string(name, length), number).first->second};
}
xcb_intern_atom_reply_t* xcb_intern_atom_reply(xcb_connection_t* /*connection*/,
                                               xcb_intern_atom_cookie_t cookie,
                                               xcb_generic_error_t** /*error*/) {
    auto* const answer = reply<xcb_intern_atom_reply_t>();
    answer->atom = cookie.sequence;
    return answer;
}

xcb_get_property_cookie_t xcb_get_property(xcb_connection_t* /*connection*/,
                                           std::uint8_t /*remove*/, xcb_window_t window,
                                           xcb_atom_t /*property*/, xcb_atom_t /*type*/,
                                           std::uint32_t /*offset*/, std::uint32_t /*length*/) {
    return {note(window)};
}
xcb_get_property_reply_t* xcb_get_property_reply(xcb_connection_t* /*connection*/,
                                                 xcb_get_property_cookie_t /*cookie*/,
                                                 xcb_generic_error_t** /*error*/) {
    const Contents contents = anyContents();
    if (contents.type == XCB_ATOM_NONE && source.byte() == 255) {
        return nullptr;
    }
    auto* const answer = reply<xcb_get_property_reply_t>(contents.bytes.size());
    answer->type = contents.type;
    answer->format = contents.format;
    answer->length = static_cast<std::uint32_t>((contents.bytes.size() + 3) / 4);
    answer->value_len = contents.format == 0 ? 0
                                             : static_cast<std::uint32_t>(contents.bytes.size()) /
                                                   (contents.format / 8U);
    if (!contents.bytes.empty()) {
        std::memcpy(answer + 1, contents.bytes.data(), contents.bytes.size());
    }
    return answer;
}

xcb_query_tree_cookie_t xcb_query_tree(xcb_connection_t* /*connection*/, xcb_window_t window) {
    return {note(window)};
}
xcb_query_tree_reply_t* xcb_query_tree_reply(xcb_connection_t* /*connection*/,
                                             xcb_query_tree_cookie_t cookie,
                                             xcb_generic_error_t** /*error*/) {
    const xcb_window_t window = asked.at(cookie.sequence);
    if (window == fuzz::rootWindow) {
        const std::uint32_t first = source.byte() % fuzz::mostWindows;
        const std::uint32_t count = fuzz::mostWindows - first;
        auto* const answer = reply<xcb_query_tree_reply_t>(count * sizeof(xcb_window_t));
        answer->children_len = static_cast<std::uint16_t>(count);
        for (std::uint32_t index = 0; index < count; ++index) {
            const xcb_window_t child = first + index + 1;
            std::memcpy(reinterpret_cast<char*>(answer + 1) + index * sizeof child, &child,
                        sizeof child);
        }
        return answer;
    }
    if (source.byte() == 255) {
        return nullptr;
    }
    // While they are asked for one after the other, somebody may move windows into each other.
    auto* const answer = reply<xcb_query_tree_reply_t>();
    answer->root = fuzz::rootWindow;
    answer->parent = anyWindow();
    return answer;
}

xcb_get_window_attributes_cookie_t xcb_get_window_attributes(xcb_connection_t* /*connection*/,
                                                             xcb_window_t window) {
    return {note(window)};
}
xcb_get_window_attributes_reply_t* xcb_get_window_attributes_reply(
    xcb_connection_t* /*connection*/, xcb_get_window_attributes_cookie_t /*cookie*/,
    xcb_generic_error_t** /*error*/) {
    const std::uint8_t bits = source.byte();
    if (bits == 255) {
        return nullptr;
    }
    auto* const answer = reply<xcb_get_window_attributes_reply_t>();
    answer->_class = (bits & 1U) == 0 ? XCB_WINDOW_CLASS_INPUT_OUTPUT : XCB_WINDOW_CLASS_INPUT_ONLY;
    answer->map_state = (bits & 2U) == 0 ? XCB_MAP_STATE_VIEWABLE : XCB_MAP_STATE_UNMAPPED;
    answer->override_redirect = (bits & 4U) == 0 ? 0 : 1;
    return answer;
}

xcb_get_geometry_cookie_t xcb_get_geometry(xcb_connection_t* /*connection*/,
                                           xcb_drawable_t drawable) {
    return {note(drawable)};
}
xcb_get_geometry_reply_t* xcb_get_geometry_reply(xcb_connection_t* /*connection*/,
                                                 xcb_get_geometry_cookie_t /*cookie*/,
                                                 xcb_generic_error_t** /*error*/) {
    if (source.byte() == 255) {
        return nullptr;
    }
    auto* const answer = reply<xcb_get_geometry_reply_t>();
    answer->x = static_cast<std::int16_t>(anyNumber());
    answer->y = static_cast<std::int16_t>(anyNumber());
    answer->width = static_cast<std::uint16_t>(anyNumber());
    answer->height = static_cast<std::uint16_t>(anyNumber());
    answer->border_width = static_cast<std::uint16_t>(anyNumber());
    return answer;
}

xcb_translate_coordinates_cookie_t xcb_translate_coordinates(xcb_connection_t* /*connection*/,
                                                             xcb_window_t window,
                                                             xcb_window_t /*other*/,
                                                             std::int16_t /*x*/,
                                                             std::int16_t /*y*/) {
    return {note(window)};
}
xcb_translate_coordinates_reply_t* xcb_translate_coordinates_reply(
    xcb_connection_t* /*connection*/, xcb_translate_coordinates_cookie_t /*cookie*/,
    xcb_generic_error_t** /*error*/) {
    if (source.byte() == 255) {
        return nullptr;
    }
    auto* const answer = reply<xcb_translate_coordinates_reply_t>();
    answer->dst_x = static_cast<std::int16_t>(anyNumber());
    answer->dst_y = static_cast<std::int16_t>(anyNumber());
    return answer;
}

xcb_res_query_client_ids_cookie_t xcb_res_query_client_ids(
    xcb_connection_t* /*connection*/, std::uint32_t /*count*/,
    const xcb_res_client_id_spec_t* /*specifications*/) {
    return {note(XCB_WINDOW_NONE)};
}
xcb_res_query_client_ids_reply_t* xcb_res_query_client_ids_reply(
    xcb_connection_t* /*connection*/, xcb_res_query_client_ids_cookie_t /*cookie*/,
    xcb_generic_error_t** /*error*/) {
    const std::uint32_t count = source.byte() % 4;
    // A client, what is told of it, the length in bytes of that, and one number or none.
    std::vector<std::uint32_t> words;
    for (std::uint32_t index = 0; index < count; ++index) {
        const bool hasValue = source.byte() % 4 != 0;
        words.insert(words.end(), {anyWindow(), source.byte() % 4U, hasValue ? 4U : 0U});
        if (hasValue) {
            words.push_back(anyNumber());
        }
    }
    auto* const answer = reply<xcb_res_query_client_ids_reply_t>(words.size() * 4);
    answer->num_ids = count;
    if (!words.empty()) {
        std::memcpy(answer + 1, words.data(), words.size() * 4);
    }
    return answer;
}
}
