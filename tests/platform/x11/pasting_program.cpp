#include "pasting_program.h"

#include <cstring>

namespace pasteboard_test {

PastingProgram::PastingProgram(const std::string& displayName)
    : client_(displayName), window_(xcb_generate_id(client_.get())) {
    const std::uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_create_window(client_.get(), XCB_COPY_FROM_PARENT, window_, client_.root(), -10, -10, 1, 1,
                      0, XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK,
                      &mask);
    client_.synchronize();
}

void PastingProgram::convert(const std::string& target, const std::string& property,
                             xcb_timestamp_t time, const std::string& selection) {
    pastes_[client_.atom(property)] = {};
    xcb_convert_selection(client_.get(), window_, client_.atom(selection), client_.atom(target),
                          client_.atom(property), time);
    client_.synchronize();
}

void PastingProgram::convertOldStyle(const std::string& target) {
    pastes_[client_.atom(target)] = {};
    xcb_convert_selection(client_.get(), window_, client_.atom("CLIPBOARD"), client_.atom(target),
                          XCB_ATOM_NONE, XCB_CURRENT_TIME);
    client_.synchronize();
}

void PastingProgram::convertMultiple(
    const std::vector<std::pair<std::string, std::string>>& pairs) {
    std::vector<xcb_atom_t> atoms;
    for (const auto& [target, property] : pairs) {
        atoms.push_back(client_.atom(target));
        atoms.push_back(property.empty() ? xcb_atom_t{XCB_ATOM_NONE} : client_.atom(property));
        if (!property.empty()) {
            pastes_[client_.atom(property)] = {};
        }
    }
    xcb_change_property(client_.get(), XCB_PROP_MODE_REPLACE, window_, client_.atom("PAIRS"),
                        client_.atom("ATOM_PAIR"), 32, static_cast<std::uint32_t>(atoms.size()),
                        atoms.data());
    convert("MULTIPLE", "PAIRS");
}

void PastingProgram::sendRequest(xcb_window_t owner, const std::string& selection,
                                 const std::string& target) {
    pastes_[client_.atom("ANSWER")] = {};
    union {
        xcb_selection_request_event_t event;
        char bytes[32];
    } message{};
    message.event.response_type = XCB_SELECTION_REQUEST;
    message.event.owner = owner;
    message.event.requestor = window_;
    message.event.selection = client_.atom(selection);
    message.event.target = client_.atom(target);
    message.event.property = client_.atom("ANSWER");
    xcb_send_event(client_.get(), 0, owner, XCB_EVENT_MASK_NO_EVENT, message.bytes);
    client_.synchronize();
}

void PastingProgram::step() {
    while (const auto event = client_.pollEvent()) {
        const auto type = event->response_type & 0x7F;
        if (type == XCB_SELECTION_NOTIFY) {
            handleAnswer(reinterpret_cast<const xcb_selection_notify_event_t&>(*event));
        } else if (type == XCB_PROPERTY_NOTIFY) {
            const auto& change = reinterpret_cast<const xcb_property_notify_event_t&>(*event);
            if (change.state == XCB_PROPERTY_NEW_VALUE && change.window == window_) {
                takePiece(change.atom);
            }
        }
    }
}

void PastingProgram::handleAnswer(const xcb_selection_notify_event_t& event) {
    if (event.property == XCB_ATOM_NONE) {
        for (auto& [property, paste] : pastes_) {
            if (!paste.isDecided() && paste.state == Paste::State::waiting) {
                paste.state = Paste::State::refused;
            }
        }
        return;
    }
    if (event.target == client_.atom("MULTIPLE")) {
        handleMultiple();
        return;
    }
    takeAnswer(event.property);
}

void PastingProgram::handleMultiple() {
    const Value list = take(client_.atom("PAIRS"));
    pastes_[client_.atom("PAIRS")].state = Paste::State::complete;
    answeredPairs_.clear();
    std::vector<xcb_atom_t> atoms(list.bytes.size() / sizeof(xcb_atom_t));
    std::memcpy(atoms.data(), list.bytes.data(), list.bytes.size());
    for (std::size_t index = 0; index + 1 < atoms.size(); index += 2) {
        answeredPairs_.push_back(nameOf(atoms[index]));
        answeredPairs_.push_back(nameOf(atoms[index + 1]));
        if (atoms[index + 1] != XCB_ATOM_NONE) {
            takeAnswer(atoms[index + 1]);
        }
    }
}

void PastingProgram::takeAnswer(xcb_atom_t property) {
    if (appetite_ == Appetite::leavesPieces) {
        pastes_[property].state = Paste::State::incremental;
        return;
    }
    Value value = take(property);
    Paste& paste = pastes_[property];
    paste.type = value.type;
    paste.format = value.format;
    if (value.type == client_.atom("INCR")) {
        paste.state = Paste::State::incremental;
        std::memcpy(&paste.announcedSize, value.bytes.data(), sizeof paste.announcedSize);
    } else {
        paste.state = Paste::State::complete;
        paste.bytes = std::move(value.bytes);
    }
}

void PastingProgram::takePiece(xcb_atom_t property) {
    const auto found = pastes_.find(property);
    if (appetite_ == Appetite::leavesPieces || found == pastes_.end() ||
        found->second.state != Paste::State::incremental) {
        return;
    }
    Paste& paste = found->second;
    const Value piece = take(property);
    if (piece.type == XCB_ATOM_NONE) {
        return;
    }
    paste.type = piece.type;
    paste.format = piece.format;
    if (piece.bytes.empty()) {
        paste.state = Paste::State::complete;
        return;
    }
    ++paste.pieceCount;
    paste.bytes.insert(paste.bytes.end(), piece.bytes.begin(), piece.bytes.end());
}

PastingProgram::Value PastingProgram::take(xcb_atom_t property) {
    const auto cookie = xcb_get_property(client_.get(), 1, window_, property,
                                         XCB_GET_PROPERTY_TYPE_ANY, 0, 1U << 28);
    const desktop::Reply<xcb_get_property_reply_t> reply(
        xcb_get_property_reply(client_.get(), cookie, nullptr));
    if (!reply) {
        return {};
    }
    const auto* bytes = static_cast<const std::uint8_t*>(xcb_get_property_value(reply.get()));
    return {
        reply->type, reply->format, {bytes, bytes + xcb_get_property_value_length(reply.get())}};
}

std::vector<std::uint32_t> PastingProgram::numbers(const std::string& property) {
    const Paste& answer = paste(property);
    std::vector<std::uint32_t> values(answer.bytes.size() / sizeof(std::uint32_t));
    std::memcpy(values.data(), answer.bytes.data(), values.size() * sizeof(std::uint32_t));
    return values;
}

std::vector<std::string> PastingProgram::names(const std::string& property) {
    std::vector<std::string> texts;
    for (const std::uint32_t atom : numbers(property)) {
        texts.push_back(nameOf(atom));
    }
    return texts;
}

std::string PastingProgram::nameOf(xcb_atom_t atom) {
    const desktop::Reply<xcb_get_atom_name_reply_t> reply(
        xcb_get_atom_name_reply(client_.get(), xcb_get_atom_name(client_.get(), atom), nullptr));
    if (!reply) {
        return {};
    }
    return {xcb_get_atom_name_name(reply.get()),
            static_cast<std::size_t>(xcb_get_atom_name_name_length(reply.get()))};
}

void PastingProgram::destroyWindow() {
    xcb_destroy_window(client_.get(), window_);
    client_.synchronize();
}

}  // namespace pasteboard_test
